// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewCard.h"

#include "Localization.h"
#include "UniformTypeIdentifiers.h"

#include <QFileIconProvider>
#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int iconSize = 128;

QIcon iconFor(const PreviewCardFacts& facts)
{
    QIcon icon = QIcon::fromTheme(facts.iconName, QIcon::fromTheme(facts.genericIconName));
    if (icon.isNull())
        icon = QFileIconProvider().icon(QFileInfo(facts.path));
    return icon;
}

QLabel* selectableLabel(const QString& text)
{
    auto* label = new QLabel(text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setTextFormat(Qt::PlainText);
    return label;
}

}

PreviewCardFacts PreviewCardFacts::forFile(
    const QString& path, const QString& identifier, const QList<QVariantMap>& infoDictionaries)
{
    const QFileInfo file(path);
    const QMimeType mime = QMimeDatabase().mimeTypeForFile(file);
    PreviewCardFacts facts;
    facts.path = path;
    facts.iconName = mime.iconName();
    facts.genericIconName = mime.genericIconName();
    facts.name = file.fileName();
    facts.kind = UTType::descriptionForIdentifier(identifier, infoDictionaries);
    if (facts.kind.isEmpty())
        facts.kind = mime.comment();
    if (file.exists()) {
        const QLocale locale;
        facts.size = locale.formattedDataSize(file.size(), 1, QLocale::DataSizeSIFormat);
        facts.modified = locale.toString(file.lastModified(), QLocale::LongFormat);
    }
    return facts;
}

PreviewCard::PreviewCard(const PreviewCardFacts& facts, const QString& reason, QWidget* parent)
    : QWidget(parent)
    , m_facts(facts)
    , m_icon(new QLabel)
{
    setAutoFillBackground(true);
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(1);

    m_icon->setObjectName(QStringLiteral("icon"));
    m_icon->setMinimumHeight(iconSize);
    m_icon->setAlignment(Qt::AlignCenter);
    layout->addWidget(m_icon);

    QLabel* name = selectableLabel(facts.name);
    name->setObjectName(QStringLiteral("name"));
    name->setAlignment(Qt::AlignCenter);
    QFont bold = name->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.3);
    name->setFont(bold);
    layout->addWidget(name);

    auto* form = new QFormLayout;
    form->setFormAlignment(Qt::AlignHCenter);
    auto addRow = [form](const char* objectName, const QString& title, const QString& value) {
        if (value.isEmpty())
            return;
        QLabel* label = selectableLabel(value);
        label->setObjectName(QString::fromLatin1(objectName));
        form->addRow(title, label);
    };
    addRow("kind", NSLocalizedString(QStringLiteral("Kind:")), facts.kind);
    addRow("size", NSLocalizedString(QStringLiteral("Size:")), facts.size);
    addRow("modified", NSLocalizedString(QStringLiteral("Modified:")), facts.modified);
    layout->addLayout(form);

    QLabel* why = selectableLabel(reason);
    why->setObjectName(QStringLiteral("reason"));
    why->setAlignment(Qt::AlignCenter);
    why->setWordWrap(true);
    why->setForegroundRole(QPalette::PlaceholderText);
    layout->addWidget(why);
    layout->addStretch(1);
}

void PreviewCard::paintEvent(QPaintEvent* event)
{
    QWidget::paintEvent(event);
    // The icon comes once the card is on the screen: finding and reading it loads the image
    // plugins, which the first sight of the card need not wait for. Its place is kept meanwhile.
    if (!m_iconRequested) {
        m_iconRequested = true;
        QTimer::singleShot(0, this, &PreviewCard::showIcon);
    }
}

void PreviewCard::showIcon() { m_icon->setPixmap(iconFor(m_facts).pixmap(iconSize, iconSize)); }

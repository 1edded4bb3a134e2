// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewCard.h"

#include "Localization.h"
#include "UniformTypeIdentifiers.h"

#include <QFileInfo>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr int iconSize = 128;

// A sheet with a folded corner, for desktops whose icon theme knows neither the file's type nor
// its generic kind. Drawn rather than read: reading the style's picture would load every image
// plugin of the system for one icon.
QPixmap drawnDocumentIcon(const QPalette& palette, qreal pixelRatio)
{
    QPixmap pixmap(QSize(iconSize, iconSize) * pixelRatio);
    pixmap.setDevicePixelRatio(pixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal left = iconSize * 0.2, right = iconSize * 0.8, top = iconSize * 0.08;
    const qreal bottom = iconSize * 0.92, fold = iconSize * 0.18;
    QPainterPath sheet;
    sheet.moveTo(left, top);
    sheet.lineTo(right - fold, top);
    sheet.lineTo(right, top + fold);
    sheet.lineTo(right, bottom);
    sheet.lineTo(left, bottom);
    sheet.closeSubpath();
    QPainterPath corner;
    corner.moveTo(right - fold, top);
    corner.lineTo(right - fold, top + fold);
    corner.lineTo(right, top + fold);
    painter.setPen(QPen(palette.color(QPalette::Mid), 2));
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawPath(sheet);
    painter.setBrush(palette.color(QPalette::Midlight));
    painter.drawPath(corner);
    return pixmap;
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
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
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
    // The icon comes once the card is on the screen: finding and reading a theme's icon loads
    // the image plugins, which the first sight of the card need not wait for. Its place is kept
    // meanwhile.
    if (!m_iconRequested) {
        m_iconRequested = true;
        QTimer::singleShot(0, this, &PreviewCard::showIcon);
    }
}

void PreviewCard::showIcon()
{
    const QIcon icon
        = QIcon::fromTheme(m_facts.iconName, QIcon::fromTheme(m_facts.genericIconName));
    m_icon->setPixmap(icon.isNull() ? drawnDocumentIcon(palette(), devicePixelRatioF())
                                    : icon.pixmap(iconSize, iconSize));
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUUpdateAlert.h"

#include "Localization.h"
#include "Workspace.h"

#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QLabel>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace {

// Links in release notes leave for the desktop's programs, and only those of the web.
void openLink(const QUrl& url)
{
    const QString scheme = url.scheme().toLower();
    if (scheme == QLatin1String("http") || scheme == QLatin1String("https"))
        NSWorkspace::sharedWorkspace().openURL(url);
}

}

SUUpdateAlert::SUUpdateAlert(
    const SUUpdateFound& update, std::function<void(SUUpdateAlertChoice)> reply, QWidget* parent)
    : QDialog(parent)
    , m_downloadPage(update.downloadPage)
{
    const QString application = QGuiApplication::applicationDisplayName();
    setWindowTitle(NSLocalizedString(QStringLiteral("Software Update")));
    auto* layout = new QVBoxLayout(this);

    auto* title = new QLabel(
        NSLocalizedString(QStringLiteral("A new version of %1 is available!")).arg(application));
    title->setObjectName(QStringLiteral("title"));
    QFont bold = title->font();
    bold.setBold(true);
    title->setFont(bold);
    layout->addWidget(title);

    const QString question = update.installable
        ? NSLocalizedString("%1 %2 is now available—you have %3. Would you like to install it now?")
        : NSLocalizedString(
            "%1 %2 is now available—you have %3. Would you like to download it now?");
    auto* informative
        = new QLabel(question.arg(application, update.newVersion, update.currentVersion));
    informative->setObjectName(QStringLiteral("informative"));
    informative->setWordWrap(true);
    layout->addWidget(informative);
    if (update.critical) {
        auto* critical = new QLabel(NSLocalizedString(
            "This is a critical update: it fixes a problem that the version you have must not go "
            "on with."));
        critical->setObjectName(QStringLiteral("critical"));
        critical->setWordWrap(true);
        critical->setFont(bold);
        layout->addWidget(critical);
    }

    if (QWidget* notes = releaseNotes(update.item)) {
        auto* heading = new QLabel(NSLocalizedString(QStringLiteral("Release Notes:")));
        heading->setFont(bold);
        layout->addWidget(heading);
        layout->addWidget(notes, 1);
    }

    auto* buttons = new QDialogButtonBox;
    m_remindLater = buttons->addButton(
        NSLocalizedString(QStringLiteral("Remind Me Later")), QDialogButtonBox::RejectRole);
    m_install = buttons->addButton(
        update.installable ? NSLocalizedString("Install Update") : NSLocalizedString("Download…"),
        QDialogButtonBox::AcceptRole);
    // Return installs, whichever button has the focus.
    m_remindLater->setAutoDefault(false);
    m_install->setDefault(true);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, [reply] { reply(SUUpdateAlertChoice::RemindLater); });
    connect(m_install, &QPushButton::clicked, this, [this, reply, update] {
        accept();
        if (update.installable)
            reply(SUUpdateAlertChoice::Install);
        else
            NSWorkspace::sharedWorkspace().openURL(m_downloadPage);
    });
    layout->addWidget(buttons);
}

QWidget* SUUpdateAlert::releaseNotes(const SUAppcastItem& item)
{
    if (item.itemDescription.trimmed().isEmpty()) {
        if (!item.releaseNotesURL.isValid())
            return nullptr;
        auto* link
            = new QLabel(QStringLiteral("<a href=\"%1\">%2</a>")
                             .arg(item.releaseNotesURL.toString(QUrl::FullyEncoded).toHtmlEscaped(),
                                 item.releaseNotesURL.toDisplayString().toHtmlEscaped()));
        link->setObjectName(QStringLiteral("releaseNotesLink"));
        link->setTextFormat(Qt::RichText);
        connect(
            link, &QLabel::linkActivated, this, [](const QString& url) { openLink(QUrl(url)); });
        return link;
    }
    auto* notes = new QTextBrowser;
    notes->setObjectName(QStringLiteral("releaseNotes"));
    notes->setOpenLinks(false);
    connect(notes, &QTextBrowser::anchorClicked, this, &openLink);
    if (Qt::mightBeRichText(item.itemDescription))
        notes->setHtml(item.itemDescription);
    else
        notes->setPlainText(item.itemDescription);
    notes->setMinimumSize(420, 200);
    return notes;
}

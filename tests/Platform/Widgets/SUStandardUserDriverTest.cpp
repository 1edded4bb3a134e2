// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUStandardUserDriver.h"

#include "FakeDesktop.h"
#include "SUStatusWindow.h"
#include "SUUpdateAlert.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

namespace {

// xdg-open stands in for the desktop: it notes what it was asked to open.
class UserDriverTest : public testing::Test {
protected:
    void SetUp() override { QApplication::setApplicationDisplayName(QStringLiteral("Tolvane")); }

    static SUUpdateFound update(const QString& notes)
    {
        SUUpdateFound found;
        found.item.displayVersionString = QStringLiteral("1.2");
        found.item.itemDescription = notes;
        found.currentVersion = QStringLiteral("1.0");
        found.newVersion = QStringLiteral("1.2");
        found.downloadPage = QUrl(QStringLiteral("https://tolvane.example/download/?v=1.2"));
        return found;
    }

    std::function<void(SUUpdateAlertChoice)> recordChoice()
    {
        return [this](SUUpdateAlertChoice choice) { m_choices.append(choice); };
    }

    static QString label(QWidget* window, const char* name)
    {
        auto* found = window->findChild<QLabel*>(QString::fromLatin1(name));
        return found ? found->text() : QString();
    }

    FakeOpener m_opener;
    SUStandardUserDriver m_driver;
    QList<SUUpdateAlertChoice> m_choices;
};

TEST_F(UserDriverTest, UpToDateAndErrorsAreNonModalAndEachWindowReplacesTheOpenOne)
{
    m_driver.showUpdateNotFound(QStringLiteral("1.0.3"), {});
    auto* box = qobject_cast<QMessageBox*>(m_driver.window());
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->isVisible());
    EXPECT_FALSE(box->isModal());
    EXPECT_EQ(box->informativeText(),
        QStringLiteral("Tolvane 1.0.3 is currently the newest version available."));

    QPointer<QWidget> first = box;
    SUUpdaterError error;
    error.kind = SUUpdaterError::ServerError;
    error.httpStatus = 503;
    m_driver.showUpdaterError(error);
    EXPECT_TRUE(TestEnvironment::waitUntil([&] { return first.isNull(); }, 30000));
    box = qobject_cast<QMessageBox*>(m_driver.window());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->informativeText(), error.localizedDescription());

    QPointer<QWidget> second = box;
    m_driver.showUpdateFound(update(QStringLiteral("Fixes.")), recordChoice());
    EXPECT_FALSE(second->isVisible());
    EXPECT_NE(qobject_cast<SUUpdateAlert*>(m_driver.window()), nullptr);
}

// Notes in HTML are shown as such, plain ones as they are; a notes page is a link instead.
TEST_F(UserDriverTest, UpdateFoundShowsVersionsAndNotes)
{
    m_driver.showUpdateFound(
        update(QStringLiteral("<ul><li>Faster <b>previews</b></li></ul>")), recordChoice());
    auto* alert = qobject_cast<SUUpdateAlert*>(m_driver.window());
    ASSERT_NE(alert, nullptr);
    EXPECT_FALSE(alert->isModal());
    EXPECT_EQ(label(alert, "informative"),
        QStringLiteral(
            "Tolvane 1.2 is now available—you have 1.0. Would you like to download it now?"));
    auto* notes = alert->findChild<QTextBrowser*>(QStringLiteral("releaseNotes"));
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->toPlainText().trimmed(), QStringLiteral("Faster previews"));

    m_driver.showUpdateFound(update(QStringLiteral("a < b & c")), recordChoice());
    notes = m_driver.window()->findChild<QTextBrowser*>(QStringLiteral("releaseNotes"));
    ASSERT_NE(notes, nullptr);
    EXPECT_EQ(notes->toPlainText(), QStringLiteral("a < b & c"));

    SUUpdateFound withPage = update(QString());
    withPage.item.releaseNotesURL = QUrl(QStringLiteral("https://tolvane.example/notes/1.2.html"));
    m_driver.showUpdateFound(withPage, recordChoice());
    EXPECT_EQ(m_driver.window()->findChild<QTextBrowser*>(), nullptr);
    EXPECT_TRUE(
        label(m_driver.window(), "releaseNotesLink").contains(QStringLiteral("notes/1.2.html")));
}

// Release notes come from the feed: of their links only web pages reach the desktop's opener.
TEST_F(UserDriverTest, ReleaseNoteLinksOpenOnlyWebPages)
{
    m_driver.showUpdateFound(
        update(QStringLiteral("<a href=\"https://tolvane.example/n\">n</a>")), recordChoice());
    auto* notes = m_driver.window()->findChild<QTextBrowser*>(QStringLiteral("releaseNotes"));
    ASSERT_NE(notes, nullptr);
    for (const char* link :
        { "file:///etc/passwd", "tolvane://settings/about", "https://tolvane.example/n" })
        emit notes->anchorClicked(QUrl(QString::fromLatin1(link)));
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return !m_opener.recordedArguments().isEmpty(); }, 30000));
    EXPECT_EQ(
        m_opener.recordedArguments(), QStringList { QStringLiteral("https://tolvane.example/n") });
}

// Remind Me Later opens nothing, Download the download page; an installable update is installed
// instead, and its answer opens the progress window in place of the alert.
TEST_F(UserDriverTest, TheAnswersToAFoundUpdate)
{
    for (const bool download : { false, true }) {
        m_driver.showUpdateFound(update(QStringLiteral("Fixes.")), recordChoice());
        QPointer<QWidget> window = m_driver.window();
        auto* alert = qobject_cast<SUUpdateAlert*>(window.data());
        (download ? alert->installButton() : alert->remindLaterButton())->click();
        EXPECT_TRUE(TestEnvironment::waitUntil([&] { return window.isNull(); }, 30000));
    }
    SUUpdateFound found = update(QStringLiteral("Fixes."));
    found.installable = true;
    found.critical = true;
    m_driver.showUpdateFound(found, [this](SUUpdateAlertChoice choice) {
        m_choices.append(choice);
        m_driver.showDownloadStarted([] {});
    });
    auto* alert = qobject_cast<SUUpdateAlert*>(m_driver.window());
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->installButton()->text(), QStringLiteral("Install Update"));
    EXPECT_FALSE(label(alert, "critical").isEmpty());
    QPointer<QWidget> alertWindow = alert;
    QTest::keyClick(alert, Qt::Key_Return);
    EXPECT_NE(qobject_cast<SUStatusWindow*>(m_driver.window()), nullptr);
    EXPECT_TRUE(TestEnvironment::waitUntil([&] { return alertWindow.isNull(); }, 30000));
    EXPECT_EQ(m_choices,
        QList({ SUUpdateAlertChoice::RemindLater, SUUpdateAlertChoice::Install,
            SUUpdateAlertChoice::Install }));
    // Only the download was opened.
    EXPECT_TRUE(
        TestEnvironment::waitUntil([&] { return !m_opener.recordedArguments().isEmpty(); }, 30000));
    QTest::qWait(200);
    EXPECT_EQ(m_opener.recordedArguments(),
        QStringList { QStringLiteral("https://tolvane.example/download/?v=1.2") });
}

TEST_F(UserDriverTest, ProgressShowsBytesAndTimeLeftAndCancelsUntilInstalling)
{
    int cancels = 0;
    m_driver.showDownloadStarted([&] { ++cancels; });
    auto* status = qobject_cast<SUStatusWindow*>(m_driver.window());
    ASSERT_NE(status, nullptr);
    EXPECT_FALSE(status->isModal());
    m_driver.showDownloadProgress(5 * 1024 * 1024, 20 * 1024 * 1024);
    EXPECT_EQ(status->progressBar()->value(), 250);
    EXPECT_EQ(status->detailText(), QStringLiteral("5.0 MB of 20.0 MB"));
    // 1 MB in 60 s: 199 MB more take about 3.3 hours.
    EXPECT_EQ(SUStatusWindow::downloadDetail(1 << 20, 200 << 20, 60000),
        QStringLiteral("1.0 MB of 200.0 MB (about 4 hours left)"));

    QTest::keyClick(status, Qt::Key_Return); // Return is not Cancel
    m_driver.showInstallStatus(QStringLiteral("Installing update…"), false);
    QTest::keyClick(status, Qt::Key_Escape);
    EXPECT_EQ(cancels, 0);
    EXPECT_TRUE(status->isVisible());
    m_driver.showInstallStatus(QStringLiteral("Extracting update…"), true);
    status->cancelButton()->click();
    EXPECT_EQ(cancels, 1);
    m_driver.dismissUpdateInstallation();
    EXPECT_TRUE(TestEnvironment::waitUntil([&] { return m_driver.window() == nullptr; }, 30000));
}

TEST_F(UserDriverTest, TheNoticeOfAnInstallAtQuitOffersToInstallNow)
{
    QList<bool> replies;
    m_driver.showReadyToInstallAtQuit(
        update(QStringLiteral("Fixes.")), [&](bool now) { replies.append(now); });
    auto* box = qobject_cast<QMessageBox*>(m_driver.window());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->defaultButton()->text(), QStringLiteral("Install on Quit"));
    QTest::keyClick(box, Qt::Key_Escape);
    for (QAbstractButton* button : box->buttons()) {
        if (button->text() == QStringLiteral("Install and Relaunch"))
            button->click();
    }
    EXPECT_EQ(replies, QList({ false, true }));
}

}

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

// Remind Me Later opens nothing, Download the download page. (An installable update is installed
// instead: the application's end-to-end test answers Install Update.)
TEST_F(UserDriverTest, RemindMeLaterOpensNothingAndDownloadOpensTheDownloadPage)
{
    for (const bool download : { false, true }) {
        m_driver.showUpdateFound(update(QStringLiteral("Fixes.")), recordChoice());
        QPointer<QWidget> window = m_driver.window();
        auto* alert = qobject_cast<SUUpdateAlert*>(window.data());
        (download ? alert->installButton() : alert->remindLaterButton())->click();
        EXPECT_TRUE(TestEnvironment::waitUntil([&] { return window.isNull(); }, 30000));
    }
    EXPECT_EQ(m_choices, QList { SUUpdateAlertChoice::RemindLater });
    // Only the download was opened.
    EXPECT_TRUE(
        TestEnvironment::waitUntil([&] { return !m_opener.recordedArguments().isEmpty(); }, 30000));
    QTest::qWait(200);
    EXPECT_EQ(m_opener.recordedArguments(),
        QStringList { QStringLiteral("https://tolvane.example/download/?v=1.2") });
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUStandardUserDriver.h"

#include "FakeDesktop.h"
#include "SUUpdateAlert.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <gtest/gtest.h>

namespace {

SUUpdateFound update(const QString& notes)
{
    SUUpdateFound found;
    found.item.displayVersionString = QStringLiteral("1.2");
    found.item.itemDescription = notes;
    found.currentVersion = QStringLiteral("1.0");
    found.newVersion = QStringLiteral("1.2");
    found.downloadPage = QUrl(QStringLiteral("https://tolvane.example/download/?v=1.2"));
    return found;
}

// xdg-open stands in for the desktop: it notes what it was asked to open. Release notes come from
// the feed: of their links only web pages reach it. Remind Me Later opens nothing, Download the
// download page. (An installable update is installed instead: the application's end-to-end test
// answers Install Update.)
TEST(UserDriverTest, OnlyWebPagesOfTheNotesAndTheDownloadPageAreOpened)
{
    QApplication::setApplicationDisplayName(QStringLiteral("Tolvane"));
    FakeOpener opener;
    SUStandardUserDriver driver;
    QList<SUUpdateAlertChoice> choices;
    for (const bool download : { false, true }) {
        driver.showUpdateFound(
            update(QStringLiteral("<a href=\"https://tolvane.example/n\">n</a>")),
            [&](SUUpdateAlertChoice choice) { choices.append(choice); });
        QPointer<QWidget> window = driver.window();
        auto* notes = window->findChild<QTextBrowser*>(QStringLiteral("releaseNotes"));
        ASSERT_NE(notes, nullptr);
        if (!download) {
            for (const char* link :
                { "file:///etc/passwd", "tolvane://settings/about", "https://tolvane.example/n" })
                emit notes->anchorClicked(QUrl(QString::fromLatin1(link)));
        }
        auto* alert = qobject_cast<SUUpdateAlert*>(window.data());
        (download ? alert->installButton() : alert->remindLaterButton())->click();
        EXPECT_TRUE(TestEnvironment::waitUntil([&] { return window.isNull(); }, 30000));
    }
    EXPECT_EQ(choices, QList { SUUpdateAlertChoice::RemindLater });
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return opener.recordedArguments().size() >= 2; }, 30000));
    QTest::qWait(200);
    QStringList opened = opener.recordedArguments();
    opened.sort();
    EXPECT_EQ(opened,
        QStringList({ QStringLiteral("https://tolvane.example/download/?v=1.2"),
            QStringLiteral("https://tolvane.example/n") }))
        << "a link of another scheme, or Remind Me Later, opened something";
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
// The application menu's actions that the launch and the URL commands do not reach.
#include "FakeDesktop.h"
#include "HttpTestServer.h"
#include "SUUpdater.h"
#include "TLAppDelegate.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

TEST(MenuActions, CheckForUpdateAsksTheFeedWithTheDelegatesParameters)
{
    HttpTestServer server;
    server.respond({ 404, {} });
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setFeedURL(server.url("/appcast.xml"));
    bool finished = false;
    QObject::connect(updater, &SUUpdater::updateCheckFinished, [&finished] { finished = true; });
    {
        TLAppDelegate delegate;
        ASSERT_NE(updater->delegate(), &delegate);
        delegate.checkForUpdate();
        EXPECT_EQ(updater->delegate(), &delegate);
        ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finished; }, 60000));
        updater->setDelegate(nullptr);
    }
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_TRUE(server.requests()[0].requestLine.contains("type=RA"))
        << server.requests()[0].requestLine.data();
}

TEST(MenuActions, FeedbackAndSupportOpensTheSupportPage)
{
    FakeOpener opener;
    TLAppDelegate delegate;
    delegate.visitFeedbackAndSupport();
    TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 10000);
    EXPECT_EQ(opener.recordedArguments(), QStringList { "https://tolvane.example/support/" });
}

// Each showing is a window of its own that comes to the front; the one before is gone by then,
// so there is never a second about window on the screen.
TEST(MenuActions, TheAboutWindowShownTwiceIsOneWindowAtATime)
{
    TLAppDelegate delegate;
    QList<QPointer<QWidget>> shown;
    for (int showing = 0; showing < 2; ++showing) {
        QTimer::singleShot(0, [&] {
            QList<QWidget*> visible;
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                if (widget->isVisible())
                    visible.append(widget);
            }
            EXPECT_EQ(visible.size(), 1);
            if (!visible.isEmpty()) {
                EXPECT_EQ(visible.first(), QApplication::activeModalWidget());
                QWidget* window = visible.first();
                EXPECT_TRUE(TestEnvironment::waitUntil(
                    [window] { return window->isActiveWindow(); }, 10000));
                shown.append(visible.first());
            }
            for (QWidget* widget : visible)
                widget->close();
        });
        delegate.showAboutWindow();
    }
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[0].isNull() && shown[1].isNull()) << "a window outlived its showing";
}

}

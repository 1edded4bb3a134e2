// SPDX-License-Identifier: GPL-3.0-or-later
// The application menu's actions that the launch and the URL commands do not reach.
#include "FakeDesktop.h"
#include "HttpTestServer.h"
#include "SUUpdater.h"
#include "TLAppDelegate.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"

#include <QApplication>
#include <QPointer>
#include <QTimer>
#include <gtest/gtest.h>

namespace {

TEST(MenuActions, CheckForUpdateAsksTheFeedWithTheDelegatesParametersEscaped)
{
    UserDefaults::standardUserDefaults().setObject(QVariantList { "fr-CA&x=1" }, "AppleLanguages");
    HttpTestServer server;
    server.respond({ 404, {} });
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setFeedURL(server.url("/appcast.xml"));
    bool finished = false;
    QObject::connect(updater, &SUUpdater::updateCheckFinished, [&finished] { finished = true; });
    {
        TLAppDelegate delegate;
        delegate.checkForUpdate();
        EXPECT_EQ(updater->delegate(), &delegate);
        ASSERT_TRUE(TestEnvironment::waitUntil([&] { return finished; }, 60000));
        updater->setDelegate(nullptr);
    }
    ASSERT_EQ(server.requests().size(), 1);
    const QByteArray request = server.requests()[0].requestLine;
    EXPECT_TRUE(request.contains("type=RA")) << request.data();
    EXPECT_TRUE(request.contains("lang=fr-CA%26x%3D1")) << request.data();
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
            QWidget* window = QApplication::activeModalWidget();
            int visible = 0;
            for (QWidget* widget : QApplication::topLevelWidgets())
                visible += widget->isVisible();
            EXPECT_EQ(visible, 1);
            if (!window) {
                ADD_FAILURE() << "no modal window";
                QApplication::closeAllWindows();
                return;
            }
            EXPECT_TRUE(
                TestEnvironment::waitUntil([window] { return window->isActiveWindow(); }, 10000));
            shown.append(window);
            window->close();
        });
        delegate.showAboutWindow();
    }
    ASSERT_EQ(shown.size(), 2);
    EXPECT_TRUE(shown[0].isNull() && shown[1].isNull()) << "a window outlived its showing";
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppleEventManager.h"
#include "FakeDesktop.h"
#include "TLAppDelegate.h"
#include "TLPrefrencesWindowController.h"
#include "TestEnvironment.h"

#include <QMainWindow>
#include <gtest/gtest.h>

namespace {

// The handler against a file manager on the test's own session bus.
class URLCommands : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(fileManager.registered());
        NSAppleEventManager::sharedAppleEventManager().setEventHandler(
            [this](const NSAppleEventDescriptor& event, const NSAppleEventDescriptor& reply) {
                delegate.handleURLEvent(event, reply);
            },
            kInternetEventClass, kAEGetURL);
    }

    // The URIs of the reveal the command made.
    QStringList reveal(const QString& url)
    {
        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(url);
        if (!fileManager.waitForCall(5000))
            return {};
        return fileManager.calls().constLast();
    }

    FakeFileManager fileManager;
    TLAppDelegate delegate;
};

// Values are split at "&" and the first "=", escapes decoded as UTF-8, "+" kept, the last
// occurrence winning. Fonts in order, up to the first missing index.
TEST_F(URLCommands, RevealsAnImageOrFontFiles)
{
    EXPECT_EQ(reveal("tolvane://reveal/image?path=/x&path=%2FSchriften%2F%C3%84rial%20b%2Bc.png"),
        QStringList { "file:///Schriften/%C3%84rial%20b+c.png" });
    EXPECT_EQ(reveal("tolvane://reveal/image?path=/a+b=c"), QStringList { "file:///a+b" });
    EXPECT_EQ(reveal("tolvane://reveal/font?path=/a&path1=/b&path3=/d"),
        (QStringList { "file:///a", "file:///b" }));
}

// Each is logged in one line and leaves the application running: the next command works, and
// is the first since to reveal anything.
TEST_F(URLCommands, CommandsThatRevealNothingSaySoInOneLine)
{
    const char* const urls[] = { "tolvane://reveal/font?path1=/b", "tolvane://Reveal/image?path=/a",
        "tolvane://reveal/image/?path=/a", "tolvane://reveal/image?path=/%C3",
        "tolvane://reveal/font?path=/a&path1", "not a url at all" };
    for (const char* url : urls) {
        SCOPED_TRACE(url);
        testing::internal::CaptureStderr();
        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(url);
        const QString log = QString::fromStdString(testing::internal::GetCapturedStderr());
        EXPECT_EQ(log.count('\n'), 1) << log.toStdString();
        EXPECT_TRUE(log.startsWith("ERROR -- the URL command ")) << log.toStdString();
        EXPECT_EQ(reveal("tolvane://reveal/image?path=/ok"), QStringList { "file:///ok" });
    }
    EXPECT_EQ(fileManager.calls().size(), qsizetype(std::size(urls)));
}

// Any other path shows the window at the pane it has.
TEST_F(URLCommands, SettingsOpenThePreferencesAtTheirPane)
{
    const auto open = [&](const char* url) {
        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(url);
        return delegate.preferencesWindowController()->mode();
    };
    EXPECT_EQ(open("tolvane://settings/quicklook"), 2);
    EXPECT_TRUE(delegate.preferencesWindowController()->window()->isVisible());
    EXPECT_EQ(open("tolvane://settings/settings"), 1);
    EXPECT_EQ(open("tolvane://settings/about/"), 1);
    EXPECT_EQ(open("tolvane://settings/about"), 0);
}

// The folder of the first file is opened in its place.
TEST(URLCommandsWithoutFileManager, OpenTheFolderOfTheFirstFile)
{
    FakeOpener opener;
    const QString fonts = TestEnvironment::home() + QStringLiteral("/fonts");
    TestEnvironment::writeFile(fonts + QStringLiteral("/a.otf"), "OTTO");
    TLAppDelegate delegate;
    delegate.handleURLEvent(NSAppleEventDescriptor(kInternetEventClass, kAEGetURL,
                                QStringLiteral("tolvane://reveal/font?path=%1&path1=/other/b.otf")
                                    .arg(QString::fromLatin1(QUrl::toPercentEncoding(
                                        fonts + QStringLiteral("/a.otf"))))),
        NSAppleEventDescriptor());
    TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 5000);
    EXPECT_EQ(opener.recordedArguments(), QStringList { fonts });
}

}

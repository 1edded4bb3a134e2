// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppleEventManager.h"
#include "FakeDesktop.h"
#include "NSException.h"
#include "TLAppDelegate.h"
#include "TLPrefrencesWindowController.h"
#include "TestEnvironment.h"

#include <QMainWindow>
#include <gtest/gtest.h>

namespace {

using Parameters = QMap<QString, QString>;

// Split at "&" and "=", escapes decoded as UTF-8, "+" kept, the last occurrence wins; a component
// without "=" or a value that is not UTF-8 aborts.
TEST(QueryParsing, SplitsAndDecodes)
{
    const auto parse = [](const char* url) {
        return TLAppDelegate::_queryParametersFromURL(QUrl(url, QUrl::StrictMode));
    };
    EXPECT_EQ(parse("tolvane://reveal/image"), Parameters {});
    EXPECT_EQ(parse("tolvane://x?path=/a&path=%2FSchriften%2F%C3%84rial%20b.otf"),
        (Parameters { { "path", QString::fromUtf8("/Schriften/Ärial b.otf") } }));
    EXPECT_EQ(parse("tolvane://x?a=b=c&p=/a+b"), (Parameters { { "a", "b" }, { "p", "/a+b" } }));
    EXPECT_THROW(parse("tolvane://x?path=/a&flag"), NSException);
    EXPECT_THROW(parse("tolvane://x?path=%FF%FE"), NSException);
}

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

// Fonts in order, up to the first missing index.
TEST_F(URLCommands, RevealsAnImageOrFontFiles)
{
    EXPECT_EQ(reveal("tolvane://reveal/image?path=%2FUsers%2Fx%2Fa%20b.png"),
        QStringList { "file:///Users/x/a%20b.png" });
    EXPECT_EQ(reveal("tolvane://reveal/font?path=/a&path1=/b&path3=/d"),
        (QStringList { "file:///a", "file:///b" }));
}

// Each is logged in one line and leaves the application running: the next command works, and
// is the first since to reveal anything.
TEST_F(URLCommands, CommandsThatRevealNothingSaySoInOneLine)
{
    const char* const urls[] = { "tolvane://reveal/font?path1=/b", "tolvane://Reveal/image?path=/a",
        "tolvane://reveal/video?path=/a", "tolvane://reveal/image/?path=/a",
        "tolvane://reveal/image?path=/%C3", "not a url at all", "tolvane://explode/now" };
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

// Any other path shows the window at the pane it has; one controller for the application's life.
TEST_F(URLCommands, SettingsOpenThePreferencesAtTheirPane)
{
    int activations = 0;
    QObject::connect(&delegate, &TLAppDelegate::activateRequested, [&] { ++activations; });
    const auto open = [&](const char* url) {
        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(url);
        return delegate.preferencesWindowController()->mode();
    };
    EXPECT_EQ(open("tolvane://settings/quicklook"), 2);
    EXPECT_TRUE(delegate.preferencesWindowController()->window()->isVisible());
    EXPECT_EQ(open("tolvane://settings/settings"), 1);
    EXPECT_EQ(open("tolvane://settings/about/"), 1);
    EXPECT_EQ(open("tolvane://settings/about"), 0);
    EXPECT_EQ(activations, 4);
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

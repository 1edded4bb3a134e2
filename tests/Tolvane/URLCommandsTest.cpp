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

// Split at "&" and "=", escapes decoded as UTF-8, "+" kept, the last occurrence wins.
TEST(QueryParsing, SplitsAndDecodes)
{
    const struct {
        const char* url;
        Parameters expected;
    } cases[] = {
        { "tolvane://reveal/image", {} },
        { "tolvane://reveal/image?path=%2FUsers%2Fx%2Fa%20b.png",
            { { "path", "/Users/x/a b.png" } } },
        { "tolvane://reveal/font?path=/a&path=/b", { { "path", "/b" } } },
        { "tolvane://reveal/image?path=/a+b", { { "path", "/a+b" } } },
        { "tolvane://x?a=b=c", { { "a", "b" } } },
        { "tolvane://x?path=/Schriften/%C3%84rial.otf",
            { { "path", QString::fromUtf8("/Schriften/Ärial.otf") } } },
    };
    for (const auto& [url, expected] : cases)
        EXPECT_EQ(TLAppDelegate::_queryParametersFromURL(QUrl(url, QUrl::StrictMode)), expected)
            << url;
}

TEST(QueryParsing, AbortsOnAComponentWithoutEqualsOrAValueThatIsNotUtf8)
{
    EXPECT_THROW(
        TLAppDelegate::_queryParametersFromURL(QUrl("tolvane://x?path=/a&flag")), NSException);
    EXPECT_THROW(
        TLAppDelegate::_queryParametersFromURL(QUrl("tolvane://x?path=%FF%FE")), NSException);
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

    // The URIs of the one reveal the command made, or nothing when it revealed nothing.
    QStringList reveal(const QString& url)
    {
        NSAppleEventManager::sharedAppleEventManager().dispatchGetURL(url);
        if (!fileManager.waitForCall(1500))
            return {};
        return fileManager.calls().constLast();
    }

    FakeFileManager fileManager;
    TLAppDelegate delegate;
};

TEST_F(URLCommands, RevealsOneImageWithItsBlank)
{
    EXPECT_EQ(reveal("tolvane://reveal/image?path=%2FUsers%2Fx%2Fa%20b.png"),
        QStringList { "file:///Users/x/a%20b.png" });
}

TEST_F(URLCommands, RevealsFontFilesInOrderUpToTheFirstMissingIndex)
{
    EXPECT_EQ(reveal("tolvane://reveal/font?path=/a&path1=/b&path2=/c"),
        (QStringList { "file:///a", "file:///b", "file:///c" }));
    EXPECT_EQ(
        reveal("tolvane://reveal/font?path2=/c&path=/a&path3=/d"), QStringList { "file:///a" });
}

struct IgnoredCase {
    const char* name;
    const char* url;
};
void PrintTo(const IgnoredCase& value, std::ostream* out) { *out << value.name; }

class URLCommandsThatRevealNothing : public URLCommands,
                                     public testing::WithParamInterface<IgnoredCase> { };

TEST_P(URLCommandsThatRevealNothing, AreLoggedInOneLineAndLeaveTheApplicationRunning)
{
    testing::internal::CaptureStderr();
    EXPECT_TRUE(reveal(GetParam().url).isEmpty());
    const QString log = QString::fromStdString(testing::internal::GetCapturedStderr());
    EXPECT_EQ(log.count('\n'), 1) << log.toStdString();
    EXPECT_TRUE(log.startsWith("ERROR -- the URL command ")) << log.toStdString();
    // The next command still works.
    EXPECT_EQ(reveal("tolvane://reveal/image?path=/ok"), QStringList { "file:///ok" });
}

INSTANTIATE_TEST_SUITE_P(Commands, URLCommandsThatRevealNothing,
    testing::Values(IgnoredCase { "fontWithoutPath", "tolvane://reveal/font?path1=/b" },
        IgnoredCase { "imageWithoutPath", "tolvane://reveal/image?file=/b" },
        IgnoredCase { "capitalHost", "tolvane://Reveal/image?path=/a" },
        IgnoredCase { "unknownVariant", "tolvane://reveal/video?path=/a" },
        IgnoredCase { "trailingSlash", "tolvane://reveal/image/?path=/a" },
        IgnoredCase { "componentWithoutEquals", "tolvane://reveal/font?path=/a&path1" },
        IgnoredCase { "notUtf8", "tolvane://reveal/image?path=/%C3" },
        IgnoredCase { "notAURL", "not a url at all" },
        IgnoredCase { "unknownHost", "tolvane://explode/now" }),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(URLCommands, SettingsOpenThePreferencesAtTheirPane)
{
    int activations = 0;
    QObject::connect(&delegate, &TLAppDelegate::activateRequested, [&] { ++activations; });
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/quicklook");
    TLPrefrencesWindowController* preferences = delegate.preferencesWindowController();
    ASSERT_NE(preferences, nullptr);
    EXPECT_EQ(preferences->mode(), 2);
    EXPECT_TRUE(preferences->window()->isVisible());

    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/settings");
    EXPECT_EQ(preferences->mode(), 1);
    // Any other path shows the window at the pane it has.
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/about/");
    EXPECT_EQ(preferences->mode(), 1);
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings");
    EXPECT_EQ(preferences->mode(), 1);
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/about");
    EXPECT_EQ(preferences->mode(), 0);
    // One controller for the life of the application.
    EXPECT_EQ(delegate.preferencesWindowController(), preferences);
    EXPECT_EQ(activations, 5);
}

TEST_F(URLCommands, SettingTheSamePaneAgainRelaysTheWindowOut)
{
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/settings");
    TLPrefrencesWindowController* preferences = delegate.preferencesWindowController();
    ASSERT_NE(preferences, nullptr);
    int modeAssignments = 0;
    QObject::connect(
        preferences, &TLPrefrencesWindowController::modeChanged, [&] { ++modeAssignments; });
    NSAppleEventManager::sharedAppleEventManager().dispatchGetURL("tolvane://settings/settings");
    EXPECT_EQ(modeAssignments, 1);
}

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

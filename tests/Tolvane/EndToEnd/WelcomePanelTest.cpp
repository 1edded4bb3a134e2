// SPDX-License-Identifier: GPL-3.0-or-later
// The welcome panel of the real Tolvane.app under the test's own X server: a copy of the bundle
// whose information points the welcome page at a server on 127.0.0.1.
#include "FakeDesktop.h"
#include "HttpTestServer.h"
#include "RunningApplication.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QUrlQuery>

namespace {

using namespace RunningApplication;

const QString panelTitle = QStringLiteral("Welcome to Tolvane");

// The page the server sends: three stripes, each a link to click.
const QByteArray welcomePage = R"(<!DOCTYPE html><html><head><title>Test welcome page</title><style>
body { margin: 0; } a { display: block; height: 33.3vh; background: #2a62c9; color: white; }
</style></head><body>
<a href="http://localhost:PORT/elsewhere">Visit another site</a>
<a href="network-diagnostics:">Check the network settings</a>
<a href="/welcome/next">More on the welcome site</a>
</body></html>)";

class WelcomePanel : public testing::Test {
protected:
    void SetUp() override
    {
        copyBundle(bundle,
            { { "QXWelcomeScreenURL", server.url("/welcome/").toString() },
                { "QXWelcomeScreenConnectionTestName", "localhost" } });
        server.respondTo("/welcome/next", { 200, "<title>Next</title>" });
        server.respond(
            { 200, QByteArray(welcomePage).replace("PORT", QByteArray::number(server.port())) });
        updateServer.respond({ 200, "<plist><dict/></plist>", "application/xml" });

        // A settings program of the desktop, noting that it was asked for.
        const QString bin = TestEnvironment::home() + "/settings-bin";
        TestEnvironment::writeFile(bin + "/gnome-control-center",
            "#!/bin/sh\necho \"$*\" >> '" + QFile::encodeName(settingsLog) + "'\n");
        QFile::setPermissions(bin + "/gnome-control-center", QFile::ReadOwner | QFile::ExeOwner);
        environment.insert("PATH", bin + ":" + environment.value("PATH"));
        environment.insert("TOLVANE_SYSTEM_VERSION", "10.13");
        environment.insert("TOLVANE_UPDATE_HOST", updateServer.authority());
        environment.insert("XDG_CURRENT_DESKTOP", "");
        environment.insert("QTWEBENGINE_REMOTE_DEBUGGING", QString::number(debuggingPort));
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");
    }

    void TearDown() override { stop(app); }

    QVariantMap preferences() const
    {
        return PropertyList::readDictionary(preferencesPath).value_or(QVariantMap());
    }

    // Starts the copy with a document and waits until its launch has finished: the generator's
    // update check, which comes after the welcome screen's turn, has asked the update server.
    void launch()
    {
        const qsizetype checks = updateServer.requests().size();
        app.setProcessEnvironment(environment);
        app.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        app.start(bundle + "/Contents/Linux/Tolvane", { document });
        ASSERT_TRUE(updateServer.waitForRequests(checks + 1, 30000)) << "the launch never finished";
    }

    // Waits until the user defaults have reached the file, then ends the application.
    void quitOnceStored(const QString& key, const QVariant& value)
    {
        EXPECT_TRUE(
            TestEnvironment::waitUntil([&] { return preferences().value(key) == value; }, 15000))
            << TestEnvironment::readFile(preferencesPath).toStdString();
        stop(app);
    }

    // The form fields of the requests that asked for the welcome page.
    QList<QUrlQuery> posts() const
    {
        QList<QUrlQuery> forms;
        for (const HttpTestServer::Request& request : server.requests()) {
            if (request.method == "POST" && request.target == "/welcome/")
                forms.append(QUrlQuery(QString::fromUtf8(request.body)));
        }
        return forms;
    }

    // The pages the web engine shows, as "url title" lines, from its debugging interface.
    QString pagesShown() const
    {
        QNetworkAccessManager network;
        std::unique_ptr<QNetworkReply> reply(network.get(QNetworkRequest(
            QUrl(QStringLiteral("http://127.0.0.1:%1/json/list").arg(debuggingPort)))));
        TestEnvironment::waitUntil([&] { return reply->isFinished(); }, 5000);
        QString pages;
        for (const QJsonValue& page : QJsonDocument::fromJson(reply->readAll()).array())
            pages += page["url"].toString() + " " + page["title"].toString() + "\n";
        return pages;
    }

    bool panelShown() const
    {
        return output("xwininfo", { "-root", "-tree" }).contains("\"" + panelTitle + "\"");
    }

    // The panel's window, brought to the front: there is no window manager to keep it there.
    static QString raisedPanel()
    {
        const QString id = output("xdotool", { "search", "--onlyvisible", "--name", panelTitle })
                               .section('\n', 0, 0);
        output("xdotool", { "windowraise", id });
        return id;
    }

    // Clicks the page, at fractions of its width and height, until the condition holds: a click
    // that comes before the page has loaded does nothing. The band with the check box and the
    // buttons takes the panel's lowest 52 pixels.
    static bool clickPageUntil(double x, double y, const std::function<bool()>& condition)
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            const QString id = raisedPanel();
            const QString size = output("xdotool", { "getwindowgeometry", "--shell", id });
            const auto value = [&](const QString& name) {
                return size.section(name + "=", 1).section('\n', 0, 0).toInt();
            };
            output("xdotool",
                { "mousemove", "--window", id, QString::number(int(value("WIDTH") * x)),
                    QString::number(int((value("HEIGHT") - 52) * y)), "click", "1" });
            if (TestEnvironment::waitUntil(condition, 1000))
                return true;
        }
        return false;
    }

    // For scripts/screenshots.sh, which names a folder in TOLVANE_SCREENSHOTS.
    static void screenshot(const QString& name)
    {
        const QString folder = qEnvironmentVariable("TOLVANE_SCREENSHOTS");
        if (folder.isEmpty())
            return;
        const QString id = raisedPanel();
        TestEnvironment::waitUntil([] { return false; }, 1500); // the page's last paint
        QProcess::execute(QStringLiteral(TOLVANE_SCREENSHOT_TOOL), { folder + "/" + name, id });
    }

    HttpTestServer server;
    HttpTestServer updateServer;
    FakeOpener browser;
    QProcessEnvironment environment = xEnvironment();
    QString bundle = TestEnvironment::home() + "/Applications/Tolvane.app";
    QString document = TestEnvironment::home() + "/Poster.eps";
    QString settingsLog = TestEnvironment::home() + "/settings.log";
    QString preferencesPath
        = TestEnvironment::userLibrary() + "/Preferences/app.tolvane.Tolvane.plist";
    quint16 debuggingPort = closedLocalPort();
    QProcess app;
};

// While the test host is unreachable the panel neither shows nor stores anything. Then the user's
// first language goes into the body as it is stored, "&" and all.
TEST_F(WelcomePanel, ShowsNothingOfflineThenFirstThenAutoThenFirstAgainForANewVersion)
{
    ASSERT_TRUE(PropertyList::writeXmlAtomically(
        QVariantMap { { "AppleLanguages", QVariantList { "fr-CA&x=1", "en" } } }, preferencesPath));
    changeInfo(bundle, { { "QXWelcomeScreenConnectionTestName", "welcome.unresolvable.invalid" } });
    launch();
    EXPECT_FALSE(panelShown());
    quitOnceStored("Preferences Application Version",
        PropertyList::readDictionary(bundle + "/Contents/Info.plist")
            ->value("CFBundleShortVersionString"));
    EXPECT_FALSE(preferences().contains("Show At Startup Entries"));
    EXPECT_TRUE(server.requests().isEmpty());

    changeInfo(bundle, { { "QXWelcomeScreenConnectionTestName", "localhost" } });
    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return posts().size() == 1; }, 30000));
    const QUrlQuery fields = posts()[0];
    EXPECT_EQ(fields.queryItemValue("show"), "first");
    EXPECT_EQ(fields.queryItemValue("lang"), "fr-CA");
    EXPECT_EQ(fields.queryItemValue("x"), "1");
    EXPECT_EQ(fields.queryItemValue("osver"), "10.13.0");
    EXPECT_TRUE(panelShown());
    quitOnceStored("Show At Startup Entries", QVariantMap { { "1", true } });

    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return posts().size() == 2; }, 30000));
    EXPECT_EQ(posts()[1].queryItemValue("show"), "auto");
    stop(app);

    changeInfo(bundle, { { "QXWelcomeScreenVersion", "2" } });
    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return posts().size() == 3; }, 30000));
    EXPECT_EQ(posts()[2].queryItemValue("show"), "first");
    quitOnceStored("Show At Startup Entries", QVariantMap { { "1", true }, { "2", true } });
}

TEST_F(WelcomePanel, LinksToTheWelcomeSiteStayAndOthersLeave)
{
    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [&] { return pagesShown().contains("/welcome/ Test welcome page"); }, 30000))
        << pagesShown().toStdString();
    screenshot("welcome-panel.png");
    const QString elsewhere = server.url("/elsewhere").toString().replace("127.0.0.1", "localhost");
    EXPECT_TRUE(clickPageUntil(
        0.5, 1.0 / 6, [&] { return browser.recordedArguments().contains(elsewhere); }));
    EXPECT_TRUE(clickPageUntil(0.5, 3.0 / 6, [&] { return QFile::exists(settingsLog); }));
    EXPECT_EQ(TestEnvironment::readFile(settingsLog).split('\n').value(0), "network");
    EXPECT_TRUE(
        clickPageUntil(0.5, 5.0 / 6, [&] { return pagesShown().contains("/welcome/next Next"); }));
    for (const HttpTestServer::Request& request : server.requests())
        EXPECT_FALSE(request.target.contains("elsewhere"));
}

TEST_F(WelcomePanel, TheFallbackPageShowsWhenTheServerIsDown)
{
    changeInfo(bundle,
        { { "QXWelcomeScreenURL",
            QStringLiteral("http://127.0.0.1:%1/welcome/").arg(closedLocalPort()) } });
    launch();
    EXPECT_TRUE(panelShown());
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [&] {
            return pagesShown().contains(
                "/Contents/Resources/QXWelcomeScreen.html Welcome to Tolvane");
        },
        30000))
        << pagesShown().toStdString();
    screenshot("welcome-fallback.png");
}

}

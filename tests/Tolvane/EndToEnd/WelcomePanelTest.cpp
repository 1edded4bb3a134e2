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
#include <QRect>

namespace {

const QString panelTitle = QStringLiteral("Welcome to Tolvane");

// The page the server sends: three stripes, each a link to click.
const QByteArray welcomePage = R"(<!DOCTYPE html><html><head><title>Test welcome page</title><style>
body { margin: 0; font: 20px sans-serif; }
a { display: flex; align-items: center; justify-content: center; height: 33.3vh; color: white;
    text-decoration: none; }
a:nth-child(1) { background: #2a62c9; } a:nth-child(2) { background: #3a8a5c; }
a:nth-child(3) { background: #8a5a2c; }
</style></head><body>
<a href="http://localhost:PORT/elsewhere">Visit another site</a>
<a href="network-diagnostics:">Check the network settings</a>
<a href="/welcome/next">More on the welcome site</a>
</body></html>)";

using namespace RunningApplication;

class WelcomePanel : public testing::Test {
protected:
    void SetUp() override
    {
        copyBundle(bundle,
            { { "QXWelcomeScreenURL", server.url("/welcome/").toString() },
                { "QXWelcomeScreenConnectionTestName", "localhost" } });
        server.respond([this](const HttpTestServer::Request& request) {
            if (request.target.startsWith("/welcome/next"))
                return HttpTestServer::Response { 200, "<title>Next</title>" };
            return HttpTestServer::Response { 200,
                QByteArray(welcomePage).replace("PORT", QByteArray::number(server.port())) };
        });
        updateServer.respond({ 200, "<plist><dict/></plist>", "application/xml" });

        // A settings program of the desktop, noting that it was asked for.
        const QString bin = TestEnvironment::home() + "/settings-bin";
        TestEnvironment::writeFile(bin + "/gnome-control-center",
            "#!/bin/sh\necho \"$*\" >> '" + QFile::encodeName(settingsLog()) + "'\n");
        QFile::setPermissions(bin + "/gnome-control-center", QFile::ReadOwner | QFile::ExeOwner);

        environment.insert("PATH", bin + ":" + environment.value("PATH"));
        environment.insert("TOLVANE_SYSTEM_VERSION", "10.13");
        environment.insert("TOLVANE_UPDATE_HOST", updateServer.authority());
        environment.insert("XDG_CURRENT_DESKTOP", "");
        environment.insert("QTWEBENGINE_REMOTE_DEBUGGING", QString::number(debuggingPort));
        TestEnvironment::writeFile(document, "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 10 10\n");
    }

    void TearDown() override { stop(app); }

    QString preferencesPath() const
    {
        return TestEnvironment::userLibrary() + "/Preferences/app.tolvane.Tolvane.plist";
    }
    QVariantMap preferences() const
    {
        return PropertyList::readDictionary(preferencesPath()).value_or(QVariantMap());
    }
    QString settingsLog() const { return TestEnvironment::home() + "/settings.log"; }

    // Starts the copy with a document and waits until its launch has finished: the generator's
    // update check, which comes after the welcome screen's turn, has asked the update server.
    void launch()
    {
        const qsizetype checks = updateServer.requests().size();
        app.setProcessEnvironment(environment);
        app.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        app.start(bundle + "/Contents/Linux/Tolvane", { document });
        ASSERT_TRUE(app.waitForStarted());
        ASSERT_TRUE(updateServer.waitForRequests(checks + 1, 30000)) << "the launch never finished";
    }

    // Waits until the user defaults have reached the file, then ends the application.
    void quitOnceStored(const std::function<bool(const QVariantMap&)>& stored)
    {
        EXPECT_TRUE(TestEnvironment::waitUntil([&] { return stored(preferences()); }, 15000))
            << TestEnvironment::readFile(preferencesPath()).toStdString();
        stop(app);
    }

    QList<HttpTestServer::Request> posts() const
    {
        QList<HttpTestServer::Request> result;
        for (const HttpTestServer::Request& request : server.requests()) {
            if (request.method == "POST")
                result.append(request);
        }
        return result;
    }

    // The pages the web engine shows, as "url title" lines, from its debugging interface.
    QString pagesShown()
    {
        QNetworkAccessManager network;
        QNetworkReply* reply = network.get(QNetworkRequest(
            QUrl(QStringLiteral("http://127.0.0.1:%1/json/list").arg(debuggingPort))));
        TestEnvironment::waitUntil([reply] { return reply->isFinished(); }, 5000);
        QString pages;
        for (const QJsonValue& page : QJsonDocument::fromJson(reply->readAll()).array())
            pages += page["url"].toString() + " " + page["title"].toString() + "\n";
        delete reply;
        return pages;
    }

    bool panelShown() const
    {
        return output("xwininfo", { "-root", "-tree" }).contains("\"" + panelTitle + "\"");
    }

    // Clicks the page (a point given as fractions of its width and height) until the condition
    // holds: a click that comes before the page has loaded does nothing.
    bool clickPageUntil(double x, double y, const std::function<bool()>& condition)
    {
        for (int attempt = 0; attempt < 20; ++attempt) {
            clickPage(x, y);
            if (TestEnvironment::waitUntil(condition, 1000))
                return true;
        }
        return false;
    }

    // The panel's window, brought to the front: there is no window manager to keep it there.
    QString raisedPanel() const
    {
        const QString id = output("xdotool", { "search", "--onlyvisible", "--name", panelTitle })
                               .section('\n', 0, 0);
        output("xdotool", { "windowraise", id });
        return id;
    }

    void clickPage(double x, double y)
    {
        QRect frame;
        for (const QString& line : output("xwininfo", { "-id", raisedPanel() }).split('\n')) {
            const int value = line.section(':', 1).trimmed().toInt();
            if (line.contains("Absolute upper-left X"))
                frame.moveLeft(value);
            else if (line.contains("Absolute upper-left Y"))
                frame.moveTop(value);
            else if (line.contains("Width:"))
                frame.setWidth(value);
            else if (line.contains("Height:"))
                frame.setHeight(value);
        }
        // The band with the check box and the buttons takes the panel's lowest 52 pixels.
        output("xdotool",
            { "mousemove", QString::number(frame.x() + int(frame.width() * x)),
                QString::number(frame.y() + int((frame.height() - 52) * y)), "click", "1" });
    }

    // For scripts/screenshots.sh, which names a folder in TOLVANE_SCREENSHOTS.
    void screenshot(const QString& name)
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
    quint16 debuggingPort = closedLocalPort();
    QProcess app;
};

QMap<QString, QString> formFields(const QByteArray& body)
{
    QMap<QString, QString> fields;
    for (const QString& pair : QString::fromUtf8(body).split('&'))
        fields.insert(pair.section('=', 0, 0), pair.section('=', 1));
    return fields;
}

TEST_F(WelcomePanel, ShowsFirstThenAutoThenFirstAgainForANewVersion)
{
    // The user's first language goes into the body as it is stored, "&" and all.
    ASSERT_TRUE(PropertyList::writeXmlAtomically(
        QVariantMap { { "AppleLanguages", QVariantList { "fr-CA&x=1", "en" } } },
        preferencesPath()));
    launch();
    ASSERT_TRUE(server.waitForRequests(1));
    ASSERT_EQ(posts().size(), 1);
    EXPECT_EQ(posts()[0].target, "/welcome/");
    EXPECT_EQ(posts()[0].contentType, "application/x-www-form-urlencoded");
    const QMap<QString, QString> fields = formFields(posts()[0].body);
    EXPECT_EQ(fields.value("show"), "first");
    EXPECT_EQ(fields.value("lang"), "fr-CA");
    EXPECT_EQ(fields.value("x"), "1");
    EXPECT_EQ(fields.value("appid"), "TLV");
    EXPECT_EQ(fields.value("osver"), "10.13.0");
    EXPECT_TRUE(panelShown());
    quitOnceStored([](const QVariantMap& stored) {
        return stored.value("Show At Startup Entries") == QVariantMap { { "1", true } };
    });

    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return posts().size() == 2; }, 30000));
    EXPECT_EQ(formFields(posts()[1].body).value("show"), "auto");
    stop(app);

    changeInfo(bundle, { { "QXWelcomeScreenVersion", "2" } });
    launch();
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return posts().size() == 3; }, 30000));
    EXPECT_EQ(formFields(posts()[2].body).value("show"), "first");
    quitOnceStored([](const QVariantMap& stored) {
        return stored.value("Show At Startup Entries")
            == QVariantMap { { "1", true }, { "2", true } };
    });
}

TEST_F(WelcomePanel, AnUnreachableTestHostShowsNothingAndStoresNothing)
{
    changeInfo(bundle, { { "QXWelcomeScreenConnectionTestName", "welcome.unresolvable.invalid" } });
    launch();
    EXPECT_FALSE(panelShown());
    quitOnceStored([](const QVariantMap& stored) {
        return stored.contains("Preferences Application Version");
    });
    EXPECT_FALSE(preferences().contains("Show At Startup Entries"));
    EXPECT_TRUE(server.requests().isEmpty());
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
    EXPECT_TRUE(clickPageUntil(0.5, 3.0 / 6, [&] { return QFile::exists(settingsLog()); }));
    EXPECT_EQ(TestEnvironment::readFile(settingsLog()).split('\n').value(0), "network");
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

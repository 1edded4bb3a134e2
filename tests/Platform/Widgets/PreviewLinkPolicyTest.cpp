// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewLinkPolicy.h"

#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

struct LinkCase {
    const char* name;
    // "%page%" stands for the page's folder, "%home%" for the home folder.
    const char* url;
    PreviewLinkAction action;
};

void PrintTo(const LinkCase& c, std::ostream* out) { *out << c.name; }

class PreviewLinks : public testing::TestWithParam<LinkCase> { };

TEST_P(PreviewLinks, AreSortedByWhereTheyLead)
{
    const QString page = TestEnvironment::home() + QStringLiteral("/preview");
    QDir().mkpath(page + QStringLiteral("/pictures"));
    TestEnvironment::writeFile(page + QStringLiteral("/index.html"), "<html></html>");
    TestEnvironment::writeFile(
        TestEnvironment::home() + QStringLiteral("/preview-other/x.html"), "");
    QDir().mkpath(TestEnvironment::home() + QStringLiteral("/secret"));
    QFile::link(
        TestEnvironment::home() + QStringLiteral("/secret"), page + QStringLiteral("/link"));

    QString url = QString::fromUtf8(GetParam().url);
    url.replace(QStringLiteral("%page%"), page)
        .replace(QStringLiteral("%home%"), TestEnvironment::home());
    EXPECT_EQ(previewLinkAction(QUrl(url), page), GetParam().action) << url.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Table, PreviewLinks,
    testing::Values(
        LinkCase { "UrlCommand", "tolvane://reveal/font?path=/a", PreviewLinkAction::URLCommand },
        LinkCase { "UrlCommandInCapitals", "TOLVANE://settings/2", PreviewLinkAction::URLCommand },
        LinkCase { "Web", "https://tolvane.example/support/", PreviewLinkAction::OpenExternally },
        LinkCase { "PlainWeb", "http://127.0.0.1/", PreviewLinkAction::OpenExternally },
        LinkCase { "Mail", "mailto:someone@tolvane.example", PreviewLinkAction::OpenExternally },
        LinkCase { "OwnPage", "file://%page%/index.html#page2", PreviewLinkAction::Navigate },
        LinkCase { "OwnSubfolder", "file://%page%/pictures/p1.png", PreviewLinkAction::Navigate },
        LinkCase { "MissingOwnFile", "file://%page%/page9.html", PreviewLinkAction::Navigate },
        LinkCase { "ParentFolder", "file://%page%/../secret", PreviewLinkAction::Refuse },
        LinkCase {
            "SiblingWithSamePrefix", "file://%page%-other/x.html", PreviewLinkAction::Refuse },
        LinkCase { "SymlinkOut", "file://%page%/link", PreviewLinkAction::Refuse },
        LinkCase { "OtherFile", "file:///etc/passwd", PreviewLinkAction::Refuse },
        LinkCase { "RemoteFile", "file://server/share/x", PreviewLinkAction::Refuse },
        LinkCase { "Script", "javascript:alert(1)", PreviewLinkAction::Refuse },
        LinkCase { "Data", "data:text/html,<p>x</p>", PreviewLinkAction::Refuse },
        LinkCase { "Ftp", "ftp://127.0.0.1/", PreviewLinkAction::Refuse },
        LinkCase { "Empty", "", PreviewLinkAction::Refuse }),
    [](const testing::TestParamInfo<LinkCase>& info) { return std::string(info.param.name); });

TEST(PreviewLinkPolicy, OnlyTheOwnersLoadAndTheUsersClicksGoAnywhere)
{
    const QString page = TestEnvironment::home() + QStringLiteral("/preview");
    TestEnvironment::writeFile(page + QStringLiteral("/index.html"), "<html></html>");
    const QUrl own = QUrl::fromLocalFile(page + QStringLiteral("/index.html"));
    const QUrl web(QStringLiteral("https://tolvane.example/"));
    const QUrl command(QStringLiteral("tolvane://settings/about"));
    using Cause = PreviewNavigationCause;
    EXPECT_EQ(previewLinkAction(own, page, Cause::Load), PreviewLinkAction::Navigate);
    EXPECT_EQ(previewLinkAction(web, page, Cause::Load), PreviewLinkAction::Refuse);
    EXPECT_EQ(previewLinkAction(command, page, Cause::Load), PreviewLinkAction::Refuse);
    for (const QUrl& url : { own, web, command })
        EXPECT_EQ(previewLinkAction(url, page, Cause::Page), PreviewLinkAction::Refuse)
            << url.toString().toStdString();
}

TEST(PreviewLinkPolicy, ThePageReadsItsOwnFilesAndDataOnly)
{
    const QString page = TestEnvironment::home() + QStringLiteral("/preview");
    TestEnvironment::writeFile(page + QStringLiteral("/page-1.png"), "png");
    TestEnvironment::writeFile(TestEnvironment::home() + QStringLiteral("/secret.png"), "png");
    QFile::link(TestEnvironment::home() + QStringLiteral("/secret.png"),
        page + QStringLiteral("/page-2.png"));
    EXPECT_TRUE(previewMayRead(QUrl::fromLocalFile(page + "/page-1.png"), page));
    EXPECT_TRUE(previewMayRead(QUrl(QStringLiteral("data:image/png;base64,AAAA")), page));
    EXPECT_FALSE(previewMayRead(QUrl::fromLocalFile(page + "/page-2.png"), page));
    EXPECT_FALSE(
        previewMayRead(QUrl::fromLocalFile(TestEnvironment::home() + "/secret.png"), page));
    EXPECT_FALSE(previewMayRead(QUrl(QStringLiteral("https://tolvane.example/x.png")), page));
}

TEST(PreviewLinkPolicy, RefusesFilesWhenThePageHasNoFolder)
{
    EXPECT_EQ(previewLinkAction(QUrl(QStringLiteral("file:///tmp/x.html")), QString()),
        PreviewLinkAction::Refuse);
    EXPECT_EQ(previewLinkAction(
                  QUrl(QStringLiteral("file:///tmp/x.html")), QStringLiteral("/no/such/folder")),
        PreviewLinkAction::Refuse);
}

}

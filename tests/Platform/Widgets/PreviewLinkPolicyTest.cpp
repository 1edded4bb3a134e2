// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewLinkPolicy.h"

#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <gtest/gtest.h>

namespace {

TEST(PreviewLinkPolicy, SortsLinksByWhereTheyLead)
{
    const QString page = TestEnvironment::home() + QStringLiteral("/preview");
    TestEnvironment::writeFile(page + QStringLiteral("/index.html"), "<html></html>");
    TestEnvironment::writeFile(
        TestEnvironment::home() + QStringLiteral("/preview-other/x.html"), "");
    QDir().mkpath(TestEnvironment::home() + QStringLiteral("/secret"));
    QFile::link(
        TestEnvironment::home() + QStringLiteral("/secret"), page + QStringLiteral("/link"));
    using Action = PreviewLinkAction;
    const std::pair<QString, PreviewLinkAction> cases[] = {
        { "tolvane://reveal/font?path=/a", Action::URLCommand },
        { "https://tolvane.example/support/", Action::OpenExternally },
        { "file://" + page + "/index.html#page2", Action::Navigate },
        { "file://" + page + "/../secret", Action::Refuse },
        { "file://" + page + "-other/x.html", Action::Refuse }, // the same prefix
        { "file://" + page + "/link", Action::Refuse },
        { "file://server/share/x", Action::Refuse },
        { "javascript:alert(1)", Action::Refuse },
    };
    for (const auto& [url, action] : cases)
        EXPECT_EQ(previewLinkAction(QUrl(url), page), action) << url.toStdString();
    // A page without a folder of its own opens no file.
    for (const QString& folder : { QString(), QStringLiteral("/no/such/folder") })
        EXPECT_EQ(previewLinkAction(QUrl(QStringLiteral("file:///tmp/x.html")), folder),
            PreviewLinkAction::Refuse);

    // Of what the page opens by itself only its own files load, and nothing leaves; only the
    // user's clicks go anywhere.
    for (const auto& [url, onLoad] :
        { std::pair { QUrl::fromLocalFile(page + QStringLiteral("/index.html")), Action::Navigate },
            std::pair { QUrl(QStringLiteral("https://tolvane.example/")), Action::Refuse },
            std::pair { QUrl(QStringLiteral("tolvane://settings/about")), Action::Refuse } }) {
        EXPECT_EQ(previewLinkAction(url, page, PreviewNavigationCause::Load), onLoad)
            << url.toString().toStdString();
        EXPECT_EQ(previewLinkAction(url, page, PreviewNavigationCause::Page), Action::Refuse)
            << url.toString().toStdString();
    }
}

}

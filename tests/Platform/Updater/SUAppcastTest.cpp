// SPDX-License-Identifier: GPL-3.0-or-later
#include "SUAppcast.h"

#include "TestEnvironment.h"

#include <gtest/gtest.h>

namespace {

QByteArray feedWithItems(const QByteArray& items,
    const QByteArray& namespaces
    = R"(xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle")")
{
    return R"(<?xml version="1.0" encoding="utf-8"?><rss version="2.0" )" + namespaces
        + "><channel><title>Feed</title>" + items + "</channel></rss>";
}

TEST(AppcastParsing, ReadsEveryFieldOfTheItems)
{
    QString error;
    const auto appcast = SUAppcast::fromData(
        TestEnvironment::readFile(TestEnvironment::dataPath("updater/appcast.xml")), &error);
    ASSERT_TRUE(appcast) << error.toStdString();
    ASSERT_EQ(appcast->items().size(), 4);

    // The version from the enclosure, and the archive for a download page.
    const SUAppcastItem& old = appcast->items()[0];
    EXPECT_EQ(old.versionString, "1.4");
    EXPECT_EQ(old.downloadPageURL(), QUrl("http://127.0.0.1/tolvane/Tolvane-1.4.tar.xz"));

    const SUAppcastItem& item = appcast->items()[1];
    EXPECT_EQ(item.versionString, "2.0");
    EXPECT_EQ(item.displayVersion(), "2.0 (Spring)");
    EXPECT_EQ(item.minimumSystemVersion, "3.10.0");
    EXPECT_EQ(item.itemDescription,
        "<h2>What is new</h2><ul><li>Swatch panels show <b>spot colours</b>.</li></ul>");
    EXPECT_EQ(item.downloadPageURL(), QUrl("http://127.0.0.1/tolvane/download/"));
    EXPECT_EQ(item.fileURL, QUrl("http://127.0.0.1/tolvane/Tolvane-2.0.tar.xz"));
    EXPECT_EQ(item.contentLength, 2097152);
    EXPECT_EQ(item.edSignature, "c2lnbmF0dXJlLW9mLTIuMA==");

    EXPECT_EQ(appcast->items()[2].releaseNotesURL, QUrl("http://127.0.0.1/tolvane/notes/1.9.html"));
}

TEST(AppcastParsing, ABrokenFeedSaysWhatIsWrong)
{
    const QByteArray oneItem = feedWithItems("<item><sparkle:version>2</sparkle:version></item>");
    for (const auto& [data, words] :
        { std::pair { oneItem.left(150), "not well-formed" },
            std::pair { QByteArray(oneItem + "<rss/>"), "not well-formed" },
            std::pair { QByteArray("<html><body>Unavailable</body></html>"), "not an RSS feed" },
            std::pair { feedWithItems(""), "no updates" },
            std::pair { feedWithItems("<item><title>2.0</title></item>"), "gives its version" } }) {
        QString error;
        EXPECT_FALSE(SUAppcast::fromData(data, &error));
        EXPECT_TRUE(error.contains(QLatin1String(words))) << error.toStdString();
    }
}

// Of equal versions the first; the system range is met inclusively, a missing part being zero.
TEST(AppcastBestItem, KeepsTheFirstOfEqualVersionsAndHonoursTheSystemRange)
{
    const auto appcast = SUAppcast::fromData(
        feedWithItems("<item><title>first</title><sparkle:version>2.0</sparkle:version></item>"
                      "<item><title>second</title><sparkle:version>2.0.0</sparkle:version></item>"
                      "<item><sparkle:version>3.0</sparkle:version>"
                      "<sparkle:minimumSystemVersion>5.0.0</sparkle:minimumSystemVersion>"
                      "<sparkle:maximumSystemVersion>6.1</sparkle:maximumSystemVersion></item>"));
    ASSERT_TRUE(appcast);
    EXPECT_EQ(appcast->bestItem("5")->versionString, "3.0");
    EXPECT_EQ(appcast->bestItem("6.1.0")->versionString, "3.0");
    EXPECT_EQ(appcast->bestItem("6.1.5")->title, "first");
    EXPECT_EQ(appcast->bestItem("4.19")->title, "first");
    EXPECT_EQ(appcast->newestItem()->versionString, "3.0");
}

// Published a day and a half ago, one more of the seven groups each day.
TEST(AppcastRollout, ReachesOneMoreGroupEachIntervalUnlessCriticalOrAskedFor)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const QByteArray published = now.addSecs(-36 * 3600).toString(Qt::RFC2822Date).toUtf8();
    const auto appcast = SUAppcast::fromData(
        feedWithItems("<item><sparkle:version>2.0</sparkle:version><pubDate>" + published
            + "</pubDate>"
              "<sparkle:phasedRolloutInterval>86400</sparkle:phasedRolloutInterval></item>"
              "<item><sparkle:version>1.9</sparkle:version></item>"
              "<item><sparkle:version>1.8</sparkle:version><pubDate>"
            + published
            + "</pubDate>"
              "<sparkle:phasedRolloutInterval>86400</sparkle:phasedRolloutInterval>"
              "<sparkle:criticalUpdate sparkle:version=\"1.5\"/></item>"));
    ASSERT_TRUE(appcast);
    const auto best = [&](int group, const QString& host) {
        return appcast->bestItem("6.1.0", { group, now, host })->versionString;
    };
    EXPECT_EQ(best(0, "1.0"), "2.0");
    EXPECT_EQ(best(1, "1.0"), "2.0");
    EXPECT_EQ(best(2, "1.0"), "1.9");
    EXPECT_EQ(best(-1, "1.0"), "2.0"); // a check the user started

    // A critical update reaches every group below the version that it fixes.
    const SUAppcastItem& critical = appcast->items()[2];
    EXPECT_TRUE((SUAppcastRollout { 6, now, "1.4" }).reaches(critical));
    EXPECT_FALSE((SUAppcastRollout { 6, now, "1.5" }).reaches(critical));
}

}

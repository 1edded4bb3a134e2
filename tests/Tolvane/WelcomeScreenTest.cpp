// SPDX-License-Identifier: GPL-3.0-or-later
// The welcome screen's decisions and its panel, without the web engine (this test program's
// bundle has no web view module, so the panel comes up without its page).
#include "QXWelcomeScreen.h"
#include "UserDefaults.h"

#include <QCheckBox>
#include <QGuiApplication>
#include <QScreen>
#include <gtest/gtest.h>

namespace {

struct RecordingDelegate : QXWelcomeScreenDelegate {
    void welcomeScreenWillShow(QXWelcomeScreen*) override { ++willShow; }
    void welcomeScreenWillClose(QXWelcomeScreen*) override { ++willClose; }
    QString typeForWelcomeScreen(QXWelcomeScreen*) override { return type; }

    int willShow = 0;
    int willClose = 0;
    QString type = QStringLiteral("RA");
};

QVariantMap storedEntries()
{
    return UserDefaults::standardUserDefaults().dictionaryForKey(
        QXWelcomeWindowShowAtStartupEntries);
}

TEST(WelcomeScreen, TheFirstShowingBuildsAndPlacesThePanelLaterOnesBringItBack)
{
    RecordingDelegate delegate;
    QXWelcomeScreen* screen = QXWelcomeScreen::sharedWelcomeScreenWithDelegate(&delegate);
    // A null delegate leaves the one there.
    EXPECT_EQ(QXWelcomeScreen::sharedWelcomeScreenWithDelegate(nullptr)->delegate(), &delegate);
    EXPECT_FALSE(QXWelcomeScreen::displayIfPossibleWithDelegate(nullptr, false));
    QWidget* panel = screen->panel();
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(screen->showRef(), QXWelcomeScreen::First);
    EXPECT_EQ(delegate.willShow, 1);
    // The first showing of a version stores its entry from the check box.
    EXPECT_TRUE(screen->showAtStartupCheck()->isChecked());
    EXPECT_EQ(storedEntries(), (QVariantMap { { "3", true } }));

    // Centred across, its middle a tenth of the screen's height above the screen's middle.
    const QRect frame = QGuiApplication::primaryScreen()->geometry();
    EXPECT_EQ(panel->x(), qRound(frame.x() + frame.width() / 2.0 - panel->width() / 2.0));
    EXPECT_EQ(panel->y(), qRound(frame.y() + frame.height() * 0.4 - panel->height() / 2.0));

    // The close box only hides the panel; showing it again sends nothing new.
    panel->close();
    EXPECT_EQ(delegate.willClose, 1);
    screen->show(screen);
    EXPECT_EQ(screen->panel(), panel);
    EXPECT_EQ(screen->showRef(), QXWelcomeScreen::Manual);
    EXPECT_EQ(delegate.willShow, 1);

    // Unticking stores false for this version only.
    UserDefaults::standardUserDefaults().setObject(
        QVariantMap { { "2", true }, { "3", true } }, QXWelcomeWindowShowAtStartupEntries);
    screen->showAtStartupCheck()->click();
    EXPECT_EQ(storedEntries(), (QVariantMap { { "2", true }, { "3", false } }));
    EXPECT_FALSE(QXWelcomeScreen::showAtStartup());

    screen->close();
    EXPECT_EQ(delegate.willClose, 2);
    EXPECT_EQ(screen->panel(), nullptr);
    screen->show(nullptr);
    EXPECT_EQ(screen->showRef(), QXWelcomeScreen::Auto);
    EXPECT_EQ(delegate.willShow, 2);
    EXPECT_FALSE(screen->showAtStartupCheck()->isChecked());
    screen->close();
    screen->setDelegate(nullptr);
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
// The welcome screen's decisions and its panel, without the web engine (this test program's
// bundle has no web view module, so the panel comes up without its page).
#include "QXWelcomeScreen.h"
#include "UserDefaults.h"

#include <QCheckBox>
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

// Without an entry the panel is shown at startup. The close box only hides it, and showing it again
// sends nothing new; unticking stores false for this version only; closing the screen ends it.
TEST(WelcomeScreen, ThePanelComesBackAsItWasAndUntickingStoresFalse)
{
    EXPECT_TRUE(QXWelcomeScreen::showAtStartup());
    RecordingDelegate delegate;
    QXWelcomeScreen* screen = QXWelcomeScreen::sharedWelcomeScreenWithDelegate(&delegate);
    UserDefaults::standardUserDefaults().setObject(
        QVariantMap { { "2", true }, { "3", true } }, QXWelcomeWindowShowAtStartupEntries);
    screen->showWithRef(QXWelcomeScreen::First);
    QWidget* panel = screen->panel();
    ASSERT_NE(panel, nullptr);
    panel->close();
    screen->show(screen);
    EXPECT_EQ(screen->panel(), panel);
    EXPECT_EQ(screen->showRef(), QXWelcomeScreen::Manual);
    EXPECT_EQ(delegate.willShow, 1);
    EXPECT_EQ(delegate.willClose, 1);

    screen->showAtStartupCheck()->click();
    EXPECT_EQ(storedEntries(), (QVariantMap { { "2", true }, { "3", false } }));
    EXPECT_FALSE(QXWelcomeScreen::showAtStartup());
    screen->close();
    EXPECT_EQ(screen->panel(), nullptr);
    screen->show(nullptr);
    EXPECT_EQ(screen->showRef(), QXWelcomeScreen::Auto);
    EXPECT_FALSE(screen->showAtStartupCheck()->isChecked());
    screen->close();
    screen->setDelegate(nullptr);
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyList.h"
#include "SUUpdater.h"
#include "TLPrefrencesWindowController.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"
#include "VariantKinds.h"
#include "VistrelUtilities.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QMainWindow>
#include <QRadioButton>
#include <QSpinBox>
#include <gtest/gtest.h>

namespace {

UserDefaults& defaults() { return UserDefaults::standardUserDefaults(); }

// The standard defaults are made once per process, in the home of the first test; the fixture
// empties them and points the Library at their file, so that the preferences file the generator
// reads is the one they write.
class PreferencesWindowTest : public testing::Test {
protected:
    void SetUp() override
    {
        const QString file = defaults().path();
        qputenv("XDG_DATA_HOME", QFile::encodeName(QFileInfo(file).dir().absoluteFilePath("..")));
        const auto stored = defaults().persistentDomain().keys();
        for (const QString& key : stored)
            defaults().removeObjectForKey(key);
        defaults().synchronize();
        QFile::remove(file);
        defaults().registerDefaults(VTUserDefaults());
        ASSERT_EQ(QFileInfo(defaults().path()).absoluteFilePath(),
            QFileInfo(VTPreferencesPath()).absoluteFilePath())
            << "the test program must run inside a bundle whose identifier is "
            << VTPreferencesDomain.toStdString();
        controller = std::make_unique<TLPrefrencesWindowController>();
        controller->setAnimatesResize(false);
    }

    static QVariantMap preferencesFile()
    {
        return PropertyList::readDictionary(VTPreferencesPath()).value_or(QVariantMap());
    }

    template <typename Control> Control* control(const char* name)
    {
        for (QWidget* pane :
            { controller->aboutView(), controller->settingsView(), controller->quickLookView() }) {
            if (auto* found = pane->findChild<Control*>(QLatin1String(name)))
                return found;
        }
        return nullptr;
    }

    std::unique_ptr<TLPrefrencesWindowController> controller;
};

// The window grows and shrinks from its bottom edge.
TEST_F(PreferencesWindowTest, EachToolbarItemShowsItsPaneAtThePaneSizeKeepingTheTopEdge)
{
    EXPECT_EQ(control<QLabel>("versionLabel")->text(), "3.1.4 (v314)");
    controller->showWindow();
    controller->window()->move(120, 80);
    const int top = controller->window()->geometry().top();
    const std::pair<QString, QWidget*> panes[] = { { "Settings", controller->settingsView() },
        { "Quick Look", controller->quickLookView() }, { "About", controller->aboutView() } };
    for (const auto& [identifier, view] : panes) {
        SCOPED_TRACE(identifier.toStdString());
        auto* item = controller->window()->findChild<QAction*>(identifier);
        ASSERT_NE(item, nullptr);
        item->trigger();
        EXPECT_EQ(controller->selectedToolbarItemIdentifier(), identifier);
        EXPECT_EQ(controller->contentView()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly),
            QList<QWidget*> { view });
        EXPECT_EQ(controller->contentView()->size(), view->size());
        EXPECT_EQ(controller->window()->geometry().top(), top);
    }
}

// The three buttons stand for: no checks, checks that notify, checks that download.
TEST_F(PreferencesWindowTest, TheRadioButtonsFollowAndSetTheUpdaterSettings)
{
    SUUpdater* updater = SUUpdater::sharedUpdater();
    const struct {
        bool checks;
        bool downloads;
        QRadioButton* radio;
    } cases[] = { { true, false, controller->checkForUpdateRadioNotify() },
        { true, true, controller->checkForUpdateRadioDownload() },
        { false, true, controller->checkForUpdateRadioNone() } };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.radio->objectName().toStdString());
        // The window follows the updater without being told; the buttons exclude each other.
        updater->setAutomaticallyChecksForUpdates(c.checks);
        updater->setAutomaticallyDownloadsUpdates(c.downloads);
        EXPECT_TRUE(c.radio->isChecked());
        updater->setAutomaticallyChecksForUpdates(!c.checks);
        updater->setAutomaticallyDownloadsUpdates(true);
        EXPECT_FALSE(c.radio->isChecked());
        c.radio->click();
        // "None" turns the download off too.
        ASSERT_TRUE(defaults().synchronize());
        const QVariantMap file = preferencesFile();
        EXPECT_TRUE(VariantKinds::same(file.value("SUEnableAutomaticChecks"), c.checks));
        EXPECT_TRUE(
            VariantKinds::same(file.value("SUAutomaticallyUpdate"), c.checks && c.downloads));
    }
}

// One control of each kind first shows the store's default (and showing writes nothing), then
// writes its key with the kind of the default, and follows the store; a value it cannot show stays.
TEST_F(PreferencesWindowTest, EachKindOfControlShowsTheDefaultWritesItsKeyWithItsKindAndFollows)
{
    auto* spreads = control<QComboBox>("inDesignSpreadModeComboBox");
    auto* pages = control<QSpinBox>("maximumPagesSpinBox");
    auto* megabytes = control<QDoubleSpinBox>("thumbnailThresholdSpinBox");
    auto* loupe = control<QCheckBox>("useLoupeCheckBox");
    const QString threshold = preferEmbeddedPreviewForThumbnailFileSizeThreshold;
    EXPECT_EQ(spreads->currentIndex(), VTDefaults().value(TLPrefInDesignSpreadMode).toInt());
    EXPECT_EQ(pages->value(), VTDefaults().value(maximumNumberOfPagesPreviewed).toInt());
    EXPECT_EQ(megabytes->value(), VTDefaults().value(threshold).toDouble());
    EXPECT_EQ(loupe->isChecked(), VTDefaults().value(VTPUseLoupe).toBool());
    EXPECT_EQ(control<QComboBox>("backgroundColorComboBox")->currentText(),
        VTDefaults().value(imageBackgroundColorName).toString());
    EXPECT_TRUE(defaults().persistentDomain().isEmpty());

    // As the user would: a choice, a typed number, a click.
    spreads->setCurrentIndex(0);
    pages->setValue(35);
    megabytes->setValue(64.5);
    loupe->click();
    EXPECT_TRUE(VariantKinds::same(defaults().objectForKey(threshold), 64.5f));
    // No event loop ran, so the changes have not reached the file on their own: losing the active
    // window writes them.
    ASSERT_FALSE(preferencesFile().contains(maximumNumberOfPagesPreviewed));
    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(controller->window(), &deactivate);
    const QVariantMap file = preferencesFile();
    EXPECT_TRUE(VariantKinds::same(file.value(TLPrefInDesignSpreadMode), qint64(0)));
    EXPECT_TRUE(VariantKinds::same(file.value(maximumNumberOfPagesPreviewed), qint64(35)));
    // Property lists keep a 32-bit real as a double.
    EXPECT_TRUE(VariantKinds::same(file.value(threshold), 64.5));
    EXPECT_TRUE(VariantKinds::same(file.value(VTPUseLoupe), false));

    // The controls follow later changes of the store.
    defaults().setBool(true, VTPUseLoupe);
    defaults().setInteger(42, maximumNumberOfPagesPreviewed);
    EXPECT_TRUE(loupe->isChecked());
    EXPECT_EQ(pages->value(), 42);

    // Values a new window cannot take show as the default and stay stored as they are.
    defaults().setInteger(9, TLPrefInDesignSpreadMode);
    defaults().setInteger(17, imageBackgroundColorTag);
    controller = std::make_unique<TLPrefrencesWindowController>();
    EXPECT_EQ(control<QComboBox>("inDesignSpreadModeComboBox")->currentIndex(), 1);
    EXPECT_TRUE(VariantKinds::same(defaults().objectForKey(TLPrefInDesignSpreadMode), qint64(9)));
    EXPECT_TRUE(VariantKinds::same(defaults().objectForKey(imageBackgroundColorTag), qint64(17)));

    // The background's name and tag are written together; showing a tag rewrites no name.
    control<QComboBox>("backgroundColorComboBox")->setCurrentIndex(3);
    ASSERT_TRUE(defaults().synchronize());
    EXPECT_TRUE(
        VariantKinds::same(preferencesFile().value(imageBackgroundColorName), QString("Black")));
    EXPECT_TRUE(VariantKinds::same(preferencesFile().value(imageBackgroundColorTag), qint64(3)));
    defaults().setObject(imageBackgroundColorNameGray, imageBackgroundColorName);
    defaults().setInteger(0, imageBackgroundColorTag);
    EXPECT_EQ(control<QComboBox>("backgroundColorComboBox")->currentText(), "None");
    EXPECT_EQ(defaults().objectForKey(imageBackgroundColorName), QVariant("Gray"));
}

}

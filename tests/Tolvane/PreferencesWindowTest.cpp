// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSCalendarDate-RelativeAdditions.h"
#include "PropertyList.h"
#include "SUUpdater.h"
#include "TLPrefrencesWindowController.h"
#include "TestEnvironment.h"
#include "UserDefaults.h"
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
#include <functional>
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
    }

    std::unique_ptr<TLPrefrencesWindowController> makeController()
    {
        auto controller = std::make_unique<TLPrefrencesWindowController>();
        controller->setAnimatesResize(false);
        return controller;
    }

    static QVariantMap preferencesFile()
    {
        return PropertyList::readDictionary(VTPreferencesPath()).value_or(QVariantMap());
    }

    static QList<QWidget*> shownWidgets(TLPrefrencesWindowController& controller)
    {
        return controller.contentView()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    }

    template <typename Control>
    static Control* control(TLPrefrencesWindowController& controller, const char* name)
    {
        for (QWidget* pane :
            { controller.aboutView(), controller.settingsView(), controller.quickLookView() }) {
            if (auto* found = pane->findChild<Control*>(QLatin1String(name)))
                return found;
        }
        return nullptr;
    }
};

// ---- Panes ----

TEST_F(PreferencesWindowTest, ANewWindowShowsTheAboutPane)
{
    auto controller = makeController();
    EXPECT_EQ(controller->mode(), 0);
    EXPECT_EQ(controller->selectedToolbarItemIdentifier(), "About");
    EXPECT_EQ(shownWidgets(*controller), QList<QWidget*> { controller->aboutView() });
    EXPECT_EQ(controller->contentView()->size(), controller->aboutView()->size());
}

TEST_F(PreferencesWindowTest, EachToolbarItemShowsItsPaneAtThePaneSize)
{
    auto controller = makeController();
    const struct {
        QString identifier;
        qint64 tag;
        QWidget* view;
    } cases[] = {
        { "Settings", 1, controller->settingsView() },
        { "Quick Look", 2, controller->quickLookView() },
        { "About", 0, controller->aboutView() },
    };
    for (const auto& pane : cases) {
        SCOPED_TRACE(pane.identifier.toStdString());
        auto* item = controller->window()->findChild<QAction*>(pane.identifier);
        ASSERT_NE(item, nullptr);
        EXPECT_TRUE(item->isCheckable());
        EXPECT_EQ(item->data(), QVariant(pane.tag));
        item->trigger();
        EXPECT_EQ(controller->mode(), pane.tag);
        EXPECT_EQ(controller->selectedToolbarItemIdentifier(), pane.identifier);
        EXPECT_EQ(shownWidgets(*controller), QList<QWidget*> { pane.view });
        EXPECT_EQ(controller->contentView()->size(), pane.view->size());
        EXPECT_EQ(pane.view->pos(), QPoint(0, 0));
    }
}

TEST_F(PreferencesWindowTest, ThePanesDifferInSize)
{
    auto controller = makeController();
    const QSize about = controller->aboutView()->size();
    const QSize settings = controller->settingsView()->size();
    const QSize quickLook = controller->quickLookView()->size();
    EXPECT_NE(about, settings);
    EXPECT_NE(settings, quickLook);
    EXPECT_NE(about, quickLook);
}

TEST_F(PreferencesWindowTest, ThePaneChangeKeepsTheTopEdge)
{
    auto controller = makeController();
    controller->showWindow();
    QMainWindow* window = controller->window();
    window->move(120, 80);
    controller->setMode(1);
    const QRect tall = window->geometry();
    const int frameTop = window->frameGeometry().top();
    const int shrink = controller->settingsView()->height() - controller->quickLookView()->height();
    ASSERT_GT(shrink, 0) << "the settings pane should be the taller one";

    controller->setMode(2);
    EXPECT_EQ(window->frameGeometry().top(), frameTop);
    EXPECT_EQ(window->geometry().top(), tall.top());
    EXPECT_EQ(window->geometry().bottom(), tall.bottom() - shrink);
    EXPECT_EQ(controller->contentView()->size(), controller->quickLookView()->size());

    controller->setMode(1);
    EXPECT_EQ(window->frameGeometry().top(), frameTop);
    EXPECT_EQ(window->geometry(), tall);
}

TEST_F(PreferencesWindowTest, AnAnimatedPaneChangeEndsAtTheSameFrame)
{
    auto controller = makeController();
    controller->showWindow();
    controller->setMode(1);
    controller->setMode(2);
    const QRect expected = controller->window()->geometry();
    controller->setMode(1);

    controller->setAnimatesResize(true);
    controller->setMode(2);
    TestEnvironment::waitUntil([&] { return controller->window()->geometry() == expected; }, 3000);
    EXPECT_EQ(controller->window()->geometry(), expected);
}

TEST_F(PreferencesWindowTest, SettingTheSameModeAgainRelaysOutTheWindow)
{
    auto controller = makeController();
    int assignments = 0;
    QObject::connect(controller.get(), &TLPrefrencesWindowController::modeChanged,
        [&assignments](qint64) { ++assignments; });
    controller->setMode(1);
    const QRect frame = controller->window()->geometry();

    // Something else in the content and a window of another size: both undone by the relayout.
    auto* stray = new QLabel(QStringLiteral("stray"), controller->contentView());
    controller->window()->setMinimumSize(0, 0);
    controller->window()->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    controller->window()->resize(900, 700);

    controller->setMode(1);
    EXPECT_EQ(assignments, 2);
    EXPECT_EQ(shownWidgets(*controller), QList<QWidget*> { controller->settingsView() });
    EXPECT_NE(stray->parent(), controller->contentView());
    EXPECT_EQ(controller->window()->geometry(), frame);
}

TEST_F(PreferencesWindowTest, AnUnknownModeEmptiesTheWindowAndKeepsSizeAndSelection)
{
    for (const qint64 mode : { qint64(7), qint64(-1), qint64(3) }) {
        SCOPED_TRACE(mode);
        auto controller = makeController();
        controller->setMode(2);
        const QRect frame = controller->window()->geometry();
        int assignments = 0;
        QObject::connect(controller.get(), &TLPrefrencesWindowController::modeChanged,
            [&assignments](qint64) { ++assignments; });

        controller->setMode(mode);
        EXPECT_EQ(assignments, 1);
        EXPECT_EQ(controller->mode(), mode);
        EXPECT_TRUE(shownWidgets(*controller).isEmpty());
        EXPECT_EQ(controller->selectedToolbarItemIdentifier(), "Quick Look");
        EXPECT_EQ(controller->window()->geometry(), frame);
    }
}

TEST_F(PreferencesWindowTest, TheAboutPaneShowsTheApplicationAndItsVersion)
{
    auto controller = makeController();
    auto* name = control<QLabel>(*controller, "applicationNameLabel");
    auto* version = control<QLabel>(*controller, "versionLabel");
    ASSERT_NE(name, nullptr);
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(name->text(), "Tolvane");
    EXPECT_EQ(version->text(), "3.1.4 (v314)");
}

// ---- Update choice ----

struct UpdateChoice {
    const char* name;
    bool checks;
    bool downloads;
};

TEST_F(PreferencesWindowTest, TheRadioButtonsShowTheUpdaterSettings)
{
    auto controller = makeController();
    SUUpdater* updater = SUUpdater::sharedUpdater();
    const struct {
        UpdateChoice settings;
        QRadioButton* expectedOn;
    } cases[] = {
        { { "checks off", false, false }, controller->checkForUpdateRadioNone() },
        { { "checks off, downloads on", false, true }, controller->checkForUpdateRadioNone() },
        { { "checks on", true, false }, controller->checkForUpdateRadioNotify() },
        { { "checks and downloads on", true, true }, controller->checkForUpdateRadioDownload() },
        { { "checks off again", false, true }, controller->checkForUpdateRadioNone() },
    };
    for (const auto& [settings, expectedOn] : cases) {
        SCOPED_TRACE(settings.name);
        // The window follows the updater without being told.
        updater->setAutomaticallyChecksForUpdates(settings.checks);
        updater->setAutomaticallyDownloadsUpdates(settings.downloads);
        for (QRadioButton* radio :
            { controller->checkForUpdateRadioNone(), controller->checkForUpdateRadioNotify(),
                controller->checkForUpdateRadioDownload() }) {
            EXPECT_EQ(radio->isChecked(), radio == expectedOn) << radio->objectName().toStdString();
            EXPECT_TRUE(radio->isEnabled());
        }
    }
}

TEST_F(PreferencesWindowTest, ClickingARadioButtonSetsTheUpdaterSettings)
{
    auto controller = makeController();
    SUUpdater* updater = SUUpdater::sharedUpdater();
    const struct {
        QRadioButton* radio;
        UpdateChoice start;
        bool checks;
        bool downloads;
    } cases[] = {
        { controller->checkForUpdateRadioDownload(), { "download", false, true }, true, true },
        { controller->checkForUpdateRadioNotify(), { "notify", true, true }, true, false },
        { controller->checkForUpdateRadioNone(), { "none", true, true }, false, false },
        { controller->checkForUpdateRadioDownload(), { "download from none", false, false }, true,
            true },
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.start.name);
        updater->setAutomaticallyChecksForUpdates(c.start.checks);
        updater->setAutomaticallyDownloadsUpdates(c.start.downloads);
        c.radio->click();
        EXPECT_EQ(updater->automaticallyChecksForUpdates(), c.checks);
        EXPECT_EQ(updater->automaticallyDownloadsUpdates(), c.downloads);
        for (QRadioButton* radio :
            { controller->checkForUpdateRadioNone(), controller->checkForUpdateRadioNotify(),
                controller->checkForUpdateRadioDownload() })
            EXPECT_EQ(radio->isChecked(), radio == c.radio) << radio->objectName().toStdString();

        ASSERT_TRUE(defaults().synchronize());
        const QVariantMap file = preferencesFile();
        EXPECT_EQ(file.value("SUEnableAutomaticChecks"), QVariant(c.checks));
        EXPECT_EQ(file.value("SUAutomaticallyUpdate"), QVariant(c.downloads));
        EXPECT_EQ(file.value("SUEnableAutomaticChecks").typeId(), QMetaType::Bool);
        EXPECT_EQ(file.value("SUAutomaticallyUpdate").typeId(), QMetaType::Bool);
    }
}

TEST_F(PreferencesWindowTest, AnotherSenderChangesNoUpdateSetting)
{
    auto controller = makeController();
    SUUpdater* updater = SUUpdater::sharedUpdater();
    updater->setAutomaticallyChecksForUpdates(true);
    updater->setAutomaticallyDownloadsUpdates(false);
    QObject stranger;
    controller->checkForUpdateAction(&stranger);
    controller->checkForUpdateAction(nullptr);
    EXPECT_TRUE(updater->automaticallyChecksForUpdates());
    EXPECT_FALSE(updater->automaticallyDownloadsUpdates());
    EXPECT_TRUE(controller->checkForUpdateRadioNotify()->isChecked());
}

// ---- Settings of the previews ----

struct SettingCase {
    const char* control;
    QString key;
    std::function<void(QWidget*)> change;
    QVariant stored;
    // Property lists keep integers and booleans; a 32-bit real comes back as a double.
    QVariant inFile;
};

template <typename Control> std::function<void(QWidget*)> with(std::function<void(Control*)> f)
{
    return [f](QWidget* widget) {
        auto* control = qobject_cast<Control*>(widget);
        ASSERT_NE(control, nullptr) << widget->metaObject()->className();
        f(control);
    };
}

std::function<void(QWidget*)> choose(int index)
{
    return with<QComboBox>([index](QComboBox* box) { box->setCurrentIndex(index); });
}

std::function<void(QWidget*)> number(int value)
{
    return with<QSpinBox>([value](QSpinBox* box) { box->setValue(value); });
}

std::function<void(QWidget*)> megabytes(double value)
{
    return with<QDoubleSpinBox>([value](QDoubleSpinBox* box) { box->setValue(value); });
}

std::function<void(QWidget*)> clickOff()
{
    return with<QCheckBox>([](QCheckBox* box) {
        ASSERT_TRUE(box->isChecked());
        box->click();
    });
}

QList<SettingCase> settingCases()
{
    return {
        { "previewModeComboBox", TLPreviewMode, choose(1), qint64(1), qint64(1) },
        { "inDesignSpreadModeComboBox", TLPrefInDesignSpreadMode, choose(0), qint64(0), qint64(0) },
        { "illustratorSpreadModeComboBox", TLPrefIllustratorSpreadMode, choose(1), qint64(1),
            qint64(1) },
        { "colorSwatchModeComboBox", illustratorColorSwatchModeInPreview, choose(0), qint64(0),
            qint64(0) },
        { "maximumPagesSpinBox", maximumNumberOfPagesPreviewed, number(35), qint64(35),
            qint64(35) },
        { "updateFrequencySpinBox", updateFrequency, number(7), qint64(7), qint64(7) },
        { "thumbnailThresholdSpinBox", preferEmbeddedPreviewForThumbnailFileSizeThreshold,
            megabytes(64.5), 64.5f, 64.5 },
        { "previewThresholdSpinBox", preferEmbeddedPreviewForPreviewFileSizeThreshold,
            megabytes(512), 512.0f, 512.0 },
        { "showFontsCheckBox", showFontsInPreview, clickOff(), false, false },
        { "showWYSIWYGFontsCheckBox", showWYSIWYGFontsInPreview, clickOff(), false, false },
        { "showImageLinksCheckBox", showImageLinksInPreview, clickOff(), false, false },
        { "showColorSwatchesCheckBox", showColorSwatchesInPreview, clickOff(), false, false },
        { "useLoupeCheckBox", VTPUseLoupe, clickOff(), false, false },
        { "warnAboutDoubleClicksCheckBox", warnAboutDoubleClicksInPreview, clickOff(), false,
            false },
    };
}

TEST_F(PreferencesWindowTest, EachControlWritesItsKeyWithTheKeysKind)
{
    auto controller = makeController();
    for (const SettingCase& c : settingCases()) {
        SCOPED_TRACE(c.control);
        QWidget* widget = control<QWidget>(*controller, c.control);
        ASSERT_NE(widget, nullptr);
        ASSERT_FALSE(defaults().persistentDomain().contains(c.key));

        c.change(widget);
        const QVariant stored = defaults().objectForKey(c.key);
        EXPECT_EQ(stored.typeId(), c.stored.typeId()) << stored.typeName();
        EXPECT_EQ(stored, c.stored);
        // The kind matches the one the store's defaults give the key.
        EXPECT_EQ(stored.typeId(), VTDefaults().value(c.key).typeId());

        ASSERT_TRUE(defaults().synchronize());
        const QVariant inFile = preferencesFile().value(c.key);
        EXPECT_EQ(inFile.typeId(), c.inFile.typeId()) << inFile.typeName();
        EXPECT_EQ(inFile, c.inFile);
    }
    EXPECT_EQ(settingCases().size() + 3, VTDefaults().size())
        << "every setting but the background (two keys) and the last check has a control";
}

TEST_F(PreferencesWindowTest, TheBackgroundWritesItsNameAndTagTogether)
{
    auto controller = makeController();
    auto* box = control<QComboBox>(*controller, "backgroundColorComboBox");
    ASSERT_NE(box, nullptr);
    const struct {
        int index;
        QString name;
    } cases[] = { { 3, "Black" }, { 0, "None" }, { 2, "Gray" }, { 1, "White" } };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        box->setCurrentIndex(c.index);
        EXPECT_EQ(box->currentText(), c.name);
        ASSERT_TRUE(defaults().synchronize());
        const QVariantMap file = preferencesFile();
        EXPECT_EQ(file.value(imageBackgroundColorName), QVariant(c.name));
        EXPECT_EQ(file.value(imageBackgroundColorTag), QVariant(qint64(c.index)));
        EXPECT_EQ(defaults().objectForKey(imageBackgroundColorTag).typeId(), QMetaType::LongLong);
    }
}

TEST_F(PreferencesWindowTest, TheControlsShowTheRegisteredDefaults)
{
    auto controller = makeController();
    auto& c = *controller;
    EXPECT_EQ(control<QComboBox>(c, "previewModeComboBox")->currentIndex(), 0);
    EXPECT_EQ(control<QComboBox>(c, "inDesignSpreadModeComboBox")->currentIndex(), 1);
    EXPECT_EQ(control<QComboBox>(c, "illustratorSpreadModeComboBox")->currentIndex(), 0);
    EXPECT_EQ(control<QComboBox>(c, "colorSwatchModeComboBox")->currentIndex(), 1);
    EXPECT_EQ(control<QComboBox>(c, "backgroundColorComboBox")->currentText(), "White");
    EXPECT_EQ(control<QSpinBox>(c, "maximumPagesSpinBox")->value(), 20);
    EXPECT_EQ(control<QSpinBox>(c, "updateFrequencySpinBox")->value(), 1);
    EXPECT_EQ(control<QDoubleSpinBox>(c, "thumbnailThresholdSpinBox")->value(), 128.0);
    EXPECT_EQ(control<QDoubleSpinBox>(c, "previewThresholdSpinBox")->value(), 256.0);
    for (const char* box :
        { "showFontsCheckBox", "showWYSIWYGFontsCheckBox", "showImageLinksCheckBox",
            "showColorSwatchesCheckBox", "useLoupeCheckBox", "warnAboutDoubleClicksCheckBox" })
        EXPECT_TRUE(control<QCheckBox>(c, box)->isChecked()) << box;
    EXPECT_EQ(control<QLabel>(c, "lastUpdateCheckLabel")->text(), "Never");
    // Showing values writes nothing.
    EXPECT_TRUE(defaults().persistentDomain().isEmpty());
}

TEST_F(PreferencesWindowTest, TheControlsShowStoredValuesAndFollowLaterChanges)
{
    defaults().setInteger(1, TLPreviewMode);
    defaults().setBool(false, VTPUseLoupe);
    defaults().setFloat(10.5f, preferEmbeddedPreviewForThumbnailFileSizeThreshold);
    defaults().setInteger(2, imageBackgroundColorTag);
    defaults().setObject(imageBackgroundColorNameGray, imageBackgroundColorName);
    auto controller = makeController();
    auto& c = *controller;
    EXPECT_EQ(control<QComboBox>(c, "previewModeComboBox")->currentIndex(), 1);
    EXPECT_FALSE(control<QCheckBox>(c, "useLoupeCheckBox")->isChecked());
    EXPECT_EQ(control<QDoubleSpinBox>(c, "thumbnailThresholdSpinBox")->value(), 10.5);
    EXPECT_EQ(control<QComboBox>(c, "backgroundColorComboBox")->currentText(), "Gray");

    defaults().setBool(false, showFontsInPreview);
    defaults().setInteger(42, maximumNumberOfPagesPreviewed);
    defaults().setInteger(3, imageBackgroundColorTag);
    EXPECT_FALSE(control<QCheckBox>(c, "showFontsCheckBox")->isChecked());
    EXPECT_EQ(control<QSpinBox>(c, "maximumPagesSpinBox")->value(), 42);
    EXPECT_EQ(control<QComboBox>(c, "backgroundColorComboBox")->currentText(), "Black");
    // Showing the tag did not rewrite the name.
    EXPECT_EQ(defaults().objectForKey(imageBackgroundColorName), QVariant("Gray"));
}

// The window shows what the generator draws by: values it cannot take show as the default and
// stay stored as they are until the user picks another.
TEST_F(PreferencesWindowTest, AValueTheWindowDoesNotKnowShowsTheDefaultAndIsKept)
{
    defaults().setInteger(9, TLPrefInDesignSpreadMode);
    defaults().setInteger(17, imageBackgroundColorTag);
    defaults().setObject(imageBackgroundColorNameBlack, imageBackgroundColorName);
    auto controller = makeController();
    EXPECT_EQ(control<QComboBox>(*controller, "inDesignSpreadModeComboBox")->currentIndex(), 1);
    // An unknown tag falls back to the name.
    EXPECT_EQ(control<QComboBox>(*controller, "backgroundColorComboBox")->currentText(), "Black");
    EXPECT_EQ(defaults().objectForKey(TLPrefInDesignSpreadMode), QVariant(qint64(9)));
    EXPECT_EQ(defaults().objectForKey(imageBackgroundColorTag), QVariant(qint64(17)));
}

// Text where numbers and booleans belong reads as the generator reads it (SettingsEffectTest).
TEST_F(PreferencesWindowTest, StoredTextShowsAsTheGeneratorReadsIt)
{
    defaults().setObject(QStringLiteral("0.0"), showFontsInPreview);
    defaults().setObject(QStringLiteral("2abc"), TLPreviewMode);
    auto controller = makeController();
    EXPECT_FALSE(control<QCheckBox>(*controller, "showFontsCheckBox")->isChecked());
    EXPECT_EQ(control<QComboBox>(*controller, "previewModeComboBox")->currentIndex(), 2);
}

TEST_F(PreferencesWindowTest, TheLastUpdateCheckIsShownAsARelativeDate)
{
    auto controller = makeController();
    auto* label = control<QLabel>(*controller, "lastUpdateCheckLabel");
    ASSERT_NE(label, nullptr);
    const QDateTime when = QDateTime::currentDateTime().addSecs(-3600).addMSecs(-500);
    const double seconds = when.toMSecsSinceEpoch() / 1000.0;
    defaults().setDouble(seconds, lastUpdateCheck);
    const QString expected = RelativeAdditions::relativeFinderDescription(when);
    ASSERT_FALSE(expected.isEmpty());
    EXPECT_EQ(label->text(), expected);

    defaults().setDouble(0, lastUpdateCheck);
    EXPECT_EQ(label->text(), "Never");
}

// ---- Saving ----

TEST_F(PreferencesWindowTest, LosingTheActiveWindowWritesTheSettings)
{
    auto controller = makeController();
    control<QSpinBox>(*controller, "maximumPagesSpinBox")->setValue(77);
    // No event loop ran, so the change has not reached the file on its own.
    ASSERT_FALSE(preferencesFile().contains(maximumNumberOfPagesPreviewed));

    QEvent deactivate(QEvent::WindowDeactivate);
    QApplication::sendEvent(controller->window(), &deactivate);
    EXPECT_EQ(preferencesFile().value(maximumNumberOfPagesPreviewed), QVariant(qint64(77)));
}

}

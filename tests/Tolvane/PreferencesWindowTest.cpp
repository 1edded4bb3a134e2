// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSCalendarDate-RelativeAdditions.h"
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

TEST_F(PreferencesWindowTest, EachToolbarItemShowsItsPaneAtThePaneSize)
{
    auto controller = makeController();
    EXPECT_EQ(controller->mode(), 0);
    EXPECT_EQ(controller->selectedToolbarItemIdentifier(), "About");
    EXPECT_EQ(shownWidgets(*controller), QList<QWidget*> { controller->aboutView() });
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
    for (const qint64 mode : { qint64(-1), qint64(3) }) {
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

// The three buttons stand for: no checks, checks that notify, checks that download.
TEST_F(PreferencesWindowTest, TheRadioButtonsFollowAndSetTheUpdaterSettings)
{
    auto controller = makeController();
    SUUpdater* updater = SUUpdater::sharedUpdater();
    QRadioButton* none = controller->checkForUpdateRadioNone();
    QRadioButton* notify = controller->checkForUpdateRadioNotify();
    QRadioButton* download = controller->checkForUpdateRadioDownload();
    const struct {
        bool checks;
        bool downloads;
        QRadioButton* radio;
    } cases[] = { { true, false, notify }, { true, true, download }, { false, true, none },
        { false, false, none } };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.radio->objectName().toStdString());
        // The window follows the updater without being told.
        updater->setAutomaticallyChecksForUpdates(c.checks);
        updater->setAutomaticallyDownloadsUpdates(c.downloads);
        for (QRadioButton* radio : { none, notify, download }) {
            EXPECT_EQ(radio->isChecked(), radio == c.radio) << radio->objectName().toStdString();
            EXPECT_TRUE(radio->isEnabled());
        }
    }
    for (const auto& c : cases) {
        SCOPED_TRACE(c.radio->objectName().toStdString());
        updater->setAutomaticallyChecksForUpdates(!c.checks);
        updater->setAutomaticallyDownloadsUpdates(true);
        c.radio->click();
        EXPECT_EQ(updater->automaticallyChecksForUpdates(), c.checks);
        // "None" turns the download off too.
        EXPECT_EQ(updater->automaticallyDownloadsUpdates(), c.checks && c.downloads);
        ASSERT_TRUE(defaults().synchronize());
        const QVariantMap file = preferencesFile();
        EXPECT_TRUE(VariantKinds::same(file.value("SUEnableAutomaticChecks"), c.checks));
        EXPECT_TRUE(
            VariantKinds::same(file.value("SUAutomaticallyUpdate"), c.checks && c.downloads));
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
    // What the control is set to, with the kind it must store.
    QVariant value;
};

QList<SettingCase> settingCases()
{
    return {
        { "previewModeComboBox", TLPreviewMode, qint64(1) },
        { "inDesignSpreadModeComboBox", TLPrefInDesignSpreadMode, qint64(0) },
        { "illustratorSpreadModeComboBox", TLPrefIllustratorSpreadMode, qint64(1) },
        { "colorSwatchModeComboBox", illustratorColorSwatchModeInPreview, qint64(0) },
        { "maximumPagesSpinBox", maximumNumberOfPagesPreviewed, qint64(35) },
        { "updateFrequencySpinBox", updateFrequency, qint64(7) },
        { "thumbnailThresholdSpinBox", preferEmbeddedPreviewForThumbnailFileSizeThreshold, 64.5f },
        { "previewThresholdSpinBox", preferEmbeddedPreviewForPreviewFileSizeThreshold, 512.0f },
        { "showFontsCheckBox", showFontsInPreview, false },
        { "showWYSIWYGFontsCheckBox", showWYSIWYGFontsInPreview, false },
        { "showImageLinksCheckBox", showImageLinksInPreview, false },
        { "showColorSwatchesCheckBox", showColorSwatchesInPreview, false },
        { "useLoupeCheckBox", VTPUseLoupe, false },
        { "warnAboutDoubleClicksCheckBox", warnAboutDoubleClicksInPreview, false },
    };
}

// A combo box shows its index, a spin box its number, a check box 1 or 0.
double shownValue(QWidget* widget)
{
    if (auto* box = qobject_cast<QComboBox*>(widget))
        return box->currentIndex();
    if (auto* box = qobject_cast<QSpinBox*>(widget))
        return box->value();
    if (auto* box = qobject_cast<QDoubleSpinBox*>(widget))
        return box->value();
    return qobject_cast<QCheckBox*>(widget)->isChecked();
}

// As the user would: a choice, a typed number, a click.
void setShownValue(QWidget* widget, double value)
{
    if (auto* box = qobject_cast<QComboBox*>(widget))
        box->setCurrentIndex(int(value));
    else if (auto* box = qobject_cast<QSpinBox*>(widget))
        box->setValue(int(value));
    else if (auto* box = qobject_cast<QDoubleSpinBox*>(widget))
        box->setValue(value);
    else if (auto* box = qobject_cast<QCheckBox*>(widget); box->isChecked() != (value != 0))
        box->click();
}

// Each control first shows the store's default (and showing writes nothing).
TEST_F(PreferencesWindowTest, EachControlShowsTheDefaultAndWritesItsKeyWithTheKeysKind)
{
    auto controller = makeController();
    for (const SettingCase& c : settingCases()) {
        SCOPED_TRACE(c.control);
        QWidget* widget = control<QWidget>(*controller, c.control);
        ASSERT_NE(widget, nullptr);
        ASSERT_FALSE(defaults().persistentDomain().contains(c.key));
        EXPECT_EQ(shownValue(widget), VTDefaults().value(c.key).toDouble()) << "the default";

        setShownValue(widget, c.value.toDouble());
        const QVariant stored = defaults().objectForKey(c.key);
        EXPECT_TRUE(VariantKinds::same(stored, c.value));
        // The kind matches the one the store's defaults give the key.
        EXPECT_EQ(stored.typeId(), VTDefaults().value(c.key).typeId());

        ASSERT_TRUE(defaults().synchronize());
        // Property lists keep integers and booleans; a 32-bit real comes back as a double.
        EXPECT_TRUE(VariantKinds::same(preferencesFile().value(c.key),
            c.value.typeId() == QMetaType::Float ? QVariant(c.value.toDouble()) : c.value));
    }
    EXPECT_EQ(control<QComboBox>(*controller, "backgroundColorComboBox")->currentText(),
        VTDefaults().value(imageBackgroundColorName).toString());
    EXPECT_EQ(control<QLabel>(*controller, "lastUpdateCheckLabel")->text(), "Never");
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
    } cases[] = { { 3, "Black" }, { 0, "None" }, { 2, "Gray" } };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name.toStdString());
        box->setCurrentIndex(c.index);
        EXPECT_EQ(box->currentText(), c.name);
        ASSERT_TRUE(defaults().synchronize());
        const QVariantMap file = preferencesFile();
        EXPECT_TRUE(VariantKinds::same(file.value(imageBackgroundColorName), c.name));
        EXPECT_TRUE(VariantKinds::same(file.value(imageBackgroundColorTag), qint64(c.index)));
    }
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
// (How such values read is the settings' own test.)
TEST_F(PreferencesWindowTest, AValueTheWindowDoesNotKnowShowsTheDefaultAndIsKept)
{
    defaults().setInteger(9, TLPrefInDesignSpreadMode);
    defaults().setInteger(17, imageBackgroundColorTag);
    auto controller = makeController();
    EXPECT_EQ(control<QComboBox>(*controller, "inDesignSpreadModeComboBox")->currentIndex(), 1);
    EXPECT_TRUE(VariantKinds::same(defaults().objectForKey(TLPrefInDesignSpreadMode), qint64(9)));
    EXPECT_TRUE(VariantKinds::same(defaults().objectForKey(imageBackgroundColorTag), qint64(17)));
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLPrefrencesWindowController.h"

#include "Bundle.h"
#include "Localization.h"
#include "NSCalendarDate-RelativeAdditions.h"
#include "SUUpdater.h"
#include "UserDefaults.h"
#include "VTPreviewSettings.h"
#include "VistrelUtilities.h"
#include "ui_TLPrefrencesWindowController.h"

#include <QActionGroup>
#include <QDateTime>
#include <QIcon>
#include <QLayout>
#include <QScreen>
#include <QSignalBlocker>
#include <algorithm>
#include <climits>

namespace {

constexpr int resizeAnimationMilliseconds = 150;

UserDefaults& defaults() { return UserDefaults::standardUserDefaults(); }

// The settings as the generator reads them, so that the window shows what the previews do.
VTPreviewSettings shownSettings()
{
    return VTPreviewSettings::read([](const QString& key) { return defaults().objectForKey(key); });
}

// The background choices in the order of their tags.
const QStringList& backgroundColorNames()
{
    static const QStringList names { imageBackgroundColorNameNone, imageBackgroundColorNameWhite,
        imageBackgroundColorNameGray, imageBackgroundColorNameBlack };
    return names;
}

}

TLPrefrencesWindowController::TLPrefrencesWindowController(QObject* parent)
    : QObject(parent)
    , m_ui(std::make_unique<Ui::TLPrefrencesWindowController>())
    , m_paneShelf(std::make_unique<QWidget>())
    , m_window(std::make_unique<QMainWindow>())
{
    m_ui->setupUi(m_window.get());
    m_window->installEventFilter(this);

    m_resizeAnimation.setTargetObject(m_window.get());
    m_resizeAnimation.setPropertyName("geometry");
    m_resizeAnimation.setDuration(resizeAnimationMilliseconds);
    m_resizeAnimation.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&m_resizeAnimation, &QPropertyAnimation::finished, this,
        [this] { m_window->setFixedSize(m_resizeAnimation.endValue().toRect().size()); });

    setUpToolbar();
    setUpPanes();
    bindSettings();

    // Observing our own mode: every assignment relays out the window, inside the assignment.
    connect(this, &TLPrefrencesWindowController::modeChanged, this,
        &TLPrefrencesWindowController::relayout);
    connect(
        &defaults(), &UserDefaults::changed, this, &TLPrefrencesWindowController::settingChanged);
    SUUpdater* updater = SUUpdater::sharedUpdater();
    connect(
        updater, &SUUpdater::automaticallyChecksForUpdatesChanged, this, [this] { updateUI(); });
    connect(
        updater, &SUUpdater::automaticallyDownloadsUpdatesChanged, this, [this] { updateUI(); });

    windowDidLoad();
}

TLPrefrencesWindowController::~TLPrefrencesWindowController() { m_resizeAnimation.stop(); }

void TLPrefrencesWindowController::windowDidLoad()
{
    setMode(0);
    updateUI();
}

void TLPrefrencesWindowController::setUpToolbar()
{
    m_panes = {
        { QStringLiteral("About"), m_ui->actionAbout, m_ui->aboutView },
        { QStringLiteral("Settings"), m_ui->actionSettings, m_ui->settingsView },
        { QStringLiteral("Quick Look"), m_ui->actionQuickLook, m_ui->quickLookView },
    };
    const char* const iconNames[] = { "help-about", "preferences-system", "view-preview" };
    m_toolbarItems = new QActionGroup(m_window.get());
    m_toolbarItems->setExclusive(true);
    for (qsizetype tag = 0; tag < m_panes.size(); ++tag) {
        QAction* item = m_panes[tag].item;
        item->setObjectName(m_panes[tag].identifier);
        item->setData(qint64(tag));
        item->setIcon(QIcon::fromTheme(QLatin1String(iconNames[tag])));
        m_toolbarItems->addAction(item);
        connect(item, &QAction::triggered, this, [this, item] { setModeWithToolbarItem(item); });
    }
}

void TLPrefrencesWindowController::setUpPanes()
{
    const QVariantMap info = Bundle::mainBundle().infoDictionary();
    const QString name = info.value(QStringLiteral("CFBundleName")).toString();
    if (!name.isEmpty())
        m_ui->applicationNameLabel->setText(name);
    m_ui->versionLabel->setText(
        QStringLiteral("%1 (v%2)")
            .arg(info.value(QStringLiteral("CFBundleShortVersionString")).toString(),
                info.value(QStringLiteral("CFBundleVersion")).toString()));

    for (QRadioButton* radio :
        { checkForUpdateRadioNone(), checkForUpdateRadioNotify(), checkForUpdateRadioDownload() })
        connect(
            radio, &QRadioButton::clicked, this, [this, radio] { checkForUpdateAction(radio); });

    // Each pane is at least as large as its contents need in this style and these fonts; the
    // pane that is not shown waits on the shelf.
    m_window->ensurePolished();
    for (const Pane& pane : std::as_const(m_panes)) {
        pane.view->resize(pane.view->size().expandedTo(pane.view->sizeHint()));
        pane.view->setParent(m_paneShelf.get());
    }
}

void TLPrefrencesWindowController::bindSettings()
{
    bindChoice(m_ui->previewModeComboBox, TLPreviewMode,
        [](const VTPreviewSettings& s) { return int(s.previewMode); });
    bindChoice(m_ui->inDesignSpreadModeComboBox, TLPrefInDesignSpreadMode,
        [](const VTPreviewSettings& s) { return int(s.inDesignSpreadMode); });
    bindChoice(m_ui->illustratorSpreadModeComboBox, TLPrefIllustratorSpreadMode,
        [](const VTPreviewSettings& s) { return int(s.illustratorSpreadMode); });
    bindChoice(m_ui->colorSwatchModeComboBox, illustratorColorSwatchModeInPreview,
        [](const VTPreviewSettings& s) { return int(s.swatchMode); });
    bindBackgroundColor(m_ui->backgroundColorComboBox);
    bindSpinBox(m_ui->maximumPagesSpinBox, maximumNumberOfPagesPreviewed,
        [](const VTPreviewSettings& s) { return int(s.maximumPages); });
    bindMegabytes(m_ui->thumbnailThresholdSpinBox,
        preferEmbeddedPreviewForThumbnailFileSizeThreshold,
        [](const VTPreviewSettings& s) { return s.thumbnailEmbeddedThresholdMB; });
    bindMegabytes(m_ui->previewThresholdSpinBox, preferEmbeddedPreviewForPreviewFileSizeThreshold,
        [](const VTPreviewSettings& s) { return s.previewEmbeddedThresholdMB; });
    bindSpinBox(m_ui->updateFrequencySpinBox, updateFrequency,
        [](const VTPreviewSettings& s) { return int(s.updateFrequency); });
    const auto showDayOrDays = [box = m_ui->updateFrequencySpinBox](int days) {
        box->setSuffix(days == 1 ? NSLocalizedString(QStringLiteral(" day"))
                                 : NSLocalizedString(QStringLiteral(" days")));
    };
    connect(m_ui->updateFrequencySpinBox, &QSpinBox::valueChanged, this, showDayOrDays);
    showDayOrDays(m_ui->updateFrequencySpinBox->value());
    bindCheckBox(m_ui->showFontsCheckBox, showFontsInPreview, &VTPreviewSettings::showFonts);
    bindCheckBox(m_ui->showWYSIWYGFontsCheckBox, showWYSIWYGFontsInPreview,
        &VTPreviewSettings::showWysiwygFonts);
    bindCheckBox(
        m_ui->showImageLinksCheckBox, showImageLinksInPreview, &VTPreviewSettings::showImageLinks);
    bindCheckBox(m_ui->showColorSwatchesCheckBox, showColorSwatchesInPreview,
        &VTPreviewSettings::showColorSwatches);
    bindCheckBox(m_ui->useLoupeCheckBox, VTPUseLoupe, &VTPreviewSettings::useLoupe);
    bindCheckBox(m_ui->warnAboutDoubleClicksCheckBox, warnAboutDoubleClicksInPreview,
        &VTPreviewSettings::warnAboutDoubleClicks);
    m_showSetting.insert(lastUpdateCheck, [this] { showLastUpdateCheck(); });
    showLastUpdateCheck();
}

// Each binding shows the stored value as the generator reads it (VTPreviewSettings), with the
// control's signals blocked, so that showing a value never writes it back; only a change made in
// the control is written.

void TLPrefrencesWindowController::bindCheckBox(
    QCheckBox* box, const QString& key, bool VTPreviewSettings::*setting)
{
    const auto show = [box, setting] {
        const QSignalBlocker blocker(box);
        box->setChecked(shownSettings().*setting);
    };
    connect(box, &QCheckBox::toggled, this, [key](bool on) { defaults().setBool(on, key); });
    m_showSetting.insert(key, show);
    show();
}

// The choices of a pop-up are the values 0, 1, ... in the order of its items.
void TLPrefrencesWindowController::bindChoice(
    QComboBox* box, const QString& key, const std::function<int(const VTPreviewSettings&)>& setting)
{
    const auto show = [box, setting] {
        const QSignalBlocker blocker(box);
        box->setCurrentIndex(setting(shownSettings()));
    };
    connect(box, &QComboBox::currentIndexChanged, this, [key](int index) {
        if (index >= 0)
            defaults().setInteger(index, key);
    });
    m_showSetting.insert(key, show);
    show();
}

void TLPrefrencesWindowController::bindSpinBox(
    QSpinBox* box, const QString& key, const std::function<int(const VTPreviewSettings&)>& setting)
{
    const auto show = [box, setting] {
        const QSignalBlocker blocker(box);
        box->setValue(setting(shownSettings()));
    };
    connect(box, &QSpinBox::valueChanged, this,
        [key](int value) { defaults().setInteger(value, key); });
    m_showSetting.insert(key, show);
    show();
}

// The size thresholds are megabytes, stored as 32-bit reals.
void TLPrefrencesWindowController::bindMegabytes(QDoubleSpinBox* box, const QString& key,
    const std::function<double(const VTPreviewSettings&)>& setting)
{
    const auto show = [box, setting] {
        const QSignalBlocker blocker(box);
        box->setValue(setting(shownSettings()));
    };
    connect(box, &QDoubleSpinBox::valueChanged, this,
        [key](double value) { defaults().setFloat(float(value), key); });
    m_showSetting.insert(key, show);
    show();
}

// The background is stored twice, as a name and as a tag, and both are written together; the
// reading of the pair is VTPreviewSettings'.
void TLPrefrencesWindowController::bindBackgroundColor(QComboBox* box)
{
    const auto show = [box] {
        const QSignalBlocker blocker(box);
        box->setCurrentIndex(int(shownSettings().background));
    };
    connect(box, &QComboBox::currentIndexChanged, this, [](int index) {
        if (index < 0 || index >= backgroundColorNames().size())
            return;
        // The tag first: it is what the pop-up shows while the name follows.
        defaults().setInteger(index, imageBackgroundColorTag);
        defaults().setObject(backgroundColorNames().at(index), imageBackgroundColorName);
    });
    m_showSetting.insert(imageBackgroundColorName, show);
    m_showSetting.insert(imageBackgroundColorTag, show);
    show();
}

// Seconds since 1970; 0 means no check was made yet.
void TLPrefrencesWindowController::showLastUpdateCheck()
{
    const double seconds = shownSettings().lastUpdateCheck;
    m_ui->lastUpdateCheckLabel->setText(seconds > 0 ? RelativeAdditions::relativeFinderDescription(
                                            QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000)))
                                                    : NSLocalizedString(QStringLiteral("Never")));
}

void TLPrefrencesWindowController::settingChanged(const QString& key)
{
    if (const auto show = m_showSetting.constFind(key); show != m_showSetting.constEnd())
        (*show)();
}

void TLPrefrencesWindowController::setMode(qint64 mode)
{
    m_mode = mode;
    emit modeChanged(mode);
}

void TLPrefrencesWindowController::setModeWithToolbarItem(QAction* item)
{
    if (item)
        setMode(item->data().toLongLong());
}

void TLPrefrencesWindowController::relayout()
{
    const Pane* chosen = m_mode >= 0 && m_mode < m_panes.size() ? &m_panes[m_mode] : nullptr;

    QWidget* content = contentView();
    while (true) {
        const auto shown = content->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
        if (shown.isEmpty())
            break;
        shown.first()->setParent(m_paneShelf.get());
    }

    if (chosen)
        chosen->item->setChecked(true);
    if (!chosen || !chosen->view)
        return;

    m_resizeAnimation.stop();
    // The content's size must match the window's now, also while the window is hidden and its
    // layout has not run since the last resize.
    if (QLayout* layout = m_window->layout())
        layout->setGeometry(m_window->rect());
    QRect frame = m_window->geometry();
    frame.setWidth(frame.width() - (content->width() - chosen->view->width()));
    // Setting the height keeps the top: the window grows or shrinks at its bottom edge.
    frame.setHeight(frame.height() - (content->height() - chosen->view->height()));
    resizeWindowTo(frame);

    chosen->view->setParent(content);
    chosen->view->show();
}

void TLPrefrencesWindowController::resizeWindowTo(const QRect& geometry)
{
    // The window takes the size of its pane and the user does not resize it.
    m_window->setMinimumSize(0, 0);
    m_window->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (m_animatesResize && m_window->isVisible() && geometry != m_window->geometry()) {
        m_resizeAnimation.setStartValue(m_window->geometry());
        m_resizeAnimation.setEndValue(geometry);
        m_resizeAnimation.start();
        return;
    }
    m_window->setGeometry(geometry);
    m_window->setFixedSize(geometry.size());
    // A hidden window lays out only when shown; the content takes its new size now.
    if (QLayout* layout = m_window->layout())
        layout->setGeometry(m_window->rect());
}

void TLPrefrencesWindowController::checkForUpdateAction(QObject* sender)
{
    SUUpdater* updater = SUUpdater::sharedUpdater();
    if (sender == checkForUpdateRadioNone()) {
        updater->setAutomaticallyChecksForUpdates(false);
        updater->setAutomaticallyDownloadsUpdates(false);
    } else if (sender == checkForUpdateRadioNotify()) {
        updater->setAutomaticallyChecksForUpdates(true);
        updater->setAutomaticallyDownloadsUpdates(false);
    } else if (sender == checkForUpdateRadioDownload()) {
        updater->setAutomaticallyChecksForUpdates(true);
        updater->setAutomaticallyDownloadsUpdates(true);
    }
    updateUI();
}

void TLPrefrencesWindowController::updateUI()
{
    const SUUpdater* updater = SUUpdater::sharedUpdater();
    const bool checks = updater->automaticallyChecksForUpdates();
    const bool downloads = updater->automaticallyDownloadsUpdates();
    // The buttons are exclusive: checking the one that is on turns the others off.
    const std::pair<QRadioButton*, bool> states[] = {
        { checkForUpdateRadioNone(), !checks },
        { checkForUpdateRadioNotify(), checks && !downloads },
        { checkForUpdateRadioDownload(), checks && downloads },
    };
    for (const auto& [radio, on] : states) {
        radio->setChecked(on);
        radio->setEnabled(true);
    }
}

void TLPrefrencesWindowController::windowWillResignMain() { defaults().synchronize(); }

bool TLPrefrencesWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window.get() && event->type() == QEvent::WindowDeactivate)
        windowWillResignMain();
    return QObject::eventFilter(watched, event);
}

void TLPrefrencesWindowController::showWindow()
{
    updateUI();
    showLastUpdateCheck();
    if (!m_hasBeenShown) {
        m_hasBeenShown = true;
        if (QScreen* screen = m_window->screen()) {
            QRect frame = m_window->frameGeometry();
            frame.moveCenter(screen->availableGeometry().center());
            m_window->move(frame.topLeft());
        }
    }
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

QWidget* TLPrefrencesWindowController::contentView() const { return m_ui->contentView; }
QWidget* TLPrefrencesWindowController::aboutView() const { return m_ui->aboutView; }
QWidget* TLPrefrencesWindowController::settingsView() const { return m_ui->settingsView; }
QWidget* TLPrefrencesWindowController::quickLookView() const { return m_ui->quickLookView; }

QRadioButton* TLPrefrencesWindowController::checkForUpdateRadioNone() const
{
    return m_ui->checkForUpdateRadioNone;
}

QRadioButton* TLPrefrencesWindowController::checkForUpdateRadioNotify() const
{
    return m_ui->checkForUpdateRadioNotify;
}

QRadioButton* TLPrefrencesWindowController::checkForUpdateRadioDownload() const
{
    return m_ui->checkForUpdateRadioDownload;
}

QString TLPrefrencesWindowController::selectedToolbarItemIdentifier() const
{
    const QAction* item = m_toolbarItems->checkedAction();
    return item ? item->objectName() : QString();
}

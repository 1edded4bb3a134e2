// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QObject>
#include <QPropertyAnimation>
#include <QString>
#include <functional>
#include <memory>

class QAction;
class QActionGroup;
class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QMainWindow;
class QRadioButton;
class QSpinBox;
class QWidget;
struct VTPreviewSettings;

namespace Ui {
class TLPrefrencesWindowController;
}

// The preferences window: a toolbar of three panes ("About", "Settings", "Quick Look") over a
// content widget that holds the current pane. Choosing a pane resizes the window to that pane,
// keeping its top edge where it was.
//
// The "About" pane chooses how the shared updater looks for updates; the other two edit the
// settings of the previews in the standard user defaults, each control writing its own key with
// the key's own kind of value. The defaults are written to disk whenever the window stops being
// the active one.
class TLPrefrencesWindowController : public QObject {
    Q_OBJECT
public:
    // Loads the window from its interface file and prepares it (windowDidLoad).
    explicit TLPrefrencesWindowController(QObject* parent = nullptr);
    ~TLPrefrencesWindowController() override;

    QMainWindow* window() const { return m_window.get(); }

    // The pane shown: 0 "About", 1 "Settings", 2 "Quick Look". Every assignment relays out the
    // window, also one that does not change the value; any other value empties the window.
    qint64 mode() const { return m_mode; }
    void setMode(qint64 mode);

    // Shows the window and brings it to the front.
    void showWindow();

    // The action of the three toolbar items: selects the pane of the item's tag (its data).
    void setModeWithToolbarItem(QAction* item);
    // The action of the three update radio buttons; any other sender changes nothing.
    void checkForUpdateAction(QObject* sender);
    // Sets the radio buttons from the shared updater's settings.
    void updateUI();
    // Writes the standard user defaults to disk.
    void windowWillResignMain();

    QWidget* contentView() const;
    QWidget* aboutView() const;
    QWidget* settingsView() const;
    QWidget* quickLookView() const;
    QRadioButton* checkForUpdateRadioNone() const;
    QRadioButton* checkForUpdateRadioNotify() const;
    QRadioButton* checkForUpdateRadioDownload() const;
    // The identifier (object name) of the checked toolbar item; empty when none is checked.
    QString selectedToolbarItemIdentifier() const;

    // Whether a visible window animates its pane changes. Off, the new size is set at once.
    bool animatesResize() const { return m_animatesResize; }
    void setAnimatesResize(bool animates) { m_animatesResize = animates; }

signals:
    void modeChanged(qint64 mode);

private:
    struct Pane {
        QString identifier;
        QAction* item;
        QWidget* view;
    };

    void windowDidLoad();
    void setUpToolbar();
    void setUpPanes();
    void bindSettings();
    void bindCheckBox(QCheckBox* box, const QString& key, bool VTPreviewSettings::*setting);
    void bindChoice(QComboBox* box, const QString& key,
        const std::function<int(const VTPreviewSettings&)>& setting);
    void bindSpinBox(QSpinBox* box, const QString& key,
        const std::function<int(const VTPreviewSettings&)>& setting);
    void bindMegabytes(QDoubleSpinBox* box, const QString& key,
        const std::function<double(const VTPreviewSettings&)>& setting);
    void bindBackgroundColor(QComboBox* box);
    void showLastUpdateCheck();
    void settingChanged(const QString& key);
    void relayout();
    void resizeWindowTo(const QRect& geometry);
    bool eventFilter(QObject* watched, QEvent* event) override;

    std::unique_ptr<Ui::TLPrefrencesWindowController> m_ui;
    // Panes that are not shown are kept here, so that each one always has one owner.
    std::unique_ptr<QWidget> m_paneShelf;
    std::unique_ptr<QMainWindow> m_window;
    QPropertyAnimation m_resizeAnimation;
    QActionGroup* m_toolbarItems = nullptr;
    QList<Pane> m_panes;
    // How each control shows its key again when the key changes.
    QHash<QString, std::function<void()>> m_showSetting;
    qint64 m_mode = 0;
    bool m_animatesResize = true;
    bool m_hasBeenShown = false;
};

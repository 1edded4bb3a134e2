// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEventLoop>
#include <QObject>
#include <memory>

class QLabel;
class QWidget;
class QXAboutWindowBackgroundView;

namespace Ui {
class QXAboutWindowController;
}

// The about window: a frameless, see-through window whose face is a picture with the
// application's version on it. It runs modally: showWindow() returns when the window closes, by a
// click anywhere on the picture, by Escape, or by any other means.
class QXAboutWindowController : public QObject {
    Q_OBJECT
public:
    // Loads the window from its interface file and prepares it (windowDidLoad).
    explicit QXAboutWindowController(QObject* parent = nullptr);
    ~QXAboutWindowController() override;

    QWidget* window() const { return m_window.get(); }
    QLabel* versionLabel() const;
    QXAboutWindowBackgroundView* backgroundView() const;

    // Writes the version label: "<short version> (v<build version>)" of the main bundle.
    void updateUI();
    // Shows the window and waits in a modal run until it closes.
    void showWindow();
    // Ends the modal run.
    void windowWillClose();

private:
    void windowDidLoad();
    bool eventFilter(QObject* watched, QEvent* event) override;

    std::unique_ptr<Ui::QXAboutWindowController> m_ui;
    std::unique_ptr<QWidget> m_window;
    QEventLoop m_modalRun;
};

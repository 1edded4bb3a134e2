// SPDX-License-Identifier: GPL-3.0-or-later
#include "QXAboutWindowController.h"

#include "Bundle.h"
#include "QXAboutWindowBackgroundView.h"
#include "ui_QXAboutWindowController.h"

#include <QKeyEvent>
#include <QScreen>

QXAboutWindowController::QXAboutWindowController(QObject* parent)
    : QObject(parent)
    , m_ui(std::make_unique<Ui::QXAboutWindowController>())
    , m_window(std::make_unique<QWidget>())
{
    m_ui->setupUi(m_window.get());
    m_window->installEventFilter(this);
    windowDidLoad();
}

QXAboutWindowController::~QXAboutWindowController() = default;

QLabel* QXAboutWindowController::versionLabel() const { return m_ui->versionLabel; }

QXAboutWindowBackgroundView* QXAboutWindowController::backgroundView() const
{
    return m_ui->backgroundView;
}

void QXAboutWindowController::windowDidLoad()
{
    // Only the picture's own shape and transparency show.
    m_window->setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    m_window->setAttribute(Qt::WA_TranslucentBackground);
    m_window->setWindowModality(Qt::ApplicationModal);
    m_window->setFocusPolicy(Qt::StrongFocus);
    if (QScreen* screen = m_window->screen()) {
        QRect frame = m_window->frameGeometry();
        frame.moveCenter(screen->availableGeometry().center());
        m_window->move(frame.topLeft());
    }
    updateUI();
}

void QXAboutWindowController::updateUI()
{
    const Bundle& bundle = Bundle::mainBundle();
    versionLabel()->setText(
        QStringLiteral("%1 (v%2)")
            .arg(bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
                     .toString(),
                bundle.objectForInfoDictionaryKey(QStringLiteral("CFBundleVersion")).toString()));
}

void QXAboutWindowController::showWindow()
{
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
    m_window->setFocus();
    if (m_window->isVisible())
        m_modalRun.exec();
}

void QXAboutWindowController::windowWillClose() { m_modalRun.quit(); }

bool QXAboutWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window.get()) {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
                m_window->close();
                return true;
            }
            break;
        // Closing hides the window, and so does every other way of taking it off the screen; a
        // close that was refused leaves it up and the run going.
        case QEvent::Hide:
            windowWillClose();
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLMainMenu.h"

#include "TLAppDelegate.h"
#include "TLDocument.h"
#include "TLDocumentController.h"

#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QMainWindow>
#include <QMenuBar>

namespace {

QAction* makeAction(QObject* parent, const QString& text, QKeySequence shortcut = {})
{
    auto* action = new QAction(text, parent);
    action->setShortcut(shortcut);
    return action;
}

}

TLMainMenu::TLMainMenu(TLAppDelegate& delegate, TLDocumentController& documents, QObject* parent)
    : QObject(parent)
    , m_delegate(delegate)
    , m_documents(documents)
    , m_open(makeAction(this, tr("&Open…"), QKeySequence::Open))
    , m_close(makeAction(this, tr("&Close"), QKeySequence::Close))
    , m_quit(makeAction(this, tr("&Quit"), QKeySequence::Quit))
    , m_preferences(makeAction(this, tr("&Preferences…"), QKeySequence(tr("Ctrl+,"))))
    , m_welcome(makeAction(this, tr("&Welcome to Tolvane")))
    , m_website(makeAction(this, tr("Tolvane &Website")))
    , m_support(makeAction(this, tr("&Feedback and Support")))
    , m_checkForUpdates(makeAction(this, tr("Check for &Updates…")))
    , m_checkForGeneratorUpdates(makeAction(this, tr("Check for &Vistrel Pro Updates…")))
    , m_about(makeAction(this, tr("&About Tolvane")))
{
    m_preferences->setMenuRole(QAction::PreferencesRole);
    m_about->setMenuRole(QAction::AboutRole);
    m_quit->setMenuRole(QAction::QuitRole);

    connect(m_open, &QAction::triggered, this,
        [this] { m_documents.openDocument(QApplication::activeWindow()); });
    connect(m_close, &QAction::triggered, this, [] {
        if (QWidget* window = QApplication::activeWindow())
            window->close();
    });
    connect(m_quit, &QAction::triggered, qApp, &QApplication::closeAllWindows);
    connect(m_preferences, &QAction::triggered, &m_delegate, &TLAppDelegate::showPreferences);
    connect(m_website, &QAction::triggered, &m_delegate, &TLAppDelegate::visitWebsite);
    connect(m_support, &QAction::triggered, &m_delegate, &TLAppDelegate::visitFeedbackAndSupport);
    connect(m_welcome, &QAction::triggered, &m_delegate, &TLAppDelegate::displayWelcomeScreen);
    connect(m_checkForUpdates, &QAction::triggered, &m_delegate, &TLAppDelegate::checkForUpdate);
    connect(m_checkForGeneratorUpdates, &QAction::triggered, &m_delegate,
        &TLAppDelegate::checkForGeneratorUpdate);
    connect(&m_delegate, &TLAppDelegate::generatorUpdateCheckRunning, m_checkForGeneratorUpdates,
        [this](bool running) { m_checkForGeneratorUpdates->setEnabled(!running); });
    connect(m_about, &QAction::triggered, &m_delegate, &TLAppDelegate::showAboutWindow);
}

void TLMainMenu::installMenuBar(QMainWindow* window)
{
    QMenuBar* bar = window->menuBar();

    QMenu* file = bar->addMenu(tr("&File"));
    file->addAction(m_open);
    QMenu* recent = file->addMenu(tr("Open &Recent"));
    connect(recent, &QMenu::aboutToShow, this, [this, recent] { fillRecentMenu(recent); });
    fillRecentMenu(recent);
    file->addSeparator();
    file->addAction(m_close);
    file->addSeparator();
    file->addAction(m_quit);

    QMenu* edit = bar->addMenu(tr("&Edit"));
    edit->addAction(m_preferences);

    QMenu* windowMenu = bar->addMenu(tr("&Window"));
    connect(windowMenu, &QMenu::aboutToShow, this,
        [this, windowMenu, window] { fillWindowMenu(windowMenu, window); });
    fillWindowMenu(windowMenu, window);

    QMenu* help = bar->addMenu(tr("&Help"));
    help->addAction(m_welcome);
    help->addAction(m_website);
    help->addAction(m_support);
    help->addSeparator();
    help->addAction(m_checkForUpdates);
    help->addAction(m_checkForGeneratorUpdates);
    help->addSeparator();
    help->addAction(m_about);
}

void TLMainMenu::fillRecentMenu(QMenu* menu)
{
    menu->clear();
    const QStringList paths = m_documents.recentDocumentPaths();
    for (const QString& path : paths) {
        menu->addAction(QFileInfo(path).fileName(), this,
                [this, path] { m_documents.openDocumentOrAlert(QUrl::fromLocalFile(path)); })
            ->setToolTip(path);
    }
    if (!paths.isEmpty())
        menu->addSeparator();
    QAction* clear
        = menu->addAction(tr("&Clear Menu"), this, [this] { m_documents.clearRecentDocuments(); });
    clear->setEnabled(!paths.isEmpty());
}

void TLMainMenu::fillWindowMenu(QMenu* menu, QMainWindow* window)
{
    menu->clear();
    menu->addAction(tr("&Minimize"), QKeySequence(tr("Ctrl+M")), window, &QWidget::showMinimized);
    menu->addSeparator();
    for (TLDocument* document : m_documents.documents()) {
        QAction* item
            = menu->addAction(document->displayName(), document, &TLDocument::showWindows);
        item->setCheckable(true);
        item->setChecked(document->window() == window);
    }
}

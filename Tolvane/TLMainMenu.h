// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QAction;
class QMainWindow;
class QMenu;
class TLAppDelegate;
class TLDocumentController;

// The application's menus. Every window gets a menu bar of its own, built from one set of actions:
//   File:   Open…, Open Recent, Close, Quit
//   Edit:   Preferences…
//   Window: Minimize and the open documents
//   Help:   Welcome to Tolvane, Tolvane Website, Feedback and Support, Check for Updates…,
//           Check for Vistrel Pro Updates…, About Tolvane
class TLMainMenu : public QObject {
    Q_OBJECT
public:
    TLMainMenu(TLAppDelegate& delegate, TLDocumentController& documents, QObject* parent = nullptr);

    // Gives the window a menu bar with the application's menus.
    void installMenuBar(QMainWindow* window);

    QAction* openAction() const { return m_open; }
    QAction* closeAction() const { return m_close; }
    QAction* preferencesAction() const { return m_preferences; }
    QAction* aboutAction() const { return m_about; }
    QAction* checkForUpdatesAction() const { return m_checkForUpdates; }
    QAction* welcomeAction() const { return m_welcome; }
    QAction* checkForGeneratorUpdatesAction() const { return m_checkForGeneratorUpdates; }

private:
    void fillRecentMenu(QMenu* menu);
    void fillWindowMenu(QMenu* menu, QMainWindow* window);

    TLAppDelegate& m_delegate;
    TLDocumentController& m_documents;
    QAction* m_open;
    QAction* m_close;
    QAction* m_quit;
    QAction* m_preferences;
    QAction* m_welcome;
    QAction* m_website;
    QAction* m_support;
    QAction* m_checkForUpdates;
    QAction* m_checkForGeneratorUpdates;
    QAction* m_about;
};

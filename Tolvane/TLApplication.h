// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

class ApplicationInstance;
class QApplication;
class SUUserDriver;
class TLAppDelegate;
class TLDocumentController;
class TLMainMenu;

// The application object: one instance per session, the delegate's launch sequence, the files
// and URLs given on the command line or by later launches, and the event loop.
class TLApplication : public QObject {
    Q_OBJECT
public:
    explicit TLApplication(QApplication& application);
    ~TLApplication() override;

    // Runs the application; the process's exit status.
    int run();

    // Opens files and carries out URL commands, as given on a command line or forwarded by a
    // later launch (file paths, file:// URLs, tolvane:// URLs).
    void openArguments(const QStringList& arguments);

    TLAppDelegate& delegate() const { return *m_delegate; }
    TLDocumentController& documentController() const { return *m_documents; }
    TLMainMenu& mainMenu() const { return *m_menu; }

private:
    void registerWithDesktop();
    void bringForward();
    void quitWhenNothingIsShown();

    QApplication& m_application;
    std::unique_ptr<ApplicationInstance> m_instance;
    std::unique_ptr<TLAppDelegate> m_delegate;
    std::unique_ptr<TLDocumentController> m_documents;
    std::unique_ptr<TLMainMenu> m_menu;
    std::unique_ptr<SUUserDriver> m_updaterWindows;
};

// Makes the application object and runs it; what main() hands over to. "--unregister" alone
// removes the desktop registration instead.
int NSApplicationMain(int argc, char** argv);

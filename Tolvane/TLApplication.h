// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <functional>
#include <memory>

class ApplicationInstance;
class QApplication;
class SUUserDriver;
class TLAppDelegate;
class TLDocumentController;
class TLMainMenu;

// The application object: one instance per session, the delegate's launch sequence, the files
// and URLs given on the command line or by later launches, and the event loop. What later launches
// hand over waits until launching has finished: an instance that never finishes (an unsupported
// system) handles none of it. The updater's schedule starts then too, and an update it prepared
// is installed when the event loop ends (Quit, the last window closed, or SIGTERM).
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
    void whenLaunched(const std::function<void()>& work);
    void finishLaunching();
    void bringForward();
    void quitWhenNothingIsShown();
    void quitOnTermination();

    QApplication& m_application;
    std::unique_ptr<ApplicationInstance> m_instance;
    std::unique_ptr<TLAppDelegate> m_delegate;
    std::unique_ptr<TLDocumentController> m_documents;
    std::unique_ptr<TLMainMenu> m_menu;
    std::unique_ptr<SUUserDriver> m_updaterWindows;
    bool m_launched = false;
    QList<std::function<void()>> m_untilLaunched;
};

// Makes the application object and runs it; what main() hands over to.
int NSApplicationMain(int argc, char** argv);

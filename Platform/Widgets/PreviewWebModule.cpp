// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewWebModule.h"

#include "PreviewWebContent.h"
#include "WelcomeWebContent.h"

#include <QCoreApplication>
#include <QDir>
#include <QLoggingCategory>
#include <QOpenGLContext>
#include <QPluginLoader>
#include <QTimer>
#include <unistd.h>

// QtGui's own setter of the context that every OpenGL context of the process shares with; it is
// exported but not in the public headers.
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);

namespace PreviewWebModule {

namespace {

    // The web engine draws with OpenGL contexts shared with one global context. Qt makes that
    // context at start when asked to before the application object exists, which maps the GL
    // driver (and the LLVM behind the software one) into every start. Made here, it costs only
    // the starts that show a page. The engine reads the context without checking that it exists,
    // so it is installed even when the driver cannot create it.
    void makeGlobalShareContext()
    {
        if (QOpenGLContext::globalShareContext())
            return;
        auto* context = new QOpenGLContext(QCoreApplication::instance());
        context->setFormat(QSurfaceFormat::defaultFormat());
        context->create();
        qt_gl_set_global_share_context(context);
    }

    // Loading the engine after the application object exists makes Qt warn that it should have
    // been set up before, and the engine describes its set-up when the first page is made; none of
    // that is for the user's terminal. The messages are dropped until the event loop runs again,
    // which covers the load and the first page, made in the same call. Failures to load reach the
    // caller through the loader.
    QtMessageHandler previousHandler = nullptr;
    void dropMessages(QtMsgType type, const QMessageLogContext& context, const QString& message)
    {
        if (type == QtCriticalMsg || type == QtFatalMsg)
            previousHandler(type, context, message);
    }

    void dropMessagesUntilTheEventLoopRuns()
    {
        if (previousHandler)
            return;
        previousHandler = qInstallMessageHandler(dropMessages);
        QTimer::singleShot(0, QCoreApplication::instance(), [] {
            qInstallMessageHandler(previousHandler);
            previousHandler = nullptr;
        });
    }

    QObject* startEngine(QPluginLoader& loader)
    {
        QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
        makeGlobalShareContext();
        dropMessagesUntilTheEventLoopRuns();
        return loader.instance();
    }

    QString& configuredPath()
    {
        static QString path;
        return path;
    }

    QPluginLoader*& loader()
    {
        static QPluginLoader* instance = nullptr;
        return instance;
    }

    // The web engine reads these when it starts. Its sandbox cannot run as root, a screen
    // without OpenGL needs the software path, and its own log lines (a GPU channel that failed
    // once and was made again, on a loaded machine) are not for the user's terminal.
    void prepareEnvironment()
    {
        if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        if (qEnvironmentVariableIsSet("QTWEBENGINE_CHROMIUM_FLAGS"))
            return;
        QByteArray flags = "--log-level=3";
        if (qEnvironmentVariable("QT_QPA_PLATFORM") == QLatin1String("offscreen"))
            flags += " --disable-gpu";
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS", flags);
    }

}

QString path()
{
    if (!configuredPath().isEmpty())
        return configuredPath();
    return QDir(QCoreApplication::applicationDirPath()).filePath(QString::fromLatin1(fileName));
}

void setPath(const QString& path)
{
    configuredPath() = path;
    // A module that failed to load may be found at the new place.
    if (loader() && !loader()->isLoaded()) {
        delete loader();
        loader() = nullptr;
    }
}

namespace {

    // The module's entry point, which offers each kind of web content as an interface of its own.
    template <typename Factory> Factory* loadedFactory(QString* error)
    {
        if (!loader()) {
            prepareEnvironment();
            // Kept for the life of the process: the engine cannot be unloaded once it ran.
            loader() = new QPluginLoader(path());
        }
        QObject* instance = loader()->isLoaded() ? loader()->instance() : startEngine(*loader());
        auto* result = qobject_cast<Factory*>(instance);
        if (!result && error) {
            *error = instance
                ? QStringLiteral("%1 is not a web view module").arg(loader()->fileName())
                : loader()->errorString();
        }
        return result;
    }

}

PreviewWebContentFactory* factory(QString* error)
{
    return loadedFactory<PreviewWebContentFactory>(error);
}

WelcomeWebContentFactory* welcomeFactory(QString* error)
{
    return loadedFactory<WelcomeWebContentFactory>(error);
}

bool isLoaded() { return loader() && loader()->isLoaded(); }

}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewWebModule.h"

#include "PreviewWebContent.h"
#include "WelcomeWebContent.h"

#include <QCoreApplication>
#include <QDir>
#include <QPluginLoader>
#include <unistd.h>

namespace PreviewWebModule {

namespace {

    // The web engine draws with OpenGL contexts shared with the application's, which must be asked
    // for before the application object exists, long before the module is loaded. The request
    // costs nothing when no page is ever shown.
    void shareOpenGLContexts() { QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts); }
    Q_CONSTRUCTOR_FUNCTION(shareOpenGLContexts)

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

    // The web engine reads these when it starts. Its sandbox cannot run as root, and a screen
    // without OpenGL needs the software path.
    void prepareEnvironment()
    {
        if (geteuid() == 0 && !qEnvironmentVariableIsSet("QTWEBENGINE_DISABLE_SANDBOX"))
            qputenv("QTWEBENGINE_DISABLE_SANDBOX", "1");
        if (qEnvironmentVariable("QT_QPA_PLATFORM") == QLatin1String("offscreen")
            && !qEnvironmentVariableIsSet("QTWEBENGINE_CHROMIUM_FLAGS"))
            qputenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu");
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
        QObject* instance = loader()->instance();
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

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ApplicationInstance.h"

#include "SystemLog.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>
#include <QVariantMap>

namespace {

const QString applicationInterface = QStringLiteral("org.freedesktop.Application");
// A primary instance that takes longer than this is busy or hung; the launch gives up waiting.
constexpr int forwardTimeoutMilliseconds = 5000;

// org.freedesktop.Application as the desktop's launchers call it. The signals are emitted from
// the event loop rather than inside the call, so that the caller gets its answer at once even
// when a handler opens a modal window.
class ApplicationAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    explicit ApplicationAdaptor(ApplicationInstance* instance)
        : QDBusAbstractAdaptor(instance)
        , m_instance(instance)
    {
    }

public slots:
    void Activate(const QVariantMap&)
    {
        QMetaObject::invokeMethod(
            m_instance, [instance = m_instance] { emit instance->activateRequested(); },
            Qt::QueuedConnection);
    }

    void Open(const QStringList& uris, const QVariantMap&)
    {
        QMetaObject::invokeMethod(
            m_instance, [instance = m_instance, uris] { emit instance->openRequested(uris); },
            Qt::QueuedConnection);
    }

    // The application declares no actions.
    void ActivateAction(const QString&, const QVariantList&, const QVariantMap&) { }

private:
    ApplicationInstance* m_instance;
};

// A scheme as URLs have it, [A-Za-z][A-Za-z0-9+.-]+ and a colon; one letter and a colon is a
// drive, not a scheme. By hand: a launch that only forwards compiles no regular expression.
bool beginsWithScheme(const QString& argument)
{
    const auto isLetter = [](QChar c) { return c.unicode() < 128 && c.isLetter(); };
    const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
    const qsizetype colon = argument.indexOf(QLatin1Char(':'));
    if (colon < 2 || !isLetter(argument.front()))
        return false;
    for (qsizetype i = 1; i < colon; ++i) {
        const QChar c = argument.at(i);
        if (!isLetter(c) && !isDigit(c) && c != u'+' && c != u'.' && c != u'-')
            return false;
    }
    return true;
}

QString ownerExecutableOf(const QString& identifier)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return {};
    const auto processId = bus.interface()->servicePid(identifier);
    if (!processId.isValid())
        return {};
    return QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(processId.value()));
}

enum class Forwarding { Delivered, NoOwner, Refused };

Forwarding forward(const QString& identifier, const QStringList& uris)
{
    QDBusMessage call = QDBusMessage::createMethodCall(identifier,
        ApplicationInstance::objectPath(identifier), applicationInterface,
        uris.isEmpty() ? QStringLiteral("Activate") : QStringLiteral("Open"));
    if (!uris.isEmpty())
        call << uris;
    call << QVariantMap();
    // A name whose owner has just quit is claimed in the next round rather than started anew by
    // the bus.
    call.setAutoStartService(false);

    const QDBusMessage reply
        = QDBusConnection::sessionBus().call(call, QDBus::Block, forwardTimeoutMilliseconds);
    if (reply.type() != QDBusMessage::ErrorMessage)
        return Forwarding::Delivered;
    // Without activation the bus answers a name with no owner with an error of its own.
    if (reply.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner"))
        return Forwarding::NoOwner;
    const QDBusError error(reply);
    switch (error.type()) {
    case QDBusError::ServiceUnknown:
        return Forwarding::NoOwner;
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        // The message is queued at the primary instance; it handles it when it can.
        NSLog(QStringLiteral("WARNING -- the running instance of %1 did not answer in time")
                  .arg(identifier));
        return Forwarding::Delivered;
    default:
        // The name's owner does not serve the interface: better handle the arguments here
        // than lose them.
        NSLog(QStringLiteral("WARNING -- the owner of %1 refused the launch: %2")
                  .arg(identifier, error.message()));
        return Forwarding::Refused;
    }
}

}

ApplicationInstance::ApplicationInstance(const QString& applicationIdentifier, QObject* parent)
    : QObject(parent)
    , m_identifier(applicationIdentifier)
{
    new ApplicationAdaptor(this);
}

ApplicationInstance::~ApplicationInstance()
{
    // Hand the name back at once, so that the next launch becomes the primary instance.
    release();
}

void ApplicationInstance::release()
{
    if (!m_registered)
        return;
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterObject(objectPath(m_identifier));
    bus.unregisterService(m_identifier);
    m_registered = false;
}

ApplicationInstance::Role ApplicationInstance::claim(const QStringList& arguments)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return Role::Alone;
    if (m_registered)
        return Role::Primary;

    const QString path = objectPath(m_identifier);
    const QStringList uris = urisFromArguments(arguments, QDir::currentPath());
    // The second round covers a primary instance that quit between our request and our call.
    for (int attempt = 0; attempt < 2; ++attempt) {
        // The object is in place before the name, so that no call finds the name without it.
        const bool objectRegistered
            = bus.registerObject(path, this, QDBusConnection::ExportAdaptors);
        const auto reply = bus.interface()->registerService(m_identifier,
            QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
        if (!reply.isValid()) {
            NSLog(QStringLiteral("WARNING -- could not request the bus name %1: %2")
                      .arg(m_identifier, reply.error().message()));
            if (objectRegistered)
                bus.unregisterObject(path);
            return Role::Alone;
        }
        if (reply.value() == QDBusConnectionInterface::ServiceRegistered && objectRegistered) {
            m_registered = true;
            return Role::Primary;
        }
        if (objectRegistered)
            bus.unregisterObject(path);
        switch (forward(m_identifier, uris)) {
        case Forwarding::Delivered:
            return Role::Forwarded;
        case Forwarding::Refused:
            return Role::Alone;
        case Forwarding::NoOwner:
            break;
        }
    }
    return Role::Alone;
}

QString ApplicationInstance::ownerExecutable() const { return ownerExecutableOf(m_identifier); }

bool ApplicationInstance::forwardToRunningInstance(
    const QString& applicationIdentifier, const QStringList& arguments)
{
    // Another copy of the application (one just downloaded, while the installed one runs) is
    // another program: it starts, and may offer to move itself, before it hands over.
    const QString owner = ownerExecutableOf(applicationIdentifier);
    return !owner.isEmpty() && owner == QFile::symLinkTarget(QStringLiteral("/proc/self/exe"))
        && forward(applicationIdentifier, urisFromArguments(arguments, QDir::currentPath()))
        == Forwarding::Delivered;
}

QString ApplicationInstance::objectPath(const QString& applicationIdentifier)
{
    // Object paths allow only [A-Za-z0-9_] between the slashes.
    QString path = QLatin1Char('/') + applicationIdentifier;
    path.replace(QLatin1Char('.'), QLatin1Char('/'));
    path.replace(QLatin1Char('-'), QLatin1Char('_'));
    return path;
}

QStringList ApplicationInstance::urisFromArguments(
    const QStringList& arguments, const QString& workingFolder)
{
    const QDir folder(workingFolder);
    QStringList uris;
    for (const QString& argument : arguments) {
        if (argument.isEmpty())
            continue;
        const QString absolutePath = QDir::cleanPath(folder.absoluteFilePath(argument));
        if (beginsWithScheme(argument) && !QFileInfo::exists(absolutePath))
            uris.append(argument);
        else
            uris.append(QUrl::fromLocalFile(absolutePath).toString(QUrl::FullyEncoded));
    }
    return uris;
}

#include "ApplicationInstance.moc"

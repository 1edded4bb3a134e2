// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreferencesFile.h"

#include "PropertyList.h"
#include "SystemLog.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace PreferencesFile {

namespace {

    // Writers hold the lock for a read and a write; a holder that keeps it this long is stuck
    // (a stopped process), and waiting longer would freeze the caller.
    constexpr int lockWaitMilliseconds = 30000;

    // An exclusive flock(2) on the lock file, released when the object goes (or the process
    // dies). The lock file stays: removing it would race with the next writer.
    class Lock {
    public:
        explicit Lock(const QString& path)
        {
            const QByteArray name = QFile::encodeName(path + QStringLiteral(".lock"));
            m_fd = ::open(name.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
            if (m_fd < 0) {
                m_error = QString::fromLocal8Bit(std::strerror(errno));
                return;
            }
            const QDeadlineTimer deadline(lockWaitMilliseconds);
            unsigned long pause = 1;
            while (::flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
                if ((errno != EWOULDBLOCK && errno != EINTR) || deadline.hasExpired()) {
                    m_error = errno == EWOULDBLOCK
                        ? QStringLiteral("another process holds the file locked")
                        : QString::fromLocal8Bit(std::strerror(errno));
                    ::close(m_fd);
                    m_fd = -1;
                    return;
                }
                QThread::msleep(pause);
                pause = std::min(pause * 2, 25UL);
            }
        }
        ~Lock()
        {
            if (m_fd >= 0)
                ::close(m_fd);
        }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

        bool held() const { return m_fd >= 0; }
        QString error() const { return m_error; }

    private:
        int m_fd = -1;
        QString m_error;
    };

    bool exists(const QString& path)
    {
        const QFileInfo info(path);
        return info.exists() || info.isSymLink();
    }

    QString asideName(const QString& path)
    {
        const QString stem = path + QStringLiteral(".unreadable-")
            + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss"));
        QString name = stem;
        for (int count = 2; exists(name); ++count)
            name = stem + QLatin1Char('-') + QString::number(count);
        return name;
    }

}

bool update(const QString& path,
    const std::function<QVariantMap(const std::optional<QVariantMap>& onDisk)>& change,
    QString* error)
{
    const auto fail = [error](const QString& reason) {
        if (error)
            *error = reason;
        return false;
    };
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return fail(QStringLiteral("cannot create the folder %1").arg(folder));
    const Lock lock(path);
    if (!lock.held())
        return fail(QStringLiteral("cannot lock %1: %2").arg(path, lock.error()));

    std::optional<QVariantMap> onDisk = QVariantMap();
    if (exists(path)) {
        onDisk = PropertyList::readDictionary(path);
        if (!onDisk) {
            const QString aside = asideName(path);
            if (!QFile::rename(path, aside))
                return fail(
                    QStringLiteral("%1 cannot be read and cannot be moved aside").arg(path));
            NSLog(QStringLiteral("WARNING -- the preferences file %1 could not be read; it was "
                                 "moved to %2 and a new one started")
                      .arg(path, aside));
        }
    }
    return PropertyList::writeXmlAtomically(change(onDisk), path, error);
}

}

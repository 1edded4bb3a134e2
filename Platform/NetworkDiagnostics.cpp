// SPDX-License-Identifier: GPL-3.0-or-later
#include "NetworkDiagnostics.h"

#include "SystemLog.h"

#include <QProcess>
#include <QStandardPaths>
#include <QStringList>
#include <algorithm>
#include <vector>

namespace {

struct SettingsProgram {
    const char* desktop;
    QString program;
    QStringList arguments;
};

}

bool openNetworkDiagnostics()
{
    std::vector<SettingsProgram> programs {
        { "GNOME", QStringLiteral("gnome-control-center"), { QStringLiteral("network") } },
        { "KDE", QStringLiteral("systemsettings"), { QStringLiteral("kcm_networkmanagement") } },
        { "", QStringLiteral("nm-connection-editor"), {} },
    };
    const QString desktop = qEnvironmentVariable("XDG_CURRENT_DESKTOP");
    std::stable_partition(programs.begin(), programs.end(), [&desktop](const SettingsProgram& p) {
        return *p.desktop && desktop.contains(QLatin1String(p.desktop), Qt::CaseInsensitive);
    });
    for (const SettingsProgram& candidate : programs) {
        const QString executable = QStandardPaths::findExecutable(candidate.program);
        if (!executable.isEmpty() && QProcess::startDetached(executable, candidate.arguments))
            return true;
    }
    NSLog(QStringLiteral("WARNING -- no network settings program found (gnome-control-center, "
                         "systemsettings, nm-connection-editor)"));
    return false;
}

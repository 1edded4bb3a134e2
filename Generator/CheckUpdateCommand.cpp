// SPDX-License-Identifier: GPL-3.0-or-later
#include "CheckUpdateCommand.h"

#include "QLGeneratorContract.h"
#include "VistrelAutoUpdate.h"

namespace Preview {

using namespace QLGeneratorContract;

int runCheckUpdate(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    const bool isAuto = arguments == QStringList { QStringLiteral("--auto") };
    if (!arguments.isEmpty() && !isAuto) {
        err << "usage: check-update takes only --auto (see vistrel-pro --help)" << Qt::endl;
        return Usage;
    }
    VistrelAutoUpdate* checker = VistrelAutoUpdate::sharedAutoUpdate();
    // The time of the last check moves only when the server answers: that tells "up to date"
    // from "no answer", which both give no dictionary.
    checker->setLastUpdateTime(0);
    const std::optional<QVariantMap> update = checker->dictionaryForCheckForUpdateAndIsAuto(isAuto);
    if (update) {
        for (const QString& key : { QXSoftwareUpdateFoundUpdateKey, QXSoftwareUpdateNewVersionKey,
                 QXSoftwareUpdateDownloadURLKey })
            out << key << " = " << update->value(key).toString() << Qt::endl;
        return Success;
    }
    if (checker->lastUpdateTime() != 0) {
        out << "The installed generator is up to date." << Qt::endl;
        return Success;
    }
    err << "failed: no answer from the update server " << checker->updateHost() << Qt::endl;
    return OtherFailure;
}

}

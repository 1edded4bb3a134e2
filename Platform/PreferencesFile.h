// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <functional>
#include <optional>

// A preferences file that several processes change: the application's user defaults,
// tolvane-defaults and the generator's update checker. Each change reads the file, merges and
// writes it back under one advisory lock (an flock(2) on "<file>.lock" beside it), so that no
// writer loses what another wrote meanwhile.
namespace PreferencesFile {

// Gives change() the file's dictionary (empty when there is no file; nothing when the file could
// not be read) and writes what it returns atomically. A file that cannot be read is never written
// over: it is first moved aside to "<file>.unreadable-<time>", with one WARNING line naming both.
// False, with the reason in *error, when the lock could not be had or the file not written.
// Exceptions from change() pass through with nothing written.
bool update(const QString& path,
    const std::function<QVariantMap(const std::optional<QVariantMap>& onDisk)>& change,
    QString* error = nullptr);

}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <QString>

// The steps that replace an application bundle with the copy an update archive holds, in order:
//   prepare  unpack the (verified) archive into a staging folder beside the bundle, on the same
//            file system, and check that it holds exactly one bundle, with the same identifier, a
//            newer version and its executable;
//   install  swap the two bundles in one rename (two renames on file systems that cannot swap,
//            the first undone when the second fails); the old copy stays in the staging folder;
//   commit   remove the old copy, or
//   rollback put the old copy back and remove the new one.
// The staging folder, ".<bundle name>.update-XXXXXX", is locked while this object lives; one that
// no installer holds any more is a leftover, which removeLeftovers() clears (putting back a bundle
// that a crash between the two renames left there). Destroying the object before commit() rolls
// back.
class SUBundleInstaller {
public:
    explicit SUBundleInstaller(QString targetBundle);
    ~SUBundleInstaller();
    SUBundleInstaller(const SUBundleInstaller&) = delete;
    SUBundleInstaller& operator=(const SUBundleInstaller&) = delete;

    bool prepare(QByteArrayView archive, QString* error);
    // The version of the prepared bundle ("CFBundleVersion").
    QString preparedVersion() const { return m_preparedVersion; }
    QString stagingFolder() const { return m_stagingFolder; }

    bool install(QString* error);
    bool commit(QString* error);
    bool rollback(QString* error);

    // Clears the staging folders beside the bundle that no installer holds.
    static void removeLeftovers(const QString& targetBundle);

private:
    bool checkPreparedBundle(QString* error);
    bool swap(const QString& from, const QString& to, QString* error);
    void discard();

    QString m_target;
    QString m_stagingFolder;
    int m_stagingLock = -1;
    QString m_newBundle; // where the new copy waits before install
    QString m_oldCopy; // where the old copy waits after install
    QString m_preparedVersion;
    enum class State { Empty, Prepared, Installed, Done } m_state = State::Empty;
};

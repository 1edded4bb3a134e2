// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <memory>

// A directory bundle: Name.ext/Contents/{Info.plist, Linux/<executable>, Resources/}.
class Bundle {
public:
    // The bundle that holds the running executable (/proc/self/exe, two folders up is
    // Contents). A program that is not inside a bundle gets a bundle at its executable's folder,
    // with an empty information dictionary.
    static const Bundle& mainBundle();

    // The bundle at a directory; nothing when the path is not a directory.
    static std::unique_ptr<Bundle> bundleWithPath(const QString& path);
    ~Bundle();

    QString bundlePath() const { return m_path; }
    QString contentsPath() const;
    QString resourcePath() const;
    QString executablePath() const;

    // Contents/Info.plist, read again only when the file changed, so that a bundle replaced on
    // disk is seen.
    QVariantMap infoDictionary() const;
    // The information dictionary with the values of Resources/<lang>.lproj/InfoPlist.strings
    // (preferred languages first, then "en") put over it.
    QVariantMap localizedInfoDictionary() const;
    QString bundleIdentifier() const;
    QVariant objectForInfoDictionaryKey(const QString& key) const;

    // Resources/<name>.<type> (or Resources/<name> when type is empty); empty when absent.
    QString pathForResource(const QString& name, const QString& type) const;

private:
    explicit Bundle(QString path);
    QString m_path;
    struct InfoCache;
    std::unique_ptr<InfoCache> m_info;
};

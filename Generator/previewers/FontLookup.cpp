// SPDX-License-Identifier: GPL-3.0-or-later
#include "FontLookup.h"

#include <fontconfig/fontconfig.h>
#include <memory>
#include <mutex>

namespace Preview {

namespace {

    // fontconfig's configuration is loaded once per process; FcInit is cheap afterwards.
    bool ensureFontconfig()
    {
        static const bool ready = FcInit() == FcTrue;
        return ready;
    }

    struct PatternDeleter {
        void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
    };
    struct FontSetDeleter {
        void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
    };
    struct ObjectSetDeleter {
        void operator()(FcObjectSet* set) const { FcObjectSetDestroy(set); }
    };

    // The files of every installed font whose property equals the value (fontconfig compares
    // names ignoring case and blanks).
    QStringList filesWhere(const std::unique_ptr<FcPattern, PatternDeleter>& pattern)
    {
        std::unique_ptr<FcObjectSet, ObjectSetDeleter> objects(
            FcObjectSetBuild(FC_FILE, static_cast<char*>(nullptr)));
        std::unique_ptr<FcFontSet, FontSetDeleter> fonts(
            FcFontList(nullptr, pattern.get(), objects.get()));
        QStringList files;
        for (int i = 0; fonts && i < fonts->nfont; ++i) {
            FcChar8* file = nullptr;
            if (FcPatternGetString(fonts->fonts[i], FC_FILE, 0, &file) == FcResultMatch) {
                const QString path = QString::fromUtf8(reinterpret_cast<const char*>(file));
                if (!files.contains(path))
                    files.append(path);
            }
        }
        files.sort();
        return files;
    }

    QStringList filesWithString(const char* property, const QString& value,
        const char* secondProperty = nullptr, const QString& secondValue = {})
    {
        std::unique_ptr<FcPattern, PatternDeleter> pattern(FcPatternCreate());
        const QByteArray first = value.toUtf8();
        FcPatternAddString(
            pattern.get(), property, reinterpret_cast<const FcChar8*>(first.constData()));
        const QByteArray second = secondValue.toUtf8();
        if (secondProperty)
            FcPatternAddString(pattern.get(), secondProperty,
                reinterpret_cast<const FcChar8*>(second.constData()));
        return filesWhere(pattern);
    }

}

QStringList installedFontFiles(
    const QString& postScriptName, const QString& family, const QString& style)
{
    static std::mutex lock; // fontconfig's list calls are not documented as thread-safe
    const std::lock_guard guard(lock);
    if (!ensureFontconfig())
        return {};
    if (!postScriptName.isEmpty()) {
        const QStringList files = filesWithString(FC_POSTSCRIPT_NAME, postScriptName);
        if (!files.isEmpty())
            return files;
    }
    if (family.isEmpty())
        return {};
    if (!style.isEmpty())
        return filesWithString(FC_FAMILY, family, FC_STYLE, style);
    return filesWithString(FC_FAMILY, family);
}

void findInstalledFonts(std::vector<PreviewFont>& fonts)
{
    for (PreviewFont& font : fonts) {
        if (font.installedFiles.isEmpty())
            font.installedFiles = installedFontFiles(font.name, font.family, font.style);
    }
}

}

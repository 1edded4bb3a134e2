// SPDX-License-Identifier: GPL-3.0-or-later
#include "VistrelUtilities.h"

#include "Bundle.h"
#include "NSException.h"
#include "PropertyList.h"
#include "QXVersionInfo.h"
#include "SearchPaths.h"
#include "SupportedSystemRange.h"

#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <array>

namespace {

const QString preferencesVersionKey = QStringLiteral("Preferences Version");
const QString preferencesVersion = QStringLiteral("2.0");
const QString pluginFolder = QStringLiteral("QuickLook");
const QString pluginName = QStringLiteral("Vistrel Pro.qlgenerator");

QString firstLibraryFolder(unsigned domain)
{
    return NSSearchPathForDirectoriesInDomains(NSLibraryDirectory, domain, true).value(0);
}

// Filled on the first lookup that finds a dictionary, then kept.
QMutex pluginCacheMutex;
std::optional<QVariantMap> infoDict;
std::optional<QVariantMap> locInfoDict;

std::optional<QVariantMap> cachedPluginDictionary(
    std::optional<QVariantMap>& slot, QVariantMap (Bundle::*read)() const)
{
    {
        QMutexLocker lock(&pluginCacheMutex);
        if (slot)
            return slot;
    }
    const auto bundle = Bundle::bundleWithPath(VTInstalledPluginPath());
    if (!bundle)
        return std::nullopt;
    const QVariantMap dictionary = ((*bundle).*read)();
    QMutexLocker lock(&pluginCacheMutex);
    slot = dictionary;
    return slot;
}

QXVersion cachedOperatingSystemVersion()
{
    return QXVersionInfo::sharedVersionInfo().currentOperatingSystemVersion();
}

template <std::size_t N>
bool isOneOf(const QString& uti, const std::array<const char16_t*, N>& identifiers)
{
    if (uti.isNull())
        return false;
    for (const char16_t* identifier : identifiers) {
        if (uti == QStringView(identifier))
            return true;
    }
    return false;
}

}

QString VTPreferencesPath()
{
    return firstLibraryFolder(NSUserDomainMask) + QStringLiteral("/Preferences/")
        + VTPreferencesDomain + QStringLiteral(".plist");
}

QVariantMap VTDefaults()
{
    QVariantMap defaults;
    defaults.insert(warnAboutDoubleClicksInPreview, true);
    defaults.insert(VTPUseLoupe, true);
    defaults.insert(showFontsInPreview, true);
    defaults.insert(showImageLinksInPreview, true);
    defaults.insert(showColorSwatchesInPreview, true);
    defaults.insert(updateFrequency, qint64(1));
    defaults.insert(lastUpdateCheck, 0.0);
    defaults.insert(showWYSIWYGFontsInPreview, true);
    defaults.insert(illustratorColorSwatchModeInPreview, qint64(1));
    defaults.insert(imageBackgroundColorName, imageBackgroundColorNameWhite);
    defaults.insert(imageBackgroundColorTag, qint64(1));
    defaults.insert(preferEmbeddedPreviewForThumbnailFileSizeThreshold, 128.0f);
    defaults.insert(preferEmbeddedPreviewForPreviewFileSizeThreshold, 256.0f);
    defaults.insert(maximumNumberOfPagesPreviewed, qint64(20));
    defaults.insert(TLPreviewMode, qint64(0));
    defaults.insert(TLPrefInDesignSpreadMode, qint64(1));
    defaults.insert(TLPrefIllustratorSpreadMode, qint64(0));
    return defaults;
}

QVariantMap VTUserDefaults()
{
    QVariantMap result = PropertyList::readDictionary(VTPreferencesPath()).value_or(QVariantMap());
    const QVariantMap defaults = VTDefaults();

    const auto version = result.constFind(preferencesVersionKey);
    if (version != result.constEnd()) {
        if (version->typeId() != QMetaType::QString)
            throw NSException(NSInvalidArgumentException,
                QStringLiteral("\"Preferences Version\" holds a value that is not text"));
        // A current file holds only the known settings; the version marker goes with the rest.
        if (version->toString() == preferencesVersion) {
            const QStringList keys = result.keys();
            for (const QString& key : keys) {
                if (!defaults.contains(key))
                    result.remove(key);
            }
        }
    }

    for (auto it = defaults.begin(); it != defaults.end(); ++it) {
        if (!result.contains(it.key()))
            result.insert(it.key(), it.value());
    }
    return result;
}

QString VTPluginPathForDomain(unsigned domain)
{
    return firstLibraryFolder(domain) + QLatin1Char('/') + pluginFolder + QLatin1Char('/')
        + pluginName;
}

bool VTPluginInstalledForDomain(unsigned domain)
{
    return QFileInfo(VTPluginPathForDomain(domain)).isDir();
}

bool VTPluginInstalled()
{
    return VTPluginInstalledForDomain(NSUserDomainMask)
        || VTPluginInstalledForDomain(NSLocalDomainMask);
}

QString VTInstalledPluginPath()
{
    if (VTPluginInstalledForDomain(NSUserDomainMask))
        return VTPluginPathForDomain(NSUserDomainMask);
    // The machine-wide path is answered even when nothing is installed there.
    return VTPluginPathForDomain(NSLocalDomainMask);
}

std::optional<QVariantMap> VTPluginInfoDictionary()
{
    return cachedPluginDictionary(infoDict, &Bundle::infoDictionary);
}

std::optional<QVariantMap> VTPluginLocalizedInfoDictionary()
{
    return cachedPluginDictionary(locInfoDict, &Bundle::localizedInfoDictionary);
}

bool VTOperatingSystemIsCompatibleCompatible()
{
    const SupportedSystemRange range = supportedSystemRange();
    if (!QXVersionIsGreaterThanOrEqualToVersion(cachedOperatingSystemVersion(), range.lowest))
        return false;
    return !range.firstUnsupported
        || QXVersionIsLessThanVersion(cachedOperatingSystemVersion(), *range.firstUnsupported);
}

bool VTutiIsIllustrator(const QString& uti)
{
    return isOneOf(uti,
        std::array { u"com.adobe.illustrator.ai-image", u"com.adobe.illustrator.ait-template",
            u"dyn.ah62d4rv4ge80c4py" });
}

bool VTutiIsInDesign(const QString& uti)
{
    return isOneOf(uti,
        std::array { u"com.adobe.indesign-document", u"com.adobe.indesign.indd-document",
            u"dyn.ah62d4rv4gk8yw5wequ", u"dyn.ah62d4rv4ge80w5xequ", u"dyn.ah62d4rv4ge8xa",
            u"com.adobe.indesign-template", u"com.adobe.indesign.indt-template",
            u"dyn.ah62d4rv4ge80w5xesu" });
}

bool VTutiIsInDesignINX(const QString& uti)
{
    return isOneOf(uti,
        std::array { u"com.adobe.indesign-interchange", u"com.adobe.indesign.inx-interchange" });
}

bool VTutiIsEPS(const QString& uti)
{
    return isOneOf(uti, std::array { u"com.adobe.encapsulated-postscript" });
}

bool VTutiIsFreehand(const QString& uti)
{
    return isOneOf(uti, std::array { u"com.macromedia.freehand.fh11-image" });
}

bool VTutiIsASE(const QString& uti)
{
    return isOneOf(uti, std::array { u"com.adobe.ase-file", u"dyn.ah62d4rv4ge80c65f" });
}

bool VTShouldProcessUTI(const QString&) { return true; }

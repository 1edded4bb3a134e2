// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariantMap>
#include <optional>

// Utilities shared by Tolvane and its preview generator: the preferences store of the previews,
// the generator's location, and the document type tests.

// ---- The preferences store ----

// The store is the application's own preferences domain, so the generator reads the same file
// that the application's user defaults write.
inline const QString VTPreferencesDomain = QStringLiteral("app.tolvane.Tolvane");

inline const QString warnAboutDoubleClicksInPreview
    = QStringLiteral("Warn About Double Clicks In Preview");
inline const QString VTPUseLoupe = QStringLiteral("UseLoupe");
inline const QString showFontsInPreview = QStringLiteral("Show Fonts In Preview");
inline const QString showImageLinksInPreview = QStringLiteral("Show Image Links In Preview");
inline const QString showColorSwatchesInPreview = QStringLiteral("Show Color Swatches In Preview");
inline const QString updateFrequency = QStringLiteral("Update Frequency");
inline const QString lastUpdateCheck = QStringLiteral("Last Update Check");
inline const QString showWYSIWYGFontsInPreview = QStringLiteral("Show WYSIWYG Fonts In Preview");
inline const QString illustratorColorSwatchModeInPreview
    = QStringLiteral("Illustrator Color Swatch Mode In Preview");
inline const QString imageBackgroundColorName = QStringLiteral("Image Background Color Name");
inline const QString imageBackgroundColorTag = QStringLiteral("Image Background Color Tag");
inline const QString preferEmbeddedPreviewForThumbnailFileSizeThreshold
    = QStringLiteral("Prefer Embedded Preview For Thumbnail File Size Threshold");
inline const QString preferEmbeddedPreviewForPreviewFileSizeThreshold
    = QStringLiteral("Prefer Embedded Preview For Preview File Size Threshold");
inline const QString maximumNumberOfPagesPreviewed
    = QStringLiteral("Maximum Number Of Pages Previewed");
inline const QString TLPreviewMode = QStringLiteral("Preview Mode");
inline const QString TLPrefInDesignSpreadMode = QStringLiteral("InDesign Spread Mode");
inline const QString TLPrefIllustratorSpreadMode = QStringLiteral("Illustrator Spread Mode");

inline const QString imageBackgroundColorNameNone = QStringLiteral("None");
inline const QString imageBackgroundColorNameWhite = QStringLiteral("White");
inline const QString imageBackgroundColorNameGray = QStringLiteral("Gray");
inline const QString imageBackgroundColorNameBlack = QStringLiteral("Black");

// <user Library>/Preferences/app.tolvane.Tolvane.plist
QString VTPreferencesPath();
// The seventeen settings with their defaults, each of its own kind (bool, qint64, double, float,
// QString).
QVariantMap VTDefaults();
// The file's contents completed with the defaults. A file of format "2.0" ("Preferences Version")
// is first pruned to the default keys, the version marker included; any other file keeps every
// key it has. A missing or damaged file counts as empty. Reads the file on every call.
// Throws NSException (NSInvalidArgumentException) when "Preferences Version" is not text.
QVariantMap VTUserDefaults();

// ---- Where the preview generator is installed ----

// <Library of the domain>/QuickLook/Vistrel Pro.qlgenerator, whether it exists or not.
QString VTPluginPathForDomain(unsigned domain);
// Whether a directory stands at that path.
bool VTPluginInstalledForDomain(unsigned domain);
bool VTPluginInstalled();
// The user's copy when installed there, else the machine-wide path, installed or not.
QString VTInstalledPluginPath();
// The installed generator's information dictionaries. A found dictionary is kept for the life of
// the process; when there is none, the next call looks again.
std::optional<QVariantMap> VTPluginInfoDictionary();
std::optional<QVariantMap> VTPluginLocalizedInfoDictionary();
// Whether the running system lies in the supported range (SupportedSystemRange.h).
bool VTOperatingSystemIsCompatibleCompatible();

// ---- Document types ----
// Exact, case-sensitive matches against fixed identifier lists; a null identifier matches none.
bool VTutiIsIllustrator(const QString& uti);
bool VTutiIsInDesign(const QString& uti);
bool VTutiIsInDesignINX(const QString& uti);
bool VTutiIsEPS(const QString& uti);
bool VTutiIsFreehand(const QString& uti);
bool VTutiIsASE(const QString& uti);
// The one place that may turn a type away; it accepts every identifier.
bool VTShouldProcessUTI(const QString& uti);

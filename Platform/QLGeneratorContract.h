// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

// The contract between a preview generator and the application that runs it as a program of its
// own (QLGeneratorRun on one side, the generator's command line on the other):
//
//   <executable> preview FILE [--uti UTI] --out DIR
//       writes DIR/index.html and the pictures it links by relative names, nothing else
//   <executable> thumbnail FILE [--uti UTI] --size N --out PNG
//       writes one PNG no larger than N×N pixels
//
// The generator writes every file under a temporary name inside DIR (or beside PNG) and renames
// it, so a reader never sees half a file. It exits with one of the statuses below and, when it
// fails, prints exactly one line "<words>: <reason>" on stderr, the words being those of
// exitStatusWords.
namespace QLGeneratorContract {

enum ExitStatus {
    Success = 0,
    OtherFailure = 1, // the file is unreadable, the output not writable, a renderer missing or slow
    Usage = 2,
    NotThisKind = 3,
    DamagedFile = 4,
    UnsupportedVariant = 5,
};

inline const QString PreviewCommand = QStringLiteral("preview");
inline const QString ThumbnailCommand = QStringLiteral("thumbnail");
inline const QString TypeOption = QStringLiteral("--uti");
inline const QString OutputOption = QStringLiteral("--out");
inline const QString SizeOption = QStringLiteral("--size");
inline const QString PageFileName = QStringLiteral("index.html");
constexpr int LargestThumbnail = 4096;

// The arguments of one run; an empty type identifier is left out.
QStringList previewArguments(const QString& file, const QString& uti, const QString& folder);
QStringList thumbnailArguments(
    const QString& file, const QString& uti, int size, const QString& picture);

// "failed", "usage", "not a file of this kind", "damaged file", "unsupported variant"; empty for
// success and for a status outside the contract.
QString exitStatusWords(int status);

}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

// Paths turned into the path of what they really point at. A null QString stands for "no
// answer" both in and out.
namespace SymlinksAndAliases {

// How many links one path may lead through before it is taken as a cycle; the kernel's own
// limit when it follows links (MAXSYMLINKS).
inline constexpr int maximumLinkSteps = 40;

// The absolute path with every link (and alias) along it followed, component by component.
// Null for a relative path, a missing component, a dangling link or a cycle of links. A leading
// "~" is expanded first.
QString stringByResolvingSymlinksAndAliases(const QString& path);
// The path with its last component followed until it is neither link nor alias. Null when the
// path or a target is missing, or after maximumLinkSteps links.
QString stringByIterativelyResolvingSymlinkOrAlias(const QString& path);
// The link's target, or the path unchanged when it is not a readable link.
QString stringByResolvingSymlink(const QString& path);
// The alias's target, or the path unchanged when it is not an alias.
QString stringByResolvingAlias(const QString& path);
// The link's target: absolute target text as it stands, a relative one joined to the link's
// folder and standardized. Null when the path is not a readable link.
QString stringByConditionallyResolvingSymlink(const QString& path);
// Linux has no alias files: always null.
QString stringByConditionallyResolvingAlias(const QString& path);

}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewerTable.h"
#include "TestEnvironment.h"
#include "VTPreviewSettings.h"

#include <gtest/gtest.h>

// Sample files (origins in tests/data/README.md) and files the tests write into their home.
namespace KindsTestData {

inline QString samplePath(const QString& name) { return TestEnvironment::dataPath(name); }

// Writes bytes to a file of that name in the test's home and gives its path.
inline QString fileWith(const QString& name, const QByteArray& bytes)
{
    const QString path = TestEnvironment::home() + u'/' + name;
    TestEnvironment::writeFile(path, bytes);
    return path;
}

// The file previewed as a document of that kind, through the previewer table; it must preview.
inline Preview::PreviewContent contentAs(
    Formats::FileKind kind, const QString& path, const VTPreviewSettings& settings = {})
{
    auto result = Preview::previewerForKind(kind)->preview(path, settings);
    EXPECT_TRUE(result.ok()) << result.reason().toStdString();
    return result.ok() ? std::move(result).value() : Preview::PreviewContent();
}

}

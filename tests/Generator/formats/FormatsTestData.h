// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TestEnvironment.h"

#include <QByteArray>
#include <QString>
#include <gtest/gtest.h>

// The sample files of the format tests, under tests/data/formats (origins in its README).
inline QByteArray formatSample(const QString& name)
{
    const QByteArray bytes
        = TestEnvironment::readFile(TestEnvironment::dataPath(QStringLiteral("formats/") + name));
    EXPECT_FALSE(bytes.isEmpty()) << "missing sample " << name.toStdString();
    return bytes;
}

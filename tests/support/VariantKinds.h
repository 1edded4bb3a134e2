// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariant>
#include <QVariantList>
#include <QVariantMap>
#include <gtest/gtest.h>

// QVariant's == converts between kinds (true == qint64(1), 0.0 == false, qint64(2) == "2"), so a
// value stored with the wrong kind would compare equal. These compare the kind first, also inside
// maps and lists:
//     EXPECT_TRUE(VariantKinds::same(actual, expected));
namespace VariantKinds {

inline testing::AssertionResult same(const QVariant& actual, const QVariant& expected);

inline testing::AssertionResult same(const QVariantMap& actual, const QVariantMap& expected)
{
    if (actual.keys() != expected.keys())
        return testing::AssertionFailure()
            << "keys " << actual.keys().join(", ").toStdString() << " instead of "
            << expected.keys().join(", ").toStdString();
    for (auto it = expected.begin(); it != expected.end(); ++it) {
        const testing::AssertionResult result = same(actual.value(it.key()), it.value());
        if (!result)
            return testing::AssertionFailure()
                << it.key().toStdString() << ": " << result.message();
    }
    return testing::AssertionSuccess();
}

inline testing::AssertionResult same(const QVariant& actual, const QVariant& expected)
{
    if (actual.typeId() != expected.typeId())
        return testing::AssertionFailure()
            << actual.typeName() << "(" << actual.toString().toStdString() << ") instead of "
            << expected.typeName() << "(" << expected.toString().toStdString() << ")";
    if (expected.typeId() == QMetaType::QVariantMap)
        return same(actual.toMap(), expected.toMap());
    if (expected.typeId() == QMetaType::QVariantList) {
        const QVariantList a = actual.toList(), e = expected.toList();
        if (a.size() != e.size())
            return testing::AssertionFailure() << a.size() << " items instead of " << e.size();
        for (qsizetype i = 0; i < e.size(); ++i) {
            const testing::AssertionResult result = same(a.at(i), e.at(i));
            if (!result)
                return testing::AssertionFailure() << "item " << i << ": " << result.message();
        }
        return testing::AssertionSuccess();
    }
    if (actual != expected)
        return testing::AssertionFailure()
            << expected.typeName() << " " << actual.toString().toStdString() << " instead of "
            << expected.toString().toStdString();
    return testing::AssertionSuccess();
}

}

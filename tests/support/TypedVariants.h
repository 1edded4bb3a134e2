// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVariant>
#include <QVariantList>
#include <QVariantMap>

// Whether two values are equal and of the same kinds, nested maps and lists included: Qt's own ==
// counts true == 1, 0.0 == false and 2 == "2" as equal, so a value that changed its kind passes it.
inline bool sameTypedValue(const QVariant& a, const QVariant& b)
{
    if (a.typeId() != b.typeId())
        return false;
    if (a.typeId() == QMetaType::QVariantMap) {
        const QVariantMap left = a.toMap();
        const QVariantMap right = b.toMap();
        if (left.keys() != right.keys())
            return false;
        for (auto it = left.cbegin(); it != left.cend(); ++it) {
            if (!sameTypedValue(it.value(), right.value(it.key())))
                return false;
        }
        return true;
    }
    if (a.typeId() == QMetaType::QVariantList) {
        const QVariantList left = a.toList();
        const QVariantList right = b.toList();
        if (left.size() != right.size())
            return false;
        for (qsizetype i = 0; i < left.size(); ++i) {
            if (!sameTypedValue(left[i], right[i]))
                return false;
        }
        return true;
    }
    return a == b;
}

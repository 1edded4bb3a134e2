// SPDX-License-Identifier: GPL-3.0-or-later
#include "PropertyList.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <limits>
#include <memory>
#include <plist/plist.h>

namespace PropertyList {

namespace {

    // Property-list dates count seconds from 2001-01-01 00:00:00 UTC.
    const QDateTime& referenceDate()
    {
        static const QDateTime date(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        return date;
    }

    struct PlistDeleter {
        void operator()(plist_t node) const { plist_free(node); }
    };
    using PlistPtr = std::unique_ptr<std::remove_pointer_t<plist_t>, PlistDeleter>;

    // Hostile files can nest deeply; libplist itself bounds the nesting it builds, this bounds
    // ours.
    constexpr int maximumDepth = 512;

    std::optional<QVariant> toVariant(plist_t node, int depth)
    {
        if (depth > maximumDepth)
            return std::nullopt;
        switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return QVariant(value != 0);
        }
        case PLIST_UINT: {
            // Negative integers are kept in the same 64 bits.
            uint64_t value = 0;
            plist_get_uint_val(node, &value);
            return QVariant(static_cast<qint64>(value));
        }
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return QVariant(value);
        }
        case PLIST_STRING: {
            char* text = nullptr;
            plist_get_string_val(node, &text);
            QString value = QString::fromUtf8(text ? text : "");
            free(text);
            return QVariant(value);
        }
        case PLIST_DATA: {
            char* bytes = nullptr;
            uint64_t length = 0;
            plist_get_data_val(node, &bytes, &length);
            QByteArray value(bytes ? bytes : "", static_cast<qsizetype>(bytes ? length : 0));
            free(bytes);
            return QVariant(value);
        }
        case PLIST_DATE: {
            int32_t seconds = 0;
            int32_t microseconds = 0;
            plist_get_date_val(node, &seconds, &microseconds);
            return QVariant(referenceDate().addMSecs(qint64(seconds) * 1000 + microseconds / 1000));
        }
        case PLIST_ARRAY: {
            QVariantList list;
            const uint32_t count = plist_array_get_size(node);
            list.reserve(count);
            for (uint32_t i = 0; i < count; ++i) {
                auto item = toVariant(plist_array_get_item(node, i), depth + 1);
                if (!item)
                    return std::nullopt;
                list.append(*item);
            }
            return QVariant(list);
        }
        case PLIST_DICT: {
            QVariantMap map;
            plist_dict_iter iterator = nullptr;
            plist_dict_new_iter(node, &iterator);
            std::optional<QVariant> result;
            for (;;) {
                char* key = nullptr;
                plist_t item = nullptr;
                plist_dict_next_item(node, iterator, &key, &item);
                if (!item) {
                    free(key);
                    result = QVariant(map);
                    break;
                }
                auto value = toVariant(item, depth + 1);
                const QString name = QString::fromUtf8(key ? key : "");
                free(key);
                if (!value)
                    break;
                map.insert(name, *value);
            }
            free(iterator);
            return result;
        }
        default:
            // UIDs belong to archived objects, which no preferences file holds.
            return std::nullopt;
        }
    }

    plist_t toNode(const QVariant& value, int depth)
    {
        if (depth > maximumDepth)
            return nullptr;
        switch (value.typeId()) {
        case QMetaType::Bool:
            return plist_new_bool(value.toBool());
        case QMetaType::Int:
        case QMetaType::Long:
        case QMetaType::LongLong:
        case QMetaType::Short:
        case QMetaType::Char:
        case QMetaType::SChar:
            return plist_new_uint(static_cast<uint64_t>(value.toLongLong()));
        case QMetaType::UInt:
        case QMetaType::ULong:
        case QMetaType::ULongLong:
        case QMetaType::UShort:
        case QMetaType::UChar:
            return plist_new_uint(value.toULongLong());
        case QMetaType::Float:
        case QMetaType::Double:
            return plist_new_real(value.toDouble());
        case QMetaType::QString:
            return plist_new_string(value.toString().toUtf8().constData());
        case QMetaType::QByteArray: {
            const QByteArray bytes = value.toByteArray();
            return plist_new_data(bytes.constData(), static_cast<uint64_t>(bytes.size()));
        }
        case QMetaType::QDateTime: {
            const qint64 msecs = referenceDate().msecsTo(value.toDateTime());
            const qint64 seconds = msecs >= 0 ? msecs / 1000 : (msecs - 999) / 1000;
            if (seconds < std::numeric_limits<int32_t>::min()
                || seconds > std::numeric_limits<int32_t>::max())
                return nullptr;
            return plist_new_date(static_cast<int32_t>(seconds),
                static_cast<int32_t>((msecs - seconds * 1000) * 1000));
        }
        case QMetaType::QVariantList:
        case QMetaType::QStringList: {
            PlistPtr array(plist_new_array());
            for (const QVariant& item : value.toList()) {
                plist_t node = toNode(item, depth + 1);
                if (!node)
                    return nullptr;
                plist_array_append_item(array.get(), node);
            }
            return array.release();
        }
        case QMetaType::QVariantMap: {
            PlistPtr dictionary(plist_new_dict());
            const QVariantMap map = value.toMap();
            for (auto it = map.begin(); it != map.end(); ++it) {
                plist_t node = toNode(it.value(), depth + 1);
                if (!node)
                    return nullptr;
                plist_dict_set_item(dictionary.get(), it.key().toUtf8().constData(), node);
            }
            return dictionary.release();
        }
        default:
            return nullptr;
        }
    }

}

std::optional<QVariant> fromData(const QByteArray& data)
{
    if (data.isEmpty() || data.size() > std::numeric_limits<uint32_t>::max())
        return std::nullopt;
    plist_t root = nullptr;
    plist_from_memory(data.constData(), static_cast<uint32_t>(data.size()), &root);
    if (!root)
        return std::nullopt;
    PlistPtr owner(root);
    return toVariant(root, 0);
}

std::optional<QVariantMap> readDictionary(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const auto value = fromData(file.readAll());
    if (!value || value->typeId() != QMetaType::QVariantMap)
        return std::nullopt;
    return value->toMap();
}

std::optional<QByteArray> toXml(const QVariant& value)
{
    PlistPtr root(toNode(value, 0));
    if (!root)
        return std::nullopt;
    char* xml = nullptr;
    uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    if (!xml)
        return std::nullopt;
    QByteArray result(xml, static_cast<qsizetype>(length));
    plist_to_xml_free(xml);
    return result;
}

bool writeXmlAtomically(const QVariant& value, const QString& path, QString* error)
{
    const auto fail = [error](const QString& reason) {
        if (error)
            *error = reason;
        return false;
    };
    const auto xml = toXml(value);
    if (!xml)
        return fail(QStringLiteral("the value holds a kind that a property list cannot carry"));
    const QString folder = QFileInfo(path).absolutePath();
    if (!QDir().mkpath(folder))
        return fail(QStringLiteral("cannot create the folder %1").arg(folder));
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return fail(file.errorString());
    if (file.write(*xml) != xml->size())
        return fail(file.errorString());
    if (!file.commit())
        return fail(file.errorString());
    return true;
}

}

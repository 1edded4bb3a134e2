// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>
#include <QVariantMap>
#include <optional>

// Property lists (XML and binary) converted to and from Qt values. Kinds are kept: a boolean
// reads as bool, an integer as qint64, a real as double, a date as QDateTime (UTC), data as
// QByteArray, arrays as QVariantList and dictionaries as QVariantMap. When writing, a float is
// written as a real and an int of any width as an integer.
namespace PropertyList {

// Parses XML or binary property-list data; nothing on malformed input.
std::optional<QVariant> fromData(const QByteArray& data);

// Reads a file whose top level is a dictionary; nothing when the file is missing, unreadable,
// malformed or holds anything but a dictionary at its top level.
std::optional<QVariantMap> readDictionary(const QString& path);

// XML property-list text of a value; nothing when the value holds a kind that property lists
// cannot carry.
std::optional<QByteArray> toXml(const QVariant& value);

// Writes an XML property list atomically: the file is either the old one or the new one, never a
// partial one. Creates missing parent folders. On failure returns false and says why in *error.
bool writeXmlAtomically(const QVariant& value, const QString& path, QString* error = nullptr);

}

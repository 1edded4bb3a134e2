// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// Writes the container of a little-endian InDesign document: two master pages declaring three
// pages, the database page after them, and a contiguous object stream, for cases no sample file
// has.
class InDesignFileBuilder {
public:
    InDesignFileBuilder& object(const QByteArray& data);
    InDesignFileBuilder& xmpObject(const QByteArray& packet);

    QByteArray bytes() const;

private:
    QByteArray m_stream;
};

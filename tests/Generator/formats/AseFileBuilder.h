// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <initializer_list>

// Writes Swatch Exchange files block by block, for cases no sample file has.
class AseFileBuilder {
public:
    AseFileBuilder& groupStart(const QString& name);
    AseFileBuilder& groupEnd();
    AseFileBuilder& color(const QString& name, const QByteArray& model,
        std::initializer_list<float> values, std::uint16_t type);

    QByteArray bytes() const;

private:
    AseFileBuilder& block(std::uint16_t kind, const QByteArray& body);
    static QByteArray name(const QString& text); // length-prefixed UTF-16BE with its zero

    std::uint32_t m_blocks = 0;
    QByteArray m_body;
};

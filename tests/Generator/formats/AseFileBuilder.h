// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <initializer_list>

// Writes Swatch Exchange files block by block, for cases no sample file has.
class AseFileBuilder {
public:
    AseFileBuilder& version(std::uint16_t major, std::uint16_t minor);
    AseFileBuilder& groupStart(const QString& name);
    AseFileBuilder& groupStartWithoutName();
    AseFileBuilder& groupEnd();
    AseFileBuilder& color(const QString& name, const QByteArray& model,
        std::initializer_list<float> values, std::uint16_t type);
    AseFileBuilder& block(std::uint16_t kind, const QByteArray& body);
    // Declares a block count other than the number of blocks written.
    AseFileBuilder& declaredBlockCount(std::uint32_t count);

    QByteArray bytes() const;

    static QByteArray name(const QString& text); // length-prefixed UTF-16BE with its zero

private:
    std::uint16_t m_major = 1;
    std::uint16_t m_minor = 0;
    std::uint32_t m_blocks = 0;
    std::int64_t m_declaredBlocks = -1;
    QByteArray m_body;
};

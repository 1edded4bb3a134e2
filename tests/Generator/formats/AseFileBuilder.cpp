// SPDX-License-Identifier: GPL-3.0-or-later
#include "AseFileBuilder.h"

#include <bit>

namespace {

void appendU16(QByteArray& bytes, std::uint16_t value)
{
    bytes.append(char(value >> 8)).append(char(value & 0xFF));
}

void appendU32(QByteArray& bytes, std::uint32_t value)
{
    appendU16(bytes, std::uint16_t(value >> 16));
    appendU16(bytes, std::uint16_t(value & 0xFFFF));
}

}

QByteArray AseFileBuilder::name(const QString& text)
{
    QByteArray bytes;
    appendU16(bytes, std::uint16_t(text.size() + 1));
    for (QChar c : text)
        appendU16(bytes, c.unicode());
    appendU16(bytes, 0);
    return bytes;
}

AseFileBuilder& AseFileBuilder::block(std::uint16_t kind, const QByteArray& body)
{
    appendU16(m_body, kind);
    appendU32(m_body, std::uint32_t(body.size()));
    m_body.append(body);
    ++m_blocks;
    return *this;
}

AseFileBuilder& AseFileBuilder::groupStart(const QString& text)
{
    return block(0xC001, name(text));
}

AseFileBuilder& AseFileBuilder::groupEnd() { return block(0xC002, {}); }

AseFileBuilder& AseFileBuilder::color(const QString& text, const QByteArray& model,
    std::initializer_list<float> values, std::uint16_t type)
{
    QByteArray body = name(text);
    body.append(model);
    for (float value : values)
        appendU32(body, std::bit_cast<std::uint32_t>(value));
    appendU16(body, type);
    return block(0x0001, body);
}

QByteArray AseFileBuilder::bytes() const
{
    QByteArray bytes("ASEF");
    appendU16(bytes, 1);
    appendU16(bytes, 0);
    appendU32(bytes, m_blocks);
    return bytes + m_body;
}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteReader.h"

#include <bit>

namespace Formats {

std::optional<std::uint64_t> ByteReader::unsignedOfSize(int size)
{
    if (remaining() < size)
        return std::nullopt;
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
        const int index = m_order == Order::BigEndian ? i : size - 1 - i;
        value = (value << 8) | static_cast<std::uint8_t>(m_bytes[m_position + index]);
    }
    m_position += size;
    return value;
}

std::optional<std::uint8_t> ByteReader::u8()
{
    const auto value = unsignedOfSize(1);
    return value ? std::optional<std::uint8_t>(static_cast<std::uint8_t>(*value)) : std::nullopt;
}

std::optional<std::uint16_t> ByteReader::u16()
{
    const auto value = unsignedOfSize(2);
    return value ? std::optional<std::uint16_t>(static_cast<std::uint16_t>(*value)) : std::nullopt;
}

std::optional<std::uint32_t> ByteReader::u32()
{
    const auto value = unsignedOfSize(4);
    return value ? std::optional<std::uint32_t>(static_cast<std::uint32_t>(*value)) : std::nullopt;
}

std::optional<std::uint64_t> ByteReader::u64() { return unsignedOfSize(8); }

std::optional<float> ByteReader::f32()
{
    const auto bits = u32();
    return bits ? std::optional<float>(std::bit_cast<float>(*bits)) : std::nullopt;
}

std::optional<QByteArrayView> ByteReader::bytes(qsizetype count)
{
    if (count < 0 || remaining() < count)
        return std::nullopt;
    const QByteArrayView view = m_bytes.sliced(m_position, count);
    m_position += count;
    return view;
}

bool ByteReader::skip(qsizetype count) { return bytes(count).has_value(); }

}

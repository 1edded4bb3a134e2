// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>
#include <cstdint>
#include <optional>

namespace Formats {

// A cursor over a byte buffer whose reads never pass its end: a read that would returns nothing
// and leaves the cursor where it was.
class ByteReader {
public:
    enum class Order { BigEndian, LittleEndian };

    explicit ByteReader(QByteArrayView bytes, Order order = Order::BigEndian)
        : m_bytes(bytes)
        , m_order(order)
    {
    }

    qsizetype position() const { return m_position; }
    qsizetype remaining() const { return m_bytes.size() - m_position; }
    bool atEnd() const { return remaining() <= 0; }

    std::optional<std::uint8_t> u8();
    std::optional<std::uint16_t> u16();
    std::optional<std::uint32_t> u32();
    std::optional<std::uint64_t> u64();
    std::optional<float> f32();
    // The next count bytes, or nothing when fewer are left.
    std::optional<QByteArrayView> bytes(qsizetype count);
    bool skip(qsizetype count);

private:
    std::optional<std::uint64_t> unsignedOfSize(int size);

    QByteArrayView m_bytes;
    Order m_order;
    qsizetype m_position = 0;
};

}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <utility>
#include <variant>

namespace Formats {

// Why a parser gave up. The generator maps each to its own exit status (VTGeneratorContract).
enum class FormatError {
    NotThisKind, // the bytes are not a file of the kind the parser reads
    DamagedFile, // the right kind, but truncated or inconsistent
    UnsupportedVariant, // the right kind, in a version or variant we do not read
};

struct ParseFailure {
    FormatError error;
    QString reason; // one line, for stderr
};

// A parsed value or the reason there is none; a small stand-in for std::expected.
template <typename T> class ParseResult {
public:
    ParseResult(T value)
        : m_state(std::move(value))
    {
    }
    ParseResult(ParseFailure failure)
        : m_state(std::move(failure))
    {
    }

    bool ok() const { return std::holds_alternative<T>(m_state); }
    explicit operator bool() const { return ok(); }

    const T& value() const& { return std::get<T>(m_state); }
    T&& value() && { return std::get<T>(std::move(m_state)); }
    const T& operator*() const& { return value(); }
    const T* operator->() const { return &value(); }

    const ParseFailure& failure() const { return std::get<ParseFailure>(m_state); }
    FormatError error() const { return failure().error; }
    QString reason() const { return ok() ? QString() : failure().reason; }

private:
    std::variant<T, ParseFailure> m_state;
};

inline ParseFailure fail(FormatError error, const QString& reason) { return { error, reason }; }

}

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>

// One entry point per parser, shared by the libFuzzer targets and the corpus replay test. Each
// runs its parser on the bytes and returns false when the result breaks a promise the parser
// makes (a crash or an out-of-bounds read is caught by the sanitizers instead).
namespace FuzzEntryPoints {

bool swatchExchange(const std::uint8_t* data, std::size_t size);
bool inDesignContainer(const std::uint8_t* data, std::size_t size);
bool xmp(const std::uint8_t* data, std::size_t size);
bool dscComments(const std::uint8_t* data, std::size_t size);

}

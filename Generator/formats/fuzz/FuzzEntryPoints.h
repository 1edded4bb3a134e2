// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// One entry point per reader, shared by the libFuzzer targets and the corpus replay test. Each
// runs its reader on the bytes and returns false when the result breaks a promise the reader
// makes (a crash or an out-of-bounds read is caught by the sanitizers instead).
namespace FuzzEntryPoints {

using EntryPoint = bool (*)(const std::uint8_t* data, std::size_t size);

struct Target {
    std::string name; // fuzz_<name> is the libFuzzer program
    EntryPoint run;
};

// Every reader of this build, the optional ones included.
std::vector<Target> targets();
// The targets of the optional readers this build has (OptionalTargets-*.cpp, chosen in CMake).
std::vector<Target> optionalTargets();
// The target of that name; none when this build lacks it.
EntryPoint entryPoint(const std::string& name);

}

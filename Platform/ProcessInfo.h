// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <cstddef>
#include <cstdint>

struct NSOperatingSystemVersion {
    qint64 majorVersion = 0;
    qint64 minorVersion = 0;
    qint64 patchVersion = 0;
};

// The running system, as the kernel tells it (uname(2)). TOLVANE_SYSTEM_VERSION (e.g. 10.13.6)
// stands in for the kernel release in both answers, to try the compatibility paths.
class ProcessInfo {
public:
    static const ProcessInfo& processInfo();

    // "Version <release> (Build <kernel version>)".
    QString operatingSystemVersionString() const;
    // The leading numbers of the release: "6.1.0-18-amd64" gives 6.1.0.
    NSOperatingSystemVersion operatingSystemVersion() const;

private:
    ProcessInfo() = default;
    QString release() const;
};

// Kernel queries by name. Known: "hw.cpu64bit_capable", "hw.optional.x86_64",
// "hw.optional.64bitops" (32-bit integers). Returns 0 on success, -1 for an unknown name or a
// buffer too small; with oldp null only the size is reported.
int sysctlbyname(const char* name, void* oldp, std::size_t* oldlenp, const void* newp,
    std::size_t newlen);

using OSType = std::uint32_t;
constexpr OSType gestaltSystemVersion = 0x73797376; // 'sysv'
constexpr OSType gestaltSystemVersionMajor = 0x73797331; // 'sys1'
constexpr OSType gestaltSystemVersionMinor = 0x73797332; // 'sys2'
constexpr OSType gestaltSystemVersionBugFix = 0x73797333; // 'sys3'

// The legacy system-version enquiry. 'sysv' is major in hexadecimal digits followed by minor
// and patch each capped at 9 (10.6.8 gives 0x1068). Returns 0, -5551 for unknown selectors, or
// -50 when response is null.
int Gestalt(OSType selector, std::int32_t* response);

// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProcessInfo.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/utsname.h>

namespace {

constexpr int gestaltUndefSelectorErr = -5551;
constexpr int paramErr = -50;

struct KernelIdentity {
    QString release;
    QString version;
    QString machine;
};

KernelIdentity kernelIdentity()
{
    utsname names {};
    if (uname(&names) != 0)
        return {};
    return { QString::fromLocal8Bit(names.release), QString::fromLocal8Bit(names.version),
        QString::fromLocal8Bit(names.machine) };
}

// The processor can run 64-bit code when this program is 64-bit, or when the kernel reports a
// 64-bit machine (a 32-bit build on a 64-bit kernel).
bool processorIs64BitCapable()
{
    return sizeof(void*) == 8 || kernelIdentity().machine.contains(QLatin1String("64"));
}

bool processorIsX86_64() { return kernelIdentity().machine == QLatin1String("x86_64"); }

// Decimal digits read as hexadecimal ones: 10 gives 0x10.
std::int32_t decimalDigitsAsHex(qint64 value)
{
    bool ok = false;
    const qint64 hex = QString::number(std::max<qint64>(value, 0)).toLongLong(&ok, 16);
    return ok ? static_cast<std::int32_t>(hex) : 0;
}

}

const ProcessInfo& ProcessInfo::processInfo()
{
    static const ProcessInfo instance;
    return instance;
}

// Read on every call, so that a test or a user can change the override while the process runs.
QString ProcessInfo::release() const
{
    const QString overridden = qEnvironmentVariable("TOLVANE_SYSTEM_VERSION");
    return overridden.isEmpty() ? kernelIdentity().release : overridden;
}

QString ProcessInfo::operatingSystemVersionString() const
{
    return QStringLiteral("Version %1 (Build %2)").arg(release(), kernelIdentity().version);
}

NSOperatingSystemVersion ProcessInfo::operatingSystemVersion() const
{
    qint64 numbers[3] = { 0, 0, 0 };
    const QString text = release();
    qsizetype position = 0;
    for (int index = 0; index < 3; ++index) {
        const qsizetype start = position;
        while (position < text.size() && text.at(position).isDigit()
            && text.at(position).unicode() < 0x80)
            ++position;
        if (position == start)
            break;
        numbers[index] = text.mid(start, position - start).toLongLong();
        if (position >= text.size() || text.at(position) != QLatin1Char('.'))
            break;
        ++position;
    }
    return { numbers[0], numbers[1], numbers[2] };
}

int sysctlbyname(
    const char* name, void* oldp, std::size_t* oldlenp, const void* newp, std::size_t newlen)
{
    if (name == nullptr || oldlenp == nullptr) {
        errno = EINVAL;
        return -1;
    }
    std::int32_t value = 0;
    if (std::strcmp(name, "hw.cpu64bit_capable") == 0
        || std::strcmp(name, "hw.optional.64bitops") == 0)
        value = processorIs64BitCapable() ? 1 : 0;
    else if (std::strcmp(name, "hw.optional.x86_64") == 0)
        value = processorIsX86_64() ? 1 : 0;
    else {
        errno = ENOENT;
        return -1;
    }
    // These values are read-only.
    if (newp != nullptr || newlen != 0) {
        errno = EPERM;
        return -1;
    }
    if (oldp == nullptr) {
        *oldlenp = sizeof value;
        return 0;
    }
    if (*oldlenp < sizeof value) {
        errno = ENOMEM;
        return -1;
    }
    std::memcpy(oldp, &value, sizeof value);
    *oldlenp = sizeof value;
    return 0;
}

int Gestalt(OSType selector, std::int32_t* response)
{
    if (response == nullptr)
        return paramErr;
    const NSOperatingSystemVersion version = ProcessInfo::processInfo().operatingSystemVersion();
    const auto digit
        = [](qint64 value) { return static_cast<std::int32_t>(std::clamp<qint64>(value, 0, 9)); };
    switch (selector) {
    case gestaltSystemVersion:
        *response = (decimalDigitsAsHex(version.majorVersion) << 8)
            | (digit(version.minorVersion) << 4) | digit(version.patchVersion);
        return 0;
    case gestaltSystemVersionMajor:
        *response = static_cast<std::int32_t>(version.majorVersion);
        return 0;
    case gestaltSystemVersionMinor:
        *response = static_cast<std::int32_t>(version.minorVersion);
        return 0;
    case gestaltSystemVersionBugFix:
        *response = static_cast<std::int32_t>(version.patchVersion);
        return 0;
    default:
        return gestaltUndefSelectorErr;
    }
}

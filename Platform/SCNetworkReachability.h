// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>

// Whether a host could be reached now, without setting up a connection: its name resolves and
// the kernel has a route to one of its addresses (a UDP socket is connected to it, nothing is
// sent). Names get a limited time to resolve, so that a broken name server answers "not
// reachable" within two seconds instead of blocking. While a name resolves in the thread of a
// running event loop, that loop keeps running, so windows stay responsive.

using SCNetworkReachabilityFlags = std::uint32_t;
using SCNetworkConnectionFlags = std::uint32_t;

enum : std::uint32_t {
    kSCNetworkFlagsReachable = 1u << 1,
    kSCNetworkFlagsConnectionRequired = 1u << 2,
    kSCNetworkReachabilityFlagsReachable = kSCNetworkFlagsReachable,
    kSCNetworkReachabilityFlagsConnectionRequired = kSCNetworkFlagsConnectionRequired,
};

// How long a name may take to resolve before it counts as unreachable.
inline constexpr int SCNetworkResolutionTimeLimitMilliseconds = 2000;

// Fills *flags (0 when not reachable). A null or empty name is not reachable. Returns whether
// the name could be looked at at all, which callers need not consult: the flags decide.
bool SCNetworkCheckReachabilityByName(const char* nodename, SCNetworkConnectionFlags* flags);

// A reachability target for one host name.
struct SCNetworkReachability;
struct SCNetworkReachabilityDeleter {
    void operator()(SCNetworkReachability* target) const;
};
using SCNetworkReachabilityRef
    = std::unique_ptr<SCNetworkReachability, SCNetworkReachabilityDeleter>;

// Nothing for a null name.
SCNetworkReachabilityRef SCNetworkReachabilityCreateWithName(const char* nodename);
// The current flags of the target; false, leaving *flags alone, for a null target.
bool SCNetworkReachabilityGetFlags(
    const SCNetworkReachability* target, SCNetworkReachabilityFlags* flags);

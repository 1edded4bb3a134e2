// SPDX-License-Identifier: GPL-3.0-or-later
#include "SCNetworkReachability.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <netdb.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

struct SCNetworkReachability {
    QByteArray name;
};

void SCNetworkReachabilityDeleter::operator()(SCNetworkReachability* target) const
{
    delete target;
}

namespace {

struct Address {
    sockaddr_storage storage {};
    socklen_t length = 0;
};

// What the resolving thread hands back. The thread may outlive the wait (a name server that
// never answers), so the state is shared and the waiter is told only while it still waits.
struct Resolution {
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    std::vector<Address> addresses;
    QEventLoop* waitingLoop = nullptr;
};

std::vector<Address> addressesOf(const QByteArray& name)
{
    addrinfo hints {};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_DGRAM;
    hints.ai_flags = AI_NUMERICSERV;
    addrinfo* list = nullptr;
    std::vector<Address> addresses;
    // The port only gives the route test a complete address; nothing is sent to it.
    if (getaddrinfo(name.constData(), "80", &hints, &list) != 0)
        return addresses;
    for (const addrinfo* entry = list; entry; entry = entry->ai_next) {
        Address address;
        if (entry->ai_addrlen > sizeof address.storage)
            continue;
        std::memcpy(&address.storage, entry->ai_addr, entry->ai_addrlen);
        address.length = entry->ai_addrlen;
        addresses.push_back(address);
    }
    freeaddrinfo(list);
    return addresses;
}

bool waitsWithEventLoop()
{
    const QCoreApplication* application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread();
}

// The name's addresses, or none when it does not resolve within the time limit.
std::vector<Address> resolveWithTimeLimit(const QByteArray& name)
{
    auto resolution = std::make_shared<Resolution>();
    std::thread([resolution, name] {
        std::vector<Address> addresses = addressesOf(name);
        const std::lock_guard lock(resolution->mutex);
        resolution->addresses = std::move(addresses);
        resolution->done = true;
        resolution->finished.notify_all();
        if (resolution->waitingLoop)
            QMetaObject::invokeMethod(resolution->waitingLoop, "quit", Qt::QueuedConnection);
    }).detach();

    const auto limit = std::chrono::milliseconds(SCNetworkResolutionTimeLimitMilliseconds);
    std::unique_lock lock(resolution->mutex);
    if (waitsWithEventLoop()) {
        if (!resolution->done) {
            QEventLoop loop;
            QTimer::singleShot(limit, &loop, &QEventLoop::quit);
            resolution->waitingLoop = &loop;
            lock.unlock();
            loop.exec();
            lock.lock();
            resolution->waitingLoop = nullptr;
        }
    } else {
        resolution->finished.wait_for(lock, limit, [&] { return resolution->done; });
    }
    return resolution->done ? resolution->addresses : std::vector<Address>();
}

bool hasRouteTo(const Address& address)
{
    const int socketDescriptor = socket(address.storage.ss_family, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (socketDescriptor < 0)
        return false;
    const bool connected = connect(socketDescriptor,
                               reinterpret_cast<const sockaddr*>(&address.storage), address.length)
        == 0;
    close(socketDescriptor);
    return connected;
}

SCNetworkReachabilityFlags flagsForName(const QByteArray& name)
{
    if (name.isEmpty())
        return 0;
    for (const Address& address : resolveWithTimeLimit(name)) {
        if (hasRouteTo(address))
            return kSCNetworkReachabilityFlagsReachable;
    }
    return 0;
}

}

bool SCNetworkCheckReachabilityByName(const char* nodename, SCNetworkConnectionFlags* flags)
{
    if (!flags)
        return false;
    *flags = nodename ? flagsForName(QByteArray(nodename)) : 0;
    return nodename != nullptr;
}

SCNetworkReachabilityRef SCNetworkReachabilityCreateWithName(const char* nodename)
{
    if (!nodename)
        return nullptr;
    return SCNetworkReachabilityRef(new SCNetworkReachability { QByteArray(nodename) });
}

bool SCNetworkReachabilityGetFlags(
    const SCNetworkReachability* target, SCNetworkReachabilityFlags* flags)
{
    if (!target || !flags)
        return false;
    *flags = flagsForName(target->name);
    return true;
}

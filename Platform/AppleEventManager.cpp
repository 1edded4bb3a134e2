// SPDX-License-Identifier: GPL-3.0-or-later
#include "AppleEventManager.h"

NSAppleEventDescriptor::NSAppleEventDescriptor(
    AEEventClass eventClass, AEEventID eventID, QString directObject)
    : m_eventClass(eventClass)
    , m_eventID(eventID)
    , m_string(std::move(directObject))
{
}

NSAppleEventDescriptor NSAppleEventDescriptor::paramDescriptorForKeyword(AEKeyword keyword) const
{
    if (keyword != keyDirectObject)
        return {};
    NSAppleEventDescriptor parameter;
    parameter.m_string = m_string;
    return parameter;
}

NSAppleEventManager& NSAppleEventManager::sharedAppleEventManager()
{
    static NSAppleEventManager manager;
    return manager;
}

void NSAppleEventManager::setEventHandler(
    Handler handler, AEEventClass eventClass, AEEventID eventID)
{
    m_handlers[{ eventClass, eventID }] = std::move(handler);
}

void NSAppleEventManager::removeEventHandler(AEEventClass eventClass, AEEventID eventID)
{
    m_handlers.erase({ eventClass, eventID });
}

bool NSAppleEventManager::dispatch(const NSAppleEventDescriptor& event)
{
    const auto handler = m_handlers.find({ event.eventClass(), event.eventID() });
    if (handler == m_handlers.end())
        return false;
    handler->second(event, NSAppleEventDescriptor());
    return true;
}

bool NSAppleEventManager::dispatchGetURL(const QString& url)
{
    return dispatch(NSAppleEventDescriptor(kInternetEventClass, kAEGetURL, url));
}

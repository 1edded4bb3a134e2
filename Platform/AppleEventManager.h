// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <cstdint>
#include <functional>
#include <map>

using AEEventClass = std::uint32_t;
using AEEventID = std::uint32_t;
using AEKeyword = std::uint32_t;

constexpr AEEventClass kInternetEventClass = 0x4755524C; // 'GURL'
constexpr AEEventID kAEGetURL = 0x4755524C; // 'GURL'
constexpr AEKeyword keyDirectObject = 0x2D2D2D2D; // '----'

// An event as it reaches a handler: its class, its ID and its direct object as text.
class NSAppleEventDescriptor {
public:
    NSAppleEventDescriptor() = default;
    NSAppleEventDescriptor(AEEventClass eventClass, AEEventID eventID, QString directObject);

    AEEventClass eventClass() const { return m_eventClass; }
    AEEventID eventID() const { return m_eventID; }
    // The direct object for keyDirectObject; a null descriptor for any other keyword.
    NSAppleEventDescriptor paramDescriptorForKeyword(AEKeyword keyword) const;
    // A null string when the descriptor holds no text.
    QString stringValue() const { return m_string; }

private:
    AEEventClass m_eventClass = 0;
    AEEventID m_eventID = 0;
    QString m_string;
};

// Routes events to the handler registered for their class and ID. URLs reach the application as
// command-line arguments or over D-Bus; both end here as get-URL events.
class NSAppleEventManager {
public:
    using Handler = std::function<void(
        const NSAppleEventDescriptor& event, const NSAppleEventDescriptor& replyEvent)>;

    static NSAppleEventManager& sharedAppleEventManager();

    void setEventHandler(Handler handler, AEEventClass eventClass, AEEventID eventID);
    void removeEventHandler(AEEventClass eventClass, AEEventID eventID);
    // Calls the handler of the event's class and ID; false when there is none.
    bool dispatch(const NSAppleEventDescriptor& event);
    // A get-URL event for the URL text.
    bool dispatchGetURL(const QString& url);

private:
    std::map<std::pair<AEEventClass, AEEventID>, Handler> m_handlers;
};

// SPDX-License-Identifier: GPL-3.0-or-later
#include "WindowWatch.h"

#include <QByteArray>
#include <QDeadlineTimer>
#include <QHash>
#include <algorithm>
#include <cstdlib>
#include <poll.h>
#include <xcb/damage.h>
#include <xcb/xcb.h>

// Every top-level window gets a damage object when it is made; the first report of drawing into
// one whose title matches ends the wait. Windows are made before they are shown and titled, so no
// drawing is missed.
struct WindowWatch::State {
    xcb_connection_t* connection = nullptr;
    xcb_window_t root = 0;
    uint8_t damageEvent = 0;
    QHash<xcb_window_t, xcb_damage_damage_t> damages;

    QByteArray title(xcb_window_t window) const
    {
        const xcb_get_property_cookie_t cookie
            = xcb_get_property(connection, 0, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 0, 1024);
        xcb_get_property_reply_t* reply = xcb_get_property_reply(connection, cookie, nullptr);
        if (!reply)
            return {};
        const QByteArray name(static_cast<const char*>(xcb_get_property_value(reply)),
            xcb_get_property_value_length(reply));
        std::free(reply);
        return name;
    }

    // True when the event is drawing into a window of that title.
    bool handle(xcb_generic_event_t* event, const QByteArray& wanted)
    {
        const uint8_t type = event->response_type & 0x7f;
        if (type == XCB_CREATE_NOTIFY) {
            const auto* created = reinterpret_cast<xcb_create_notify_event_t*>(event);
            if (created->parent != root)
                return false;
            const xcb_damage_damage_t damage = xcb_generate_id(connection);
            xcb_damage_create(
                connection, damage, created->window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
            damages.insert(created->window, damage);
        } else if (type == XCB_DESTROY_NOTIFY) {
            const auto* destroyed = reinterpret_cast<xcb_destroy_notify_event_t*>(event);
            damages.remove(destroyed->window);
        } else if (type == damageEvent + XCB_DAMAGE_NOTIFY) {
            const auto* drawn = reinterpret_cast<xcb_damage_notify_event_t*>(event);
            if (title(drawn->drawable) == wanted)
                return true;
            // Reported once until cleared: clear it to hear of the next drawing.
            xcb_damage_subtract(connection, drawn->damage, XCB_NONE, XCB_NONE);
        }
        return false;
    }
};

WindowWatch::WindowWatch()
    : m_state(std::make_unique<State>())
{
    int screenNumber = 0;
    xcb_connection_t* connection = xcb_connect(nullptr, &screenNumber);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return;
    }
    const xcb_query_extension_reply_t* damage = xcb_get_extension_data(connection, &xcb_damage_id);
    if (!damage || !damage->present) {
        xcb_disconnect(connection);
        return;
    }
    std::free(xcb_damage_query_version_reply(connection,
        xcb_damage_query_version(connection, XCB_DAMAGE_MAJOR_VERSION, XCB_DAMAGE_MINOR_VERSION),
        nullptr));
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int i = 0; i < screenNumber; ++i)
        xcb_screen_next(&screens);
    m_state->connection = connection;
    m_state->root = screens.data->root;
    m_state->damageEvent = damage->first_event;
    const uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, m_state->root, XCB_CW_EVENT_MASK, &mask);
    xcb_flush(connection);
}

WindowWatch::~WindowWatch()
{
    if (m_state->connection)
        xcb_disconnect(m_state->connection);
}

bool WindowWatch::isValid() const { return m_state->connection != nullptr; }

void WindowWatch::reset()
{
    if (!isValid())
        return;
    std::free(xcb_get_input_focus_reply(
        m_state->connection, xcb_get_input_focus(m_state->connection), nullptr));
    while (xcb_generic_event_t* event = xcb_poll_for_event(m_state->connection)) {
        m_state->handle(event, QByteArray());
        std::free(event);
    }
}

bool WindowWatch::waitForDrawnWindow(const QString& title, std::chrono::milliseconds deadline)
{
    if (!isValid())
        return false;
    const QByteArray wanted = title.toLatin1();
    const QDeadlineTimer timer(deadline);
    pollfd descriptor { xcb_get_file_descriptor(m_state->connection), POLLIN, 0 };
    while (!timer.hasExpired()) {
        while (xcb_generic_event_t* event = xcb_poll_for_event(m_state->connection)) {
            const bool found = m_state->handle(event, wanted);
            std::free(event);
            if (found)
                return true;
        }
        xcb_flush(m_state->connection);
        if (xcb_connection_has_error(m_state->connection))
            return false;
        poll(&descriptor, 1, static_cast<int>(std::max<qint64>(1, timer.remainingTime())));
    }
    return false;
}

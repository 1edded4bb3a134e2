// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <chrono>
#include <memory>

// Watches the X server for the first drawing into a top-level window of a given title: the moment
// a person would see the window, measured without polling, so the watch takes no processor time
// from the program it times.
class WindowWatch {
public:
    // Connects to $DISPLAY; isValid() is false without a server or its DAMAGE extension.
    WindowWatch();
    ~WindowWatch();

    bool isValid() const;
    // Forgets the windows seen so far: call before starting the program to be timed.
    void reset();
    // Waits until a window with the title has been drawn into; false on the deadline.
    bool waitForDrawnWindow(const QString& title, std::chrono::milliseconds deadline);

private:
    struct State;
    std::unique_ptr<State> m_state;
};

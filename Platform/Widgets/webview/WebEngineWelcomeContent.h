// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "WelcomeWebContent.h"

// The welcome page in Qt WebEngine.
std::unique_ptr<WelcomeWebContent> makeWebEngineWelcomeContent(
    QWidget* parent, WelcomeWebCallbacks callbacks);

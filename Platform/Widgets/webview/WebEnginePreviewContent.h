// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewWebContent.h"

// A preview page in Qt WebEngine, under rules that hold whatever the page holds: it opens no
// window, every navigation is put to the owner with what started it (a link leaves the page only
// on the user's click), every resource it reads is put to the owner, and its process gets the
// memory limit.
std::unique_ptr<PreviewWebContent> makeWebEnginePreviewContent(
    QWidget* parent, PreviewWebCallbacks callbacks, qint64 memoryLimit);

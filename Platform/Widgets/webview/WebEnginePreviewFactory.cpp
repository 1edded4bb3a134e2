// SPDX-License-Identifier: GPL-3.0-or-later
#include "WebEnginePreviewFactory.h"

#include "WebEnginePreviewContent.h"
#include "WebEngineWelcomeContent.h"

std::unique_ptr<PreviewWebContent> WebEnginePreviewFactory::create(
    QWidget* parent, PreviewWebCallbacks callbacks, qint64 memoryLimit)
{
    return makeWebEnginePreviewContent(parent, std::move(callbacks), memoryLimit);
}

std::unique_ptr<WelcomeWebContent> WebEnginePreviewFactory::create(
    QWidget* parent, WelcomeWebCallbacks callbacks)
{
    return makeWebEngineWelcomeContent(parent, std::move(callbacks));
}

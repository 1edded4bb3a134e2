// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class PreviewWebContentFactory;
class WelcomeWebContentFactory;

// The web engine module, loaded once, at the first page a preview or the welcome screen shows.
namespace PreviewWebModule {

// The module's file name, looked for next to the running executable unless a path is set.
inline constexpr const char* fileName = "tolvane_webview.so";

QString path();
// Where to load the module from; takes effect if it is not loaded yet.
void setPath(const QString& path);

// Loads the module on first use. Nothing when it cannot be loaded; *error then says why.
PreviewWebContentFactory* factory(QString* error);
WelcomeWebContentFactory* welcomeFactory(QString* error);
bool isLoaded();

}

// SPDX-License-Identifier: GPL-3.0-or-later
// The preview generator's command line; everything else is in the tolvane_generator library.
#include "CommandLine.h"
#include "ProcessLimits.h"

#include <QGuiApplication>
#include <QTextStream>
#include <cstdio>
#include <iostream>

int main(int argc, char* argv[])
{
    // Our own ceiling, below whatever the caller set: a hostile file must not take the machine
    // down, whoever runs us.
    Preview::limitOwnResources(std::uint64_t(2) << 30, 60);
    // Library warnings about odd files would break the one line on stderr that callers read: Qt's
    // and poppler's go through the message handler, exempi's to std::cerr.
    if (!qEnvironmentVariableIsSet("VISTREL_DEBUG")) {
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        std::cerr.rdbuf(nullptr);
    }
    // Pictures are drawn off screen (text included, which needs the font database of a GUI
    // application), whether or not there is a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QTextStream out(stdout);
    QTextStream err(stderr);
    return Preview::runCommandLine(application.arguments().mid(1), out, err);
}

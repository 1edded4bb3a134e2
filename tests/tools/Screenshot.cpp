// SPDX-License-Identifier: GPL-3.0-or-later
// tolvane-screenshot OUT.png [WINDOW-ID]: saves a picture of the X screen, or of one window
// (its id as xwininfo prints it, e.g. 0x1a00007), for looking at the application by eye.
#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>
#include <cstdio>

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() < 2 || arguments.size() > 3) {
        std::fprintf(stderr, "usage: tolvane-screenshot OUT.png [WINDOW-ID]\n");
        return 2;
    }
    bool ok = true;
    const WId window = arguments.size() == 3 ? arguments.at(2).toULongLong(&ok, 0) : 0;
    if (!ok) {
        std::fprintf(
            stderr, "tolvane-screenshot: %s is not a window id\n", qPrintable(arguments.at(2)));
        return 2;
    }
    const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(window);
    if (picture.isNull() || !picture.save(arguments.at(1))) {
        std::fprintf(stderr, "tolvane-screenshot: could not take or save the picture\n");
        return 1;
    }
    return 0;
}

// SPDX-License-Identifier: GPL-3.0-or-later
// The reference for the start-up benchmark: the least a Qt widget program does to show a window.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QWidget window;
    window.setWindowTitle(application.arguments().value(1, QStringLiteral("Minimal window")));
    window.resize(900, 700);
    window.show();
    return application.exec();
}

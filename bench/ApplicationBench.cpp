// SPDX-License-Identifier: GPL-3.0-or-later
// The application as a user meets it, each figure beside a reference measured in the same run:
//   start-up to the first document window shown, against a minimal Qt widget program;
//   resident memory with one document open, and whether Qt WebEngine was loaded for it (once for
//   a file that shows a card, once for the document, whose preview is a web page);
//   a URL command's round trip from a second launch, against a bare `gdbus call` to the same
//   instance.
// Run it with bench/run-application-bench.sh, which gives it an X server and a session bus.
#include "BenchmarkRatio.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>

namespace {

bool windowShown(const QString& title)
{
    QProcess xwininfo;
    xwininfo.start("xwininfo", { "-root", "-tree" });
    xwininfo.waitForFinished(5000);
    return QString::fromUtf8(xwininfo.readAllStandardOutput()).contains('"' + title + '"');
}

// Nanoseconds from starting the program until a window with the title is on the screen.
double timeToWindow(
    const QString& program, const QStringList& arguments, const QString& title, QProcess& process)
{
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    const QDeadlineTimer deadline(30000);
    while (!windowShown(title) && !deadline.hasExpired())
        QThread::usleep(2000);
    return static_cast<double>(timer.nsecsElapsed());
}

void stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished();
}

qint64 residentKilobytes(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

bool mapsLibrary(qint64 pid, const QByteArray& name)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(name);
}

double runNanoseconds(const QString& program, const QStringList& arguments)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(30000);
    return static_cast<double>(timer.nsecsElapsed());
}

}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: bench_application TOLVANE MINIMAL-WINDOW DOCUMENT\n");
        return 2;
    }
    const QString tolvane = QString::fromLocal8Bit(argv[1]);
    const QString minimal = QString::fromLocal8Bit(argv[2]);
    const QString document = QString::fromLocal8Bit(argv[3]);
    const QString title = QFileInfo(document).fileName();
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/.local/share").toUtf8());
    qputenv("QT_QPA_PLATFORM", "xcb");
    // The bundle in the build folder would first offer to move itself to the Applications folder.
    QDir().mkpath(home.path() + "/.local/share/Preferences");
    QFile preferences(home.path() + "/.local/share/Preferences/app.tolvane.Tolvane.plist");
    if (!preferences.open(QIODevice::WriteOnly)
        || preferences.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">"
                             "<dict><key>moveToApplicationsFolderAlertSuppress</key><true/></dict>"
                             "</plist>\n")
            < 0)
        return 1;
    preferences.close();

    double bestTolvane = 0;
    double bestMinimal = 0;
    for (int round = 0; round < 5; ++round) {
        QProcess reference;
        const double minimalTime = timeToWindow(minimal, { "Reference" }, "Reference", reference);
        stop(reference);
        QProcess app;
        const double tolvaneTime = timeToWindow(tolvane, { document }, title, app);
        stop(app);
        bestMinimal = round == 0 ? minimalTime : std::min(bestMinimal, minimalTime);
        bestTolvane = round == 0 ? tolvaneTime : std::min(bestTolvane, tolvaneTime);
    }
    BenchmarkRatio::report(
        "start-up to the document window", bestTolvane, "minimal Qt window", bestMinimal);

    // A file that no generator draws shows a card: no web view is needed for it.
    const QString unknown = home.path() + "/notes.unknownkind";
    QFile card(unknown);
    if (!card.open(QIODevice::WriteOnly) || card.write("plain text\n") < 0)
        return 1;
    card.close();
    for (const QString& file : { unknown, document }) {
        QProcess shown;
        timeToWindow(tolvane, { file }, QFileInfo(file).fileName(), shown);
        QThread::sleep(3); // the preview settles
        std::printf("resident memory with %s open: %lld kB; Qt WebEngine loaded: %s\n",
            qPrintable(QFileInfo(file).fileName()), residentKilobytes(shown.processId()),
            mapsLibrary(shown.processId(), "libQt6WebEngineCore") ? "yes" : "no");
        stop(shown);
    }

    QProcess app;
    timeToWindow(tolvane, { document }, title, app);

    const QString command = QStringLiteral("tolvane://reveal/image?path=%2Ftmp%2Fnothing.png");
    const QStringList gdbus { "call", "--session", "--dest", "app.tolvane.Tolvane", "--object-path",
        "/app/tolvane/Tolvane", "--method", "org.freedesktop.Application.Open",
        QStringLiteral("['%1']").arg(command), "{}" };
    double bestLaunch = 0;
    double bestCall = 0;
    for (int round = 0; round < 10; ++round) {
        const double launch = runNanoseconds(tolvane, { command });
        const double call = runNanoseconds("gdbus", gdbus);
        bestLaunch = round == 0 ? launch : std::min(bestLaunch, launch);
        bestCall = round == 0 ? call : std::min(bestCall, call);
    }
    BenchmarkRatio::report(
        "URL command from a second launch", bestLaunch, "bare gdbus call", bestCall);
    stop(app);
    return 0;
}

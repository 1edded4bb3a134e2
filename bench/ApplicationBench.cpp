// SPDX-License-Identifier: GPL-3.0-or-later
// The application as a user meets it, each figure beside a reference measured in the same run,
// each the median of several rounds:
//   start-up until the first document window is drawn, for a file that shows a card, against a
//   minimal Qt widget program until its window is drawn;
//   resident memory once that start has settled, against the minimal program's, and which of the
//   OpenGL, LLVM and Qt WebEngine libraries it mapped;
//   resident memory with a web-page preview shown (the application's process, and its web
//   engine's processes added up by proportional share);
//   a URL command's round trip from a second launch, against a bare `gdbus call` to the same
//   instance.
// Run it with bench/run-application-bench.sh, which gives it an X server and a session bus.
#include "BenchmarkRatio.h"
#include "WindowWatch.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <cstdio>

using namespace std::chrono_literals;

namespace {

constexpr int rounds = 5;

struct Programs {
    QString tolvane;
    QString minimal;
};

void stop(QProcess& process)
{
    process.terminate();
    if (!process.waitForFinished(5000))
        process.kill();
    process.waitForFinished();
}

QByteArray procFile(qint64 pid, const char* name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// A "Name:   123 kB" line of a /proc status-like file.
qint64 kilobytes(const QByteArray& text, const QByteArray& name)
{
    for (const QByteArray& line : text.split('\n')) {
        if (line.startsWith(name + ':'))
            return line.mid(name.size() + 1).trimmed().split(' ').value(0).toLongLong();
    }
    return 0;
}

qint64 residentKilobytes(qint64 pid) { return kilobytes(procFile(pid, "status"), "VmRSS"); }

// Processor time the process has used, in clock ticks.
qint64 processorTicks(qint64 pid)
{
    const QByteArray stat = procFile(pid, "stat");
    const QList<QByteArray> fields = stat.mid(stat.lastIndexOf(')') + 2).split(' ');
    return fields.value(11).toLongLong() + fields.value(12).toLongLong();
}

// Waits until the process has used no processor time for a second: its start has settled.
void waitUntilSettled(qint64 pid)
{
    const QDeadlineTimer deadline(60000);
    qint64 ticks = processorTicks(pid);
    int quietSteps = 0;
    while (quietSteps < 4 && !deadline.hasExpired()) {
        QThread::msleep(250);
        const qint64 now = processorTicks(pid);
        quietSteps = now == ticks ? quietSteps + 1 : 0;
        ticks = now;
    }
}

QList<qint64> descendants(qint64 pid)
{
    QList<qint64> found;
    for (const QString& entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isNumber = false;
        const qint64 child = entry.toLongLong(&isNumber);
        if (!isNumber)
            continue;
        const QByteArray stat = procFile(child, "stat");
        if (stat.mid(stat.lastIndexOf(')') + 2).split(' ').value(1).toLongLong() == pid)
            found << child << descendants(child);
    }
    return found;
}

bool mapsAny(qint64 pid, const QList<QByteArray>& names)
{
    const QByteArray maps = procFile(pid, "maps");
    for (const QByteArray& name : names) {
        if (maps.contains(name))
            return true;
    }
    return false;
}

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    const qsizetype middle = values.size() / 2;
    return values.size() % 2 ? values.at(middle) : (values.at(middle - 1) + values.at(middle)) / 2;
}

// Starts the program and waits until its window is drawn; the nanoseconds that took, or a
// negative number when it never was.
double startUntilDrawn(WindowWatch& watch, const QString& program, const QStringList& arguments,
    const QString& title, QProcess& process)
{
    watch.reset();
    QElapsedTimer timer;
    timer.start();
    process.start(program, arguments);
    if (!watch.waitForDrawnWindow(title, 30s))
        return -1;
    return static_cast<double>(timer.nsecsElapsed());
}

void startUpAndMemory(WindowWatch& watch, const Programs& programs, const QString& cardFile)
{
    const QString title = QFileInfo(cardFile).fileName();
    QList<double> tolvaneTimes, minimalTimes, tolvaneMemory, minimalMemory;
    bool graphicsMapped = false;
    bool webEngineMapped = false;
    for (int round = 0; round < rounds; ++round) {
        QProcess reference;
        minimalTimes << startUntilDrawn(
            watch, programs.minimal, { QStringLiteral("Reference") }, "Reference", reference);
        waitUntilSettled(reference.processId());
        minimalMemory << residentKilobytes(reference.processId()) * 1024.0;
        stop(reference);

        QProcess app;
        tolvaneTimes << startUntilDrawn(watch, programs.tolvane, { cardFile }, title, app);
        waitUntilSettled(app.processId());
        tolvaneMemory << residentKilobytes(app.processId()) * 1024.0;
        graphicsMapped |= mapsAny(app.processId(), { "libLLVM", "_dri.so", "libGLX_mesa" });
        webEngineMapped |= mapsAny(app.processId(), { "libQt6WebEngine" });
        stop(app);
    }
    BenchmarkRatio::report("start-up to the first document window", median(tolvaneTimes),
        "minimal Qt window", median(minimalTimes));
    BenchmarkRatio::reportMemory("resident memory, card-only document", median(tolvaneMemory),
        "minimal Qt window", median(minimalMemory));
    std::printf("  the card-only start mapped OpenGL drivers or LLVM: %s; Qt WebEngine: %s\n",
        graphicsMapped ? "yes" : "no", webEngineMapped ? "yes" : "no");
}

void webPreviewMemory(WindowWatch& watch, const Programs& programs, const QString& document)
{
    QList<double> own, withEngine;
    for (int round = 0; round < rounds; ++round) {
        QProcess app;
        startUntilDrawn(watch, programs.tolvane, { document }, QFileInfo(document).fileName(), app);
        const qint64 pid = app.processId();
        const QDeadlineTimer deadline(60000);
        while (!mapsAny(pid, { "libQt6WebEngineCore" }) && !deadline.hasExpired())
            QThread::msleep(100);
        waitUntilSettled(pid);
        own << residentKilobytes(pid) * 1024.0;
        double total = kilobytes(procFile(pid, "smaps_rollup"), "Pss");
        for (qint64 helper : descendants(pid))
            total += kilobytes(procFile(helper, "smaps_rollup"), "Pss");
        withEngine << total * 1024.0;
        stop(app);
    }
    std::printf("%-40s %10.1f MB   (with the web engine's processes, proportional: %.1f MB)\n",
        "resident memory, web-page preview", median(own) / 1048576.0,
        median(withEngine) / 1048576.0);
}

// Runs the program to its end while the event loop serves the bus.
double runNanoseconds(const QString& program, const QStringList& arguments)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QObject::connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
    process.start(program, arguments);
    loop.exec();
    return static_cast<double>(timer.nsecsElapsed());
}

// The desktop's file manager, which the reveal command calls; it shows nothing, so that the
// command costs the same in every round.
class FileManager : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")
public:
    bool registerOnBus()
    {
        QDBusConnection bus = QDBusConnection::sessionBus();
        return bus.registerObject(QStringLiteral("/org/freedesktop/FileManager1"), this,
                   QDBusConnection::ExportAllSlots)
            && bus.registerService(QStringLiteral("org.freedesktop.FileManager1"));
    }

public slots:
    void ShowItems(const QStringList&, const QString&) { }
};

void secondLaunch(WindowWatch& watch, const Programs& programs, const QString& cardFile)
{
    FileManager fileManager;
    if (!fileManager.registerOnBus())
        std::printf("  (no stand-in file manager on the bus: reveals open folders)\n");
    QProcess app;
    startUntilDrawn(watch, programs.tolvane, { cardFile }, QFileInfo(cardFile).fileName(), app);
    waitUntilSettled(app.processId());
    const QString command = QStringLiteral("tolvane://reveal/image?path=%2Ftmp%2Fnothing.png");
    const QStringList gdbus { "call", "--session", "--dest", "app.tolvane.Tolvane", "--object-path",
        "/app/tolvane/Tolvane", "--method", "org.freedesktop.Application.Open",
        QStringLiteral("['%1']").arg(command), "{}" };
    QList<double> launches, calls;
    for (int round = 0; round < 2 * rounds; ++round) {
        launches << runNanoseconds(programs.tolvane, { command });
        calls << runNanoseconds(QStringLiteral("gdbus"), gdbus);
    }
    BenchmarkRatio::report(
        "URL command from a second launch", median(launches), "bare gdbus call", median(calls));
    stop(app);
}

}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 4) {
        std::fprintf(stderr, "usage: bench_application TOLVANE MINIMAL-WINDOW WEB-DOCUMENT\n");
        return 2;
    }
    const Programs programs { QString::fromLocal8Bit(argv[1]), QString::fromLocal8Bit(argv[2]) };
    const QString webDocument = QString::fromLocal8Bit(argv[3]);
    WindowWatch watch;
    if (!watch.isValid()) {
        std::fprintf(stderr, "bench_application: needs an X server with the DAMAGE extension\n");
        return 1;
    }
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

    // As a desktop session has it.
    const QString runtime = home.path() + "/runtime";
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());

    // A file that no generator draws shows a card: no web view is needed for it.
    const QString cardFile = home.path() + "/notes.unknownkind";
    QFile card(cardFile);
    if (!card.open(QIODevice::WriteOnly) || card.write("plain text\n") < 0)
        return 1;
    card.close();

    std::printf("medians of %d rounds (the second launch: %d)\n", rounds, 2 * rounds);
    startUpAndMemory(watch, programs, cardFile);
    webPreviewMemory(watch, programs, webDocument);
    secondLaunch(watch, programs, cardFile);
    return 0;
}

#include "ApplicationBench.moc"

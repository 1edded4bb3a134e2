// SPDX-License-Identifier: GPL-3.0-or-later
// The preview generator, run as the application runs it: a multi-page Illustrator preview against
// pdftoppm drawing the same pages at the same resolution, large EPS files against Ghostscript
// drawing the same file at the same resolution, the time to the first page of a 100-page
// document, a thumbnail of each kind, and documents made to exhaust the generator (huge pages,
// hundreds of thousands of links, fonts, pages and swatches, files of gigabytes) against a plain
// one-page EPS.
#include "BenchmarkRatio.h"
#include "PropertyList.h"
#include "VistrelUtilities.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cmath>
#include <cstdio>

namespace {

const QString Generator = QStringLiteral(VISTREL_EXECUTABLE);
const QString TestData = QStringLiteral(TOLVANE_TEST_DATA);

// Runs a program to its end; false when it fails.
bool runProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    return process.waitForFinished(600000) && process.exitStatus() == QProcess::NormalExit
        && process.exitCode() == 0;
}

void usePreferences(const QVariantMap& values)
{
    QVariantMap all = VTDefaults();
    for (auto it = values.begin(); it != values.end(); ++it)
        all.insert(it.key(), it.value());
    PropertyList::writeXmlAtomically(all, VTPreferencesPath());
}

// The median of the rounds.
double timeRun(const QString& program, const QStringList& arguments, int rounds, bool* ok)
{
    return BenchmarkRatio::medianNanoseconds(
        [&] { *ok = runProgram(program, arguments) && *ok; }, rounds);
}

void previewAgainstPdftoppm(const QString& work)
{
    const QString file = TestData + QStringLiteral("/generator/illustrator-like-100-pages.ai");
    const int pages = 20;
    usePreferences({ { maximumNumberOfPagesPreviewed, qint64(pages) } });
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (pdftoppm.isEmpty()) {
        std::printf("pdftoppm not found (poppler-utils): no reference for the preview ratio\n");
        return;
    }
    bool ok = true;
    const double preview
        = timeRun(Generator, { "preview", file, "--out", work + "/preview" }, 5, &ok);
    const double reference = timeRun(pdftoppm,
        { "-png", "-r", "144", "-f", "1", "-l", QString::number(pages), file,
            work + "/pdftoppm/page" },
        5, &ok);
    if (!ok)
        std::printf("a run failed; the times below are not comparable\n");
    BenchmarkRatio::report(
        "preview, 20 artboards at 144 dpi", preview, "pdftoppm -png -r 144", reference);
}

void timeToFirstPage(const QString& work)
{
    const QString file = TestData + QStringLiteral("/generator/illustrator-like-100-pages.ai");
    usePreferences({ { TLPreviewMode, qint64(1) } });
    bool ok = true;
    const double first = timeRun(Generator, { "preview", file, "--out", work + "/first" }, 5, &ok);
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    const double reference = pdftoppm.isEmpty()
        ? 0
        : timeRun(pdftoppm,
            { "-png", "-r", "144", "-f", "1", "-l", "1", file, work + "/first-ref" }, 5, &ok);
    if (reference > 0)
        BenchmarkRatio::report(
            "first page of 100 (preview mode 1)", first, "pdftoppm, page 1", reference);
    else
        std::printf("%-40s %10.1f us\n", "first page of 100 (preview mode 1)", first / 1000.0);
    if (!ok)
        std::printf("a run failed\n");
}

// An EPS of about the given size as print jobs are: a page-sized photograph in hexadecimal.
QString writeLargeEps(const QString& work, qint64 megabytes)
{
    const int side = int(std::sqrt(double(megabytes) * 1e6 / 6));
    const QString path = work + QStringLiteral("/large-%1mb.eps").arg(megabytes);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(QStringLiteral("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 612 792\n"
                              "%%Creator: Tolvane benchmark\n%%EndComments\n"
                              "gsave 612 792 scale /line %1 string def\n"
                              "%1 %1 8 [%1 0 0 -%1 0 %1] "
                              "{ currentfile line readhexstring pop } false 3 colorimage\n")
                   .arg(side)
                   .toLatin1());
    QByteArray row;
    for (int x = 0; x < side; ++x)
        row += QByteArray::number((x * 7) % 256 | 0x100, 16).right(2)
            + QByteArray::number((x * 3) % 256 | 0x100, 16).right(2) + "80";
    row += '\n';
    for (int y = 0; y < side; ++y)
        file.write(row);
    file.write("grestore\nshowpage\n%%EOF\n");
    return path;
}

void largeEpsAgainstGhostscript(const QString& work)
{
    usePreferences({});
    const QString gs = QStandardPaths::findExecutable(QStringLiteral("gs"));
    if (gs.isEmpty()) {
        std::printf("gs not found (ghostscript): no reference for the EPS ratios\n");
        return;
    }
    for (const qint64 megabytes : { 10, 100 }) {
        const QString file = writeLargeEps(work, megabytes);
        bool ok = true;
        const double preview
            = timeRun(Generator, { "preview", file, "--out", work + "/eps" }, 3, &ok);
        // The generator draws the page of 612 × 792 pt at 144 dpi, smoothed as here.
        const double reference = timeRun(gs,
            { "-dSAFER", "-dBATCH", "-dNOPAUSE", "-dQUIET", "-sDEVICE=pngalpha", "-r144",
                "-dTextAlphaBits=4", "-dGraphicsAlphaBits=4", "-dEPSCrop",
                "-sOutputFile=" + work + "/gs.png", file },
            3, &ok);
        if (!ok)
            std::printf("a run failed; the times below are not comparable\n");
        const QByteArray name = QStringLiteral("preview, %1 MB EPS").arg(megabytes).toLatin1();
        BenchmarkRatio::report(name.constData(), preview, "gs, pngalpha at 144 dpi", reference);
        QFile::remove(file);
    }
}

void thumbnails(const QString& work)
{
    usePreferences({});
    const QStringList samples { "generator/illustrator-normal.ai",
        "generator/illustrator-without-pdf-content.ai", "generator/illustrator-saved-as.pdf",
        "formats/samples/illustrator24.eps", "formats/samples/illustrator88.eps",
        "formats/samples/indesign15.indd", "formats/samples/interchange-exiftool.inx",
        "formats/samples/idml-4-pages-layers.idml", "formats/ase/sampler.ase" };
    for (const QString& sample : samples) {
        bool ok = true;
        const double time = timeRun(Generator,
            { "thumbnail", TestData + "/" + sample, "--size", "256", "--out",
                work + "/thumbnail.png" },
            3, &ok);
        std::printf("%-40s %10.1f us%s\n", qPrintable("thumbnail " + QFileInfo(sample).fileName()),
            time / 1000.0, ok ? "" : "   (failed)");
    }
}

void hostileDocuments(const QString& work)
{
    usePreferences({});
    const QString folder = work + QStringLiteral("/hostile");
    const QList<QPair<QString, QString>> documents { { "huge-pages", "huge-pages.ai" },
        { "many-pages", "many-pages.ai" }, { "many-links", "many-links.idml" },
        { "many-fonts", "many-fonts.eps" }, { "million-swatches", "million-swatches.ase" },
        { "huge-eps", "huge.eps" } };
    QStringList writers;
    for (const auto& document : documents)
        writers.append(document.first);
    if (!runProgram(QStringLiteral("python3"),
            QStringList { QStringLiteral(TOLVANE_HOSTILE_FILES_SCRIPT), folder } + writers)) {
        std::printf("the hostile documents could not be written (python3)\n");
        return;
    }
    bool ok = true;
    const double reference = timeRun(Generator,
        { "preview", TestData + "/formats/samples/illustrator88.eps", "--out", work + "/plain" }, 3,
        &ok);
    for (const auto& document : documents) {
        bool done = true;
        const double time = timeRun(Generator,
            { "preview", folder + "/" + document.second, "--out", work + "/hostile-out" }, 1,
            &done);
        const QByteArray name = ("preview " + document.second).toLatin1();
        BenchmarkRatio::report(name.constData(), time, "preview of a one-page EPS", reference);
        if (!done)
            std::printf("   (the preview failed)\n");
    }
}

}

int main(int argc, char** argv)
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_DATA_HOME", (home.path() + "/.local/share").toUtf8());
    QCoreApplication application(argc, argv);
    const QString work = home.path() + QStringLiteral("/work");
    QDir().mkpath(work + "/pdftoppm");

    previewAgainstPdftoppm(work);
    largeEpsAgainstGhostscript(work);
    timeToFirstPage(work);
    thumbnails(work);
    hostileDocuments(work);
    return 0;
}

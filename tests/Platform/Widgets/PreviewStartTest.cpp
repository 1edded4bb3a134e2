// SPDX-License-Identifier: GPL-3.0-or-later
// A start as the application makes it, on a real X server: a card maps no graphics driver and no
// web engine into the process, and a web page shown afterwards still comes up, silently.
#include "FakeGenerator.h"
#include "PreviewView.h"
#include "PreviewWebModule.h"
#include "TestEnvironment.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// The libraries of this process's memory map whose names hold one of the parts.
QStringList mappedLibraries(const QStringList& parts)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return { QStringLiteral("(/proc/self/maps unreadable)") };
    QStringList found;
    for (const QByteArray& line : maps.readAll().split('\n')) {
        const qsizetype slash = line.indexOf('/');
        const QString path = QString::fromUtf8(line.mid(slash));
        for (const QString& part : parts) {
            if (slash >= 0 && path.contains(part) && !found.contains(path))
                found << path;
        }
    }
    return found;
}

// The OpenGL drivers (Qt's own dispatch libraries, libGLX and libOpenGL, come with QtGui into
// every program), LLVM behind the software one, and the web engine.
const QStringList graphicsAndWeb { QStringLiteral("libLLVM"), QStringLiteral("_dri.so"),
    QStringLiteral("libGLX_mesa"), QStringLiteral("libEGL_mesa"), QStringLiteral("libglapi"),
    QStringLiteral("libQt6WebEngine") };

// What the process writes to its standard error while it lives, children included.
class CapturedErrors {
public:
    CapturedErrors()
    {
        m_file.open();
        std::fflush(stderr);
        m_saved = dup(STDERR_FILENO);
        dup2(m_file.handle(), STDERR_FILENO);
    }
    ~CapturedErrors() { restore(); }

    QByteArray restore()
    {
        if (m_saved >= 0) {
            std::fflush(stderr);
            dup2(m_saved, STDERR_FILENO);
            close(m_saved);
            m_saved = -1;
        }
        return TestEnvironment::readFile(m_file.fileName());
    }

private:
    QTemporaryFile m_file;
    int m_saved = -1;
};

void show(PreviewView& view, const QString& file)
{
    QSignalSpy finished(&view, &PreviewView::previewFinished);
    view.setPreviewItem(std::make_shared<FileItem>(file));
    if (finished.isEmpty()) {
        ASSERT_TRUE(finished.wait(120000)) << "the preview never finished";
    }
}

TEST(PreviewStart, ACardLoadsNoGraphicsDriverAndAPageAfterwardsStillShowsSilently)
{
    ASSERT_EQ(qgetenv("QT_QPA_PLATFORM"), "xcb") << "needs the X server's platform";
    ASSERT_TRUE(mappedLibraries(graphicsAndWeb).isEmpty())
        << "mapped before the test began: "
        << mappedLibraries(graphicsAndWeb).join(' ').toStdString();
    PreviewWebModule::setPath(QStringLiteral(TOLVANE_WEBVIEW_MODULE));
    // The generator that comes with the application, installed for the user.
    const QString quickLook = TestEnvironment::userLibrary() + QStringLiteral("/QuickLook");
    ASSERT_TRUE(QDir().mkpath(quickLook));
    ASSERT_TRUE(QFile::link(QStringLiteral(VISTREL_GENERATOR_BUNDLE),
        quickLook + QStringLiteral("/Vistrel Pro.qlgenerator")));

    PreviewView view;
    view.resize(800, 600);
    view.show();
    const QString notes = TestEnvironment::home() + QStringLiteral("/notes.unknownkind");
    TestEnvironment::writeFile(notes, "plain text\n");
    show(view, notes);
    ASSERT_EQ(view.state(), PreviewView::State::Card);
    EXPECT_EQ(mappedLibraries(graphicsAndWeb), QStringList());

    // A file nobody here wrote (see tests/data/README.md), drawn into a web page.
    CapturedErrors errors;
    show(view, TestEnvironment::dataPath(QStringLiteral("formats/samples/illustrator88.eps")));
    EXPECT_EQ(view.state(), PreviewView::State::WebPage) << view.reason().toStdString();
    EXPECT_FALSE(mappedLibraries({ QStringLiteral("libQt6WebEngineCore") }).isEmpty());
    EXPECT_EQ(errors.restore().toStdString(), "");
}

}

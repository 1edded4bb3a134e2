// SPDX-License-Identifier: GPL-3.0-or-later
// A start as the application makes it, on a real X server: a window with a menu bar and a card
// maps no graphics driver, no web engine and no image plugin into the process, and a web page
// shown afterwards still comes up, silently.
#include "DrawnIconStyle.h"
#include "FakeGenerator.h"
#include "PreviewView.h"
#include "PreviewWebModule.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMenuBar>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// The OpenGL drivers (Qt's own dispatch libraries, libGLX and libOpenGL, come with QtGui into
// every program), LLVM behind the software one, and the web engine.
const QStringList graphicsAndWeb { QStringLiteral("libLLVM"), QStringLiteral("_dri.so"),
    QStringLiteral("libGLX_mesa"), QStringLiteral("libEGL_mesa"), QStringLiteral("libglapi"),
    QStringLiteral("libQt6WebEngine") };
// Qt loads all of them to read one picture of unknown kind.
const QString imagePlugins = QStringLiteral("/imageformats/");

// How many pixels of the picture are not transparent.
int paintedPixels(const QImage& image)
{
    int painted = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            painted += qAlpha(image.pixel(x, y)) > 0;
    return painted;
}

// How many pixels of the square picture clearly differ from the other's mirrored at the diagonal.
int differencesFromTransposed(const QImage& image, const QImage& other)
{
    int differences = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            differences += qAbs(qAlpha(image.pixel(x, y)) - qAlpha(other.pixel(y, x))) > 64;
    return differences;
}

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
    ASSERT_TRUE(TestEnvironment::mappedFiles(graphicsAndWeb).isEmpty())
        << "mapped before the test began: "
        << TestEnvironment::mappedFiles(graphicsAndWeb).join(' ').toStdString();
    PreviewWebModule::setPath(QStringLiteral(TOLVANE_WEBVIEW_MODULE));
    // The generator that comes with the application, installed for the user.
    const QString quickLook = TestEnvironment::userLibrary() + QStringLiteral("/QuickLook");
    ASSERT_TRUE(QDir().mkpath(quickLook));
    ASSERT_TRUE(QFile::link(QStringLiteral(VISTREL_GENERATOR_BUNDLE),
        quickLook + QStringLiteral("/Vistrel Pro.qlgenerator")));

    QApplication::setStyle(new DrawnIconStyle);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("File"));
    auto* view = new PreviewView;
    window.setCentralWidget(view);
    window.resize(800, 600);
    window.show();
    const QString notes = TestEnvironment::home() + QStringLiteral("/notes.unknownkind");
    TestEnvironment::writeFile(notes, "plain text\n");
    show(*view, notes);
    ASSERT_EQ(view->state(), PreviewView::State::Card);
    EXPECT_EQ(
        TestEnvironment::mappedFiles(graphicsAndWeb + QStringList { imagePlugins }), QStringList());
    // The menu bar's extension arrows, drawn instead of read, point right and down.
    const auto arrow = [](QStyle::StandardPixmap which) {
        return QApplication::style()->standardIcon(which).pixmap(16, 16).toImage();
    };
    const QImage right = arrow(QStyle::SP_ToolBarHorizontalExtensionButton);
    const QImage down = arrow(QStyle::SP_ToolBarVerticalExtensionButton);
    EXPECT_GT(paintedPixels(right), 10);
    EXPECT_LT(paintedPixels(right), 16 * 16 / 3) << "the arrows are drawn on a clear picture";
    EXPECT_LT(differencesFromTransposed(down, right), 4);

    // A file nobody here wrote (see tests/data/README.md), drawn into a web page.
    // What this process and its children write to the standard error meanwhile.
    testing::internal::CaptureStderr();
    show(*view, TestEnvironment::dataPath(QStringLiteral("formats/samples/illustrator88.eps")));
    EXPECT_EQ(view->state(), PreviewView::State::WebPage) << view->reason().toStdString();
    EXPECT_FALSE(TestEnvironment::mappedFiles({ QStringLiteral("libQt6WebEngineCore") }).isEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}

// SPDX-License-Identifier: GPL-3.0-or-later
#include "NSException.h"
#include "PreviewView.h"
#include "TLDocument.h"
#include "TLDocumentController.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QMainWindow>
#include <gtest/gtest.h>

namespace {

QUrl makeFile(const QString& name, const QByteArray& contents = "%!PS-Adobe-3.0 EPSF-3.0\n")
{
    const QString path = TestEnvironment::home() + "/" + name;
    TestEnvironment::writeFile(path, contents);
    return QUrl::fromLocalFile(path);
}

TEST(Document, RefusesToSave)
{
    TLDocument document;
    ASSERT_TRUE(document.initWithContentsOfURL(
        makeFile("a.eps"), "com.adobe.encapsulated-postscript", nullptr));
    try {
        document.dataOfType("com.adobe.encapsulated-postscript", nullptr);
        FAIL() << "saving did not raise";
    } catch (const NSException& exception) {
        EXPECT_EQ(exception.name(), "UnimplementedMethod");
        EXPECT_EQ(exception.reason(), "dataOfType:error: is unimplemented");
    }
    EXPECT_FALSE(TLDocument::autosavesInPlace());
}

TEST(Document, AcceptsAnyContents)
{
    TLDocument document;
    EXPECT_TRUE(document.initWithContentsOfURL(
        makeFile("empty.ai", ""), "com.adobe.illustrator.ai-image", nullptr));
    EXPECT_TRUE(document.readFromData(QByteArray("\x00\xff", 2), "public.data", nullptr));
}

TEST(Document, AnUnreadableFileSaysWhy)
{
    TLDocument document;
    QString error;
    EXPECT_FALSE(
        document.initWithContentsOfURL(QUrl::fromLocalFile(TestEnvironment::home() + "/missing.ai"),
            "com.adobe.illustrator.ai-image", &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(Document, ThePreviewFillsTheWindowAndFollowsItsSize)
{
    TLDocument document;
    ASSERT_TRUE(document.initWithContentsOfURL(
        makeFile("b.eps"), "com.adobe.encapsulated-postscript", nullptr));
    document.showWindows();
    QMainWindow* window = document.window();
    ASSERT_NE(document.qlView(), nullptr);
    EXPECT_EQ(window->centralWidget(), document.qlView());
    EXPECT_EQ(document.qlView()->previewItem()->previewItemURL(), document.fileURL());
    for (const QSize size : { QSize(640, 480), QSize(1000, 300) }) {
        window->resize(size);
        QApplication::processEvents();
        ASSERT_EQ(window->size(), size);
        EXPECT_EQ(document.qlView()->geometry(), QRect(QPoint(0, 0), size));
    }
    EXPECT_EQ(window->windowTitle(), "b.eps");
}

TEST(DocumentController, OneWindowPerFile)
{
    TLDocumentController controller;
    const QUrl url = makeFile("c.eps");
    TLDocument* first = controller.openDocumentWithContentsOfURL(url, true, nullptr);
    ASSERT_NE(first, nullptr);
    // The same file by another path is the same document.
    const QUrl samePath = QUrl::fromLocalFile(TestEnvironment::home() + "/./c.eps");
    EXPECT_EQ(controller.openDocumentWithContentsOfURL(samePath, true, nullptr), first);
    TLDocument* second = controller.openDocumentWithContentsOfURL(makeFile("d.ai"), true, nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(controller.documents().size(), 2);
    EXPECT_EQ(controller.recentDocumentPaths(),
        (QStringList { TestEnvironment::home() + "/d.ai", TestEnvironment::home() + "/c.eps" }));

    first->window()->close();
    QApplication::processEvents();
    EXPECT_EQ(controller.documents(), QList<TLDocument*> { second });
    controller.clearRecentDocuments();
    EXPECT_TRUE(controller.recentDocumentPaths().isEmpty());
}

TEST(DocumentController, FoldersAndMissingFilesDoNotOpen)
{
    TLDocumentController controller;
    QString error;
    EXPECT_EQ(controller.openDocumentWithContentsOfURL(
                  QUrl::fromLocalFile(TestEnvironment::home()), true, &error),
        nullptr);
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(controller.openDocumentWithContentsOfURL(
                  QUrl("https://tolvane.example/a.ai"), true, &error),
        nullptr);
    EXPECT_TRUE(controller.documents().isEmpty());
}

TEST(DocumentController, OpenPanelOffersTheDeclaredTypes)
{
    EXPECT_EQ(TLDocumentController::openPanelNameFilters(),
        (QStringList { "Design files (*.ai *.AI *.ait *.AIT *.ase *.ASE)",
            "Adobe Illustrator document (*.ai *.AI *.ait *.AIT)",
            "Adobe Swatch Exchange file (*.ase *.ASE)", "All files (*)" }));
}

}

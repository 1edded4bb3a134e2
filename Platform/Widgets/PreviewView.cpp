// SPDX-License-Identifier: GPL-3.0-or-later
#include "PreviewView.h"

#include "Localization.h"
#include "PreviewCard.h"
#include "PreviewLinkPolicy.h"
#include "PreviewPictureView.h"
#include "PreviewWebContent.h"
#include "PreviewWebModule.h"
#include "QLGenerators.h"
#include "UniformTypeIdentifiers.h"
#include "Workspace.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QLabel>
#include <QTemporaryDir>
#include <QTimer>
#include <QVBoxLayout>

PreviewView::PreviewView(QWidget* parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
}

PreviewView::~PreviewView() { clear(); }

QString PreviewView::outputFolder() const { return m_output ? m_output->path() : QString(); }

void PreviewView::setPreviewItem(std::shared_ptr<QLPreviewItem> item)
{
    clear();
    m_item = std::move(item);
    if (m_item)
        start();
}

void PreviewView::clear()
{
    ++m_generation;
    // The run goes first, so that the generator is gone before its folder is removed.
    m_run.reset();
    m_web.reset();
    delete m_content.data();
    m_output.reset();
    m_state = State::Nothing;
    m_reason.clear();
    m_file.clear();
    m_identifier.clear();
    m_pageFolder.clear();
}

void PreviewView::later(std::function<void()> function)
{
    const quint64 generation = m_generation;
    QTimer::singleShot(0, this, [this, generation, function = std::move(function)] {
        if (generation == m_generation)
            function();
    });
}

void PreviewView::start()
{
    const QUrl url = m_item->previewItemURL();
    m_file = url.isLocalFile() ? url.toLocalFile() : url.path();
    const QList<QLGenerator> generators = QLGenerators::installedGenerators();
    m_infoDictionaries = QLGenerators::typeDeclarations(generators);
    m_identifier = UTType::identifierForFile(m_file, m_infoDictionaries);

    if (!url.isLocalFile() || !QFileInfo(m_file).isFile())
        return showCard(NSLocalizedString(QStringLiteral("The file cannot be found.")));
    const std::optional<QLGenerator> generator
        = QLGenerators::generatorForType(m_identifier, generators);
    if (!generator)
        return showCard(NSLocalizedString(
            QStringLiteral("No preview generator for this kind of file is installed.")));
    m_output = std::make_unique<QTemporaryDir>(
        QDir::tempPath() + QStringLiteral("/tolvane-preview-XXXXXX"));
    if (!m_output->isValid())
        return showCard(NSLocalizedString(QStringLiteral("The preview cannot be made: %1"))
                            .arg(m_output->errorString()));

    auto* working = new QLabel(NSLocalizedString(QStringLiteral("Preparing the preview…")));
    working->setAlignment(Qt::AlignCenter);
    showContent(working, State::Working);
    m_run = std::make_unique<QLGeneratorRun>(
        generator->executablePath, m_file, m_identifier, m_output->path(), m_limits);
    connect(m_run.get(), &QLGeneratorRun::finished, this, &PreviewView::generatorFinished);
    m_run->start();
}

void PreviewView::generatorFinished(const QLGeneratorOutcome& outcome)
{
    // The run is still emitting: let it go from the event loop.
    m_run.release()->deleteLater();
    switch (outcome.kind) {
    case QLGeneratorOutcome::Page:
        return showPage(outcome.path);
    case QLGeneratorOutcome::Picture:
        return showPicture(outcome.path);
    case QLGeneratorOutcome::Failed:
        return showCard(outcome.reason);
    }
}

void PreviewView::showPage(const QString& page)
{
    QString error;
    PreviewWebContentFactory* factory = PreviewWebModule::factory(&error);
    if (!factory)
        return showCard(
            NSLocalizedString(QStringLiteral("The preview page cannot be shown: %1")).arg(error));
    m_pageFolder = QFileInfo(page).absolutePath();
    const qint64 memoryLimit = m_pageMemoryLimit;
    std::unique_ptr<PreviewWebContent> web = factory->create(this,
        { [this](const QUrl& url, PreviewNavigationCause cause) {
             return navigationRequested(url, cause);
         },
            [folder = m_pageFolder](const QUrl& url) { return previewMayRead(url, folder); },
            [this](bool ok) { later([this, ok] { pageLoaded(ok); }); },
            [this, memoryLimit] {
                later([this, memoryLimit] {
                    showCard(NSLocalizedString(
                        QStringLiteral("The preview page stopped. It may have needed more than "
                                       "the %1 MB of memory it may use."))
                                 .arg(memoryLimit >> 20));
                });
            } },
        memoryLimit);
    // The page loads under the working state; it counts as shown once it has loaded.
    showContent(web->widget(), State::Working);
    m_web = std::move(web);
    m_web->load(QUrl::fromLocalFile(page));
}

void PreviewView::pageLoaded(bool ok)
{
    // Pages the preview navigates to later load too; only the first load decides.
    if (m_state != State::Working)
        return;
    if (!ok)
        return showCard(NSLocalizedString(QStringLiteral("The preview page could not be shown.")));
    m_state = State::WebPage;
    emit previewFinished();
}

bool PreviewView::navigationRequested(const QUrl& url, PreviewNavigationCause cause)
{
    switch (previewLinkAction(url, m_pageFolder, cause)) {
    case PreviewLinkAction::Navigate:
        return true;
    case PreviewLinkAction::URLCommand:
        later([this, url] { emit urlCommandRequested(url); });
        return false;
    case PreviewLinkAction::OpenExternally:
        later([url] { NSWorkspace::sharedWorkspace().openURL(url); });
        return false;
    case PreviewLinkAction::Refuse:
        later([this, url] { emit navigationRefused(url); });
        break;
    }
    return false;
}

void PreviewView::showPicture(const QString& picture)
{
    QImageReader reader(picture, "png");
    // Told the format, Qt would still ask every image plugin of the system whether it reads it.
    reader.setAutoDetectImageFormat(false);
    const QImage image = reader.read();
    if (image.isNull())
        return showCard(NSLocalizedString(
            QStringLiteral("The preview generator wrote an unreadable picture.")));
    showContent(new PreviewPictureView(image), State::Picture);
    emit previewFinished();
}

void PreviewView::showCard(const QString& reason)
{
    m_reason = reason;
    showContent(new PreviewCard(
                    PreviewCardFacts::forFile(m_file, m_identifier, m_infoDictionaries), reason),
        State::Card);
    emit previewFinished();
}

void PreviewView::showContent(QWidget* content, State state)
{
    if (m_web && m_web->widget() != content)
        m_web.reset();
    if (m_content != content)
        delete m_content.data();
    m_content = content;
    m_layout->addWidget(content);
    // A widget added to a parent already on screen stays hidden until shown.
    content->show();
    m_state = state;
}

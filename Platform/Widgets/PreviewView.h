// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "PreviewWebContent.h"
#include "QLGeneratorRun.h"
#include "QLPreviewItem.h"

#include <QPointer>
#include <QUrl>
#include <QWidget>
#include <chrono>
#include <functional>
#include <memory>

class QTemporaryDir;
class QVBoxLayout;

// Shows the preview of an item. The preview generator that lists the file's type identifier is
// looked for in the QuickLook folders (the user's first) and run out of process into a fresh
// temporary folder; its page is shown in a web view, a lone picture as it is. When there is no
// generator or it fails in any way (crash, time limit, error status, no usable output), a card
// describes the file and says why. Nothing a generator does can take the window down.
//
// Links in a page: the application's "tolvane" URLs are handed on as urlCommandRequested(),
// web and mail addresses go to the desktop, the page's own files load in place, and everything
// else is refused; only the user's click leads anywhere (PreviewLinkPolicy.h). The page reads
// nothing outside its own folder, and its process may hold pageMemoryLimit() bytes: past them,
// the card says so.
class PreviewView : public QWidget {
    Q_OBJECT
public:
    enum class State {
        Nothing, // no item
        Working, // the generator runs or the page loads
        WebPage,
        Picture,
        Card,
    };

    explicit PreviewView(QWidget* parent = nullptr);
    ~PreviewView() override;

    std::shared_ptr<QLPreviewItem> previewItem() const { return m_item; }
    // Drops whatever the previous item had (its generator run, its temporary folder) and starts
    // on the new one; nothing clears the view.
    void setPreviewItem(std::shared_ptr<QLPreviewItem> item);

    std::chrono::milliseconds timeLimit() const { return m_limits.time; }
    void setTimeLimit(std::chrono::milliseconds limit) { m_limits.time = limit; }
    qint64 memoryLimit() const { return m_limits.memoryBytes; }
    void setMemoryLimit(qint64 bytes) { m_limits.memoryBytes = bytes; }
    // The data the web view's process may hold while it shows the page.
    qint64 pageMemoryLimit() const { return m_pageMemoryLimit; }
    void setPageMemoryLimit(qint64 bytes) { m_pageMemoryLimit = bytes; }

    State state() const { return m_state; }
    // Why the card is shown; empty otherwise.
    QString reason() const { return m_reason; }
    // The folder the generator writes into; empty when there is none.
    QString outputFolder() const;
    // The web content while a page is shown or loading.
    PreviewWebContent* webContent() const { return m_web.get(); }

signals:
    // A link of the application's scheme was clicked in the page.
    void urlCommandRequested(const QUrl& url);
    // The item's preview is shown, in whichever form, or the card is.
    void previewFinished();
    // The page tried to go somewhere on its own, or where no click may lead; it stayed.
    void navigationRefused(const QUrl& url);

private:
    void clear();
    void start();
    void generatorFinished(const QLGeneratorOutcome& outcome);
    void showPage(const QString& page);
    void showPicture(const QString& picture);
    void showCard(const QString& reason);
    void showContent(QWidget* content, State state);
    bool navigationRequested(const QUrl& url, PreviewNavigationCause cause);
    void pageLoaded(bool ok);
    // Runs the function from the event loop, unless the item changed in between: the web engine
    // must not be torn down from inside its own callbacks.
    void later(std::function<void()> function);

    std::shared_ptr<QLPreviewItem> m_item;
    QLGeneratorRun::Limits m_limits;
    qint64 m_pageMemoryLimit = qint64(2) << 30;
    State m_state = State::Nothing;
    QString m_reason;
    QString m_file;
    QString m_identifier;
    QString m_pageFolder;
    quint64 m_generation = 0;
    QList<QVariantMap> m_infoDictionaries;
    QVBoxLayout* m_layout;
    QPointer<QWidget> m_content;
    std::unique_ptr<QTemporaryDir> m_output;
    std::unique_ptr<QLGeneratorRun> m_run;
    std::unique_ptr<PreviewWebContent> m_web;
};

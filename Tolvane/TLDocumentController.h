// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <memory>
#include <vector>

class QWidget;
class TLDocument;

// Opens documents, one window per file (a file already open brings its window forward), keeps
// the list of recent documents and closes documents when their windows close.
class TLDocumentController : public QObject {
    Q_OBJECT
public:
    static constexpr int maximumRecentDocumentCount = 10;

    TLDocumentController();
    ~TLDocumentController() override;

    // Opens the file, or brings forward the window that shows it already. On failure returns
    // nothing and says why in *error.
    TLDocument* openDocumentWithContentsOfURL(const QUrl& url, bool display, QString* error);
    // The same, telling the user with an alert when the file cannot be opened.
    TLDocument* openDocumentOrAlert(const QUrl& url);
    // Asks for files with the open panel, filtered to the design types, and opens them.
    void openDocument(QWidget* parent);

    TLDocument* documentForURL(const QUrl& url) const;
    QList<TLDocument*> documents() const;

    // Most recent first; files that no longer exist are left out.
    QStringList recentDocumentPaths() const;
    void clearRecentDocuments();

    // The type identifier of a file, from its extension.
    static QString typeForContentsOfURL(const QUrl& url);
    // "Design files (*.ai *.ait ...)" and one filter per declared type, for the open panel.
    static QStringList openPanelNameFilters();

signals:
    void documentOpened(TLDocument* document);
    void documentClosed();
    void recentDocumentsChanged();
    // A preview's link asks for a URL command.
    void urlCommandRequested(const QUrl& url);

private:
    void noteNewRecentDocument(const QUrl& url);
    void closeDocument(TLDocument* document);

    std::vector<std::unique_ptr<TLDocument>> m_documents;
};

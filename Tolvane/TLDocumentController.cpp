// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLDocumentController.h"

#include "Bundle.h"
#include "NSAlert.h"
#include "QLGenerators.h"
#include "TLDocument.h"
#include "UniformTypeIdentifiers.h"
#include "UserDefaults.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMainWindow>
#include <QTimer>

namespace {

const QString recentDocumentsKey = QStringLiteral("Recent Documents");

QString canonicalPath(const QUrl& url)
{
    const QFileInfo info(url.toLocalFile());
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

}

TLDocumentController::TLDocumentController() = default;

TLDocumentController::~TLDocumentController() = default;

TLDocument* TLDocumentController::openDocumentWithContentsOfURL(
    const QUrl& url, bool display, QString* error)
{
    if (!url.isLocalFile()) {
        if (error)
            *error = tr("Only files on this computer can be opened.");
        return nullptr;
    }
    if (TLDocument* open = documentForURL(url)) {
        if (display)
            open->showWindows();
        return open;
    }
    if (QFileInfo(url.toLocalFile()).isDir()) {
        if (error)
            *error = tr("It is a folder, not a document.");
        return nullptr;
    }
    auto document = std::make_unique<TLDocument>();
    if (!document->initWithContentsOfURL(url, typeForContentsOfURL(url), error))
        return nullptr;
    TLDocument* opened = document.get();
    connect(opened, &TLDocument::closed, this, [this](TLDocument* closing) {
        // The window's close event is still being delivered: let it finish first.
        QTimer::singleShot(0, this, [this, closing] { closeDocument(closing); });
    });
    connect(
        opened, &TLDocument::urlCommandRequested, this, &TLDocumentController::urlCommandRequested);
    m_documents.push_back(std::move(document));
    noteNewRecentDocument(url);
    if (display)
        opened->showWindows();
    emit documentOpened(opened);
    return opened;
}

TLDocument* TLDocumentController::openDocumentOrAlert(const QUrl& url)
{
    QString error;
    TLDocument* document = openDocumentWithContentsOfURL(url, true, &error);
    if (!document) {
        const QString name = QFileInfo(url.toLocalFile()).fileName();
        auto alert = NSAlert::alertWithMessageText(tr("The document \"%1\" could not be opened.")
                                                       .arg(name.isEmpty() ? url.toString() : name),
            tr("OK"), QString(), QString(), error);
        alert->runModal();
    }
    return document;
}

void TLDocumentController::openDocument(QWidget* parent)
{
    const QStringList paths = QFileDialog::getOpenFileNames(parent, tr("Open"),
        recentDocumentPaths().isEmpty() ? QString()
                                        : QFileInfo(recentDocumentPaths().first()).absolutePath(),
        openPanelNameFilters().join(QStringLiteral(";;")));
    for (const QString& path : paths)
        openDocumentOrAlert(QUrl::fromLocalFile(path));
}

TLDocument* TLDocumentController::documentForURL(const QUrl& url) const
{
    const QString path = canonicalPath(url);
    for (const auto& document : m_documents) {
        if (canonicalPath(document->fileURL()) == path)
            return document.get();
    }
    return nullptr;
}

QList<TLDocument*> TLDocumentController::documents() const
{
    QList<TLDocument*> list;
    for (const auto& document : m_documents)
        list.append(document.get());
    return list;
}

QStringList TLDocumentController::recentDocumentPaths() const
{
    QStringList paths;
    const QVariantList stored
        = UserDefaults::standardUserDefaults().arrayForKey(recentDocumentsKey);
    for (const QVariant& path : stored) {
        if (QFileInfo::exists(path.toString()))
            paths.append(path.toString());
    }
    return paths;
}

void TLDocumentController::clearRecentDocuments()
{
    UserDefaults::standardUserDefaults().removeObjectForKey(recentDocumentsKey);
    emit recentDocumentsChanged();
}

void TLDocumentController::noteNewRecentDocument(const QUrl& url)
{
    QStringList paths = recentDocumentPaths();
    const QString path = canonicalPath(url);
    paths.removeAll(path);
    paths.prepend(path);
    QVariantList stored;
    for (const QString& entry : paths.mid(0, maximumRecentDocumentCount))
        stored.append(entry);
    UserDefaults::standardUserDefaults().setObject(stored, recentDocumentsKey);
    emit recentDocumentsChanged();
}

void TLDocumentController::closeDocument(TLDocument* document)
{
    for (auto it = m_documents.begin(); it != m_documents.end(); ++it) {
        if (it->get() == document) {
            m_documents.erase(it);
            emit documentClosed();
            return;
        }
    }
}

QString TLDocumentController::typeForContentsOfURL(const QUrl& url)
{
    return UTType::identifierForFile(
        url.toLocalFile(), QLGenerators::typeDeclarations(QLGenerators::installedGenerators()));
}

QStringList TLDocumentController::openPanelNameFilters()
{
    QStringList filters;
    QStringList allPatterns;
    const QVariantList types
        = Bundle::mainBundle()
              .objectForInfoDictionaryKey(QStringLiteral("CFBundleDocumentTypes"))
              .toList();
    for (const QVariant& type : types) {
        const QVariantMap declaration = type.toMap();
        QStringList patterns;
        // File names on Linux are case-sensitive; files from other systems often have capitals.
        for (const QVariant& extension :
            declaration.value(QStringLiteral("CFBundleTypeExtensions")).toList())
            patterns << QStringLiteral("*.") + extension.toString()
                     << QStringLiteral("*.") + extension.toString().toUpper();
        if (patterns.isEmpty())
            continue;
        allPatterns << patterns;
        filters << QStringLiteral("%1 (%2)").arg(
            declaration.value(QStringLiteral("CFBundleTypeName")).toString(), patterns.join(u' '));
    }
    if (!allPatterns.isEmpty())
        filters.prepend(tr("Design files (%1)").arg(allPatterns.join(u' ')));
    filters << tr("All files (*)");
    return filters;
}

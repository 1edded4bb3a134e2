// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QUrl>

class PreviewView;
class QMainWindow;

// One opened design file, shown read-only in a window filled by a preview view.
class TLDocument : public QObject {
    Q_OBJECT
public:
    TLDocument();
    ~TLDocument() override;

    // Reads the file; false with a reason when it cannot be read at all.
    bool initWithContentsOfURL(const QUrl& url, const QString& typeName, QString* error);

    // The interface file of the document window.
    static QString windowNibName() { return QStringLiteral("TLDocument"); }
    // Makes the document's window; the window's menu bar is added by whoever shows it.
    void makeWindowControllers();
    void windowControllerDidLoadNib(QMainWindow* window);
    void _updatePreview();

    // Any contents are accepted: the preview view draws the file, the document never parses it.
    bool readFromData(const QByteArray& data, const QString& typeName, QString* error);
    // Documents are never saved: throws NSException "UnimplementedMethod".
    QByteArray dataOfType(const QString& typeName, QString* error);
    static bool autosavesInPlace() { return false; }

    QUrl fileURL() const { return m_fileURL; }
    QString fileType() const { return m_fileType; }
    QString displayName() const;
    QMainWindow* window() const;
    PreviewView* qlView() const;
    void showWindows();

signals:
    // The user closed the document's window.
    void closed(TLDocument* document);
    // A link of the preview asks for a URL command.
    void urlCommandRequested(const QUrl& url);

private:
    bool eventFilter(QObject* watched, QEvent* event) override;

    QUrl m_fileURL;
    QString m_fileType;
    QPointer<QMainWindow> m_window;
    QPointer<PreviewView> m_qlView;
};

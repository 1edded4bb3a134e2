// SPDX-License-Identifier: GPL-3.0-or-later
#include "TLDocument.h"

#include "NSException.h"
#include "PreviewView.h"
#include "TLQLPreviewItem.h"
#include "ui_TLDocument.h"

#include <QCloseEvent>
#include <QFile>
#include <QFileInfo>
#include <QMainWindow>

TLDocument::TLDocument() = default;

TLDocument::~TLDocument()
{
    m_qlView = nullptr;
    delete m_window;
}

bool TLDocument::initWithContentsOfURL(const QUrl& url, const QString& typeName, QString* error)
{
    QFile file(url.toLocalFile());
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = file.errorString();
        return false;
    }
    m_fileURL = url;
    m_fileType = typeName;
    // Mapped rather than read: design files can be large and the contents are not used.
    uchar* mapped = file.size() > 0 ? file.map(0, file.size()) : nullptr;
    const QByteArray data = mapped
        ? QByteArray::fromRawData(reinterpret_cast<const char*>(mapped), file.size())
        : QByteArray();
    return readFromData(data, typeName, error);
}

void TLDocument::makeWindowControllers()
{
    if (m_window)
        return;
    auto* window = new QMainWindow;
    Ui::TLDocument interface;
    interface.setupUi(window);
    window->setAttribute(Qt::WA_DeleteOnClose, false);
    window->setWindowTitle(displayName());
    window->setWindowFilePath(m_fileURL.toLocalFile());
    window->installEventFilter(this);
    m_window = window;
    windowControllerDidLoadNib(window);
}

void TLDocument::windowControllerDidLoadNib(QMainWindow* window)
{
    // The preview fills the window with no margin and follows its size.
    auto* view = new PreviewView(window);
    window->setCentralWidget(view);
    connect(view, &PreviewView::urlCommandRequested, this, &TLDocument::urlCommandRequested);
    m_qlView = view;
    _updatePreview();
}

void TLDocument::_updatePreview()
{
    if (m_qlView)
        m_qlView->setPreviewItem(std::make_shared<TLQLPreviewItem>(m_fileURL));
}

bool TLDocument::readFromData(const QByteArray&, const QString&, QString*) { return true; }

QByteArray TLDocument::dataOfType(const QString&, QString*)
{
    throw NSException(QStringLiteral("UnimplementedMethod"),
        QStringLiteral("%1 is unimplemented").arg(QStringLiteral("dataOfType:error:")));
}

QMainWindow* TLDocument::window() const { return m_window; }

PreviewView* TLDocument::qlView() const { return m_qlView; }

QString TLDocument::displayName() const { return QFileInfo(m_fileURL.toLocalFile()).fileName(); }

void TLDocument::showWindows()
{
    makeWindowControllers();
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

bool TLDocument::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Close)
        emit closed(this);
    return QObject::eventFilter(watched, event);
}

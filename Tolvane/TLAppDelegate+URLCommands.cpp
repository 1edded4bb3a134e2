// SPDX-License-Identifier: GPL-3.0-or-later
// The URL commands that the previews' links send to the application.
#include "AppleEventManager.h"
#include "NSException.h"
#include "SystemLog.h"
#include "TLAppDelegate.h"
#include "TLPrefrencesWindowController.h"
#include "Workspace.h"

#include <QDir>
#include <QStringDecoder>

namespace {

// Percent escapes decoded as UTF-8; anything else is kept as it is, "+" included.
QString unescape(const QString& text)
{
    const QByteArray encoded = text.toUtf8();
    QByteArray bytes;
    bytes.reserve(encoded.size());
    for (qsizetype i = 0; i < encoded.size(); ++i) {
        if (encoded[i] != '%') {
            bytes.append(encoded[i]);
            continue;
        }
        bool ok = false;
        const int value = encoded.mid(i + 1, 2).toInt(&ok, 16);
        if (!ok || i + 2 >= encoded.size())
            throw NSException(NSRangeException,
                QStringLiteral("a percent escape that is not two hexadecimal digits"));
        bytes.append(static_cast<char>(value));
        i += 2;
    }
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString decoded = decoder(bytes);
    if (decoder.hasError())
        throw NSException(
            NSRangeException, QStringLiteral("a percent-escaped value that is not UTF-8"));
    return decoded;
}

// The parts of a URL as they are written. The URL class lower-cases host names, but commands
// are told apart by their exact text.
struct CommandURL {
    QString host;
    QString path;
    QUrl url;
};

std::optional<CommandURL> parseCommandURL(const QString& text)
{
    const QUrl url(text, QUrl::StrictMode);
    if (text.isEmpty() || !url.isValid())
        return std::nullopt;
    CommandURL command { {}, url.path(), url };
    const qsizetype authority = text.indexOf(QStringLiteral("://"));
    if (authority >= 0) {
        const qsizetype start = authority + 3;
        qsizetype end = start;
        while (end < text.size() && text[end] != u'/' && text[end] != u'?' && text[end] != u'#')
            ++end;
        command.host = text.mid(start, end - start);
    }
    return command;
}

QUrl fileURL(const QMap<QString, QString>& parameters, const QString& name)
{
    const auto value = parameters.constFind(name);
    if (value == parameters.constEnd())
        throw NSException(NSRangeException, QStringLiteral("no \"%1\" parameter").arg(name));
    return QUrl::fromLocalFile(QDir::current().absoluteFilePath(*value));
}

}

QMap<QString, QString> TLAppDelegate::_queryParametersFromURL(const QUrl& url)
{
    QMap<QString, QString> parameters;
    if (!url.hasQuery())
        return parameters;
    const QStringList components = url.query(QUrl::FullyEncoded).split(u'&');
    for (const QString& component : components) {
        const QStringList pieces = component.split(u'=');
        if (pieces.size() < 2)
            throw NSException(NSRangeException, QStringLiteral("a query component without \"=\""));
        const QString value = unescape(pieces.at(1));
        parameters.insert(unescape(pieces.at(0)), value);
    }
    return parameters;
}

void TLAppDelegate::revealURLsInBrowser(const QList<QUrl>& urls)
{
    NSWorkspace::sharedWorkspace().activateFileViewerSelectingURLs(urls);
}

void TLAppDelegate::handleURLEvent(
    const NSAppleEventDescriptor& event, const NSAppleEventDescriptor&)
{
    const QString text = event.paramDescriptorForKeyword(keyDirectObject).stringValue();
    const auto command = parseCommandURL(text);
    if (!command) {
        NSLog(QStringLiteral("ERROR -- the URL command %1 is malformed and was ignored").arg(text));
        return;
    }
    try {
        if (command->host == u"reveal") {
            if (command->path == u"/image") {
                revealURLsInBrowser({ fileURL(_queryParametersFromURL(command->url), "path") });
            } else if (command->path == u"/font") {
                const auto parameters = _queryParametersFromURL(command->url);
                QList<QUrl> urls;
                urls.reserve(parameters.size());
                urls.append(fileURL(parameters, QStringLiteral("path")));
                // path1, path2, ... up to the first missing index.
                for (qint64 index = 1;; ++index) {
                    const QString name = QStringLiteral("path%1").arg(index);
                    if (!parameters.contains(name))
                        break;
                    urls.append(fileURL(parameters, name));
                }
                revealURLsInBrowser(urls);
            } else {
                throw NSException(NSInvalidArgumentException, QStringLiteral("no such command"));
            }
        } else if (command->host == u"settings") {
            emit activateRequested();
            showPreferences();
            if (command->path == u"/quicklook")
                _prefController->setMode(2);
            else if (command->path == u"/settings")
                _prefController->setMode(1);
            else if (command->path == u"/about")
                _prefController->setMode(0);
        } else {
            throw NSException(NSInvalidArgumentException, QStringLiteral("no such command"));
        }
    } catch (const NSException& error) {
        NSLog(QStringLiteral("ERROR -- the URL command %1 was not carried out: %2")
                  .arg(text, error.reason()));
    }
}

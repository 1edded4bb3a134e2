// SPDX-License-Identifier: GPL-3.0-or-later
#include "DefaultsTool.h"

#include "NSException.h"
#include "PreferencesFile.h"
#include "PropertyList.h"
#include "UserDefaults.h"
#include "VistrelUtilities.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <functional>
#include <optional>
#include <variant>

namespace DefaultsTool {

namespace {

    enum ExitStatus { Success = 0, NoSuchKey = 1, UsageError = 2, FileError = 3 };

    const char* usage = "usage: tolvane-defaults read DOMAIN [KEY] | read-merged | "
                        "write DOMAIN KEY -bool|-int|-float|-string VALUE | delete DOMAIN [KEY] | "
                        "path DOMAIN";

    // Text as the terminal should see it: control characters (which could move the cursor or
    // change its colours) as escapes, backslashes doubled, and quote marks escaped when quoted.
    QString escaped(const QString& text, bool quoted)
    {
        QString result;
        result.reserve(text.size());
        for (const QChar c : text) {
            if (c == u'\\' || (quoted && c == u'"'))
                result += QLatin1Char('\\') + c;
            else if (c == u'\n')
                result += QStringLiteral("\\n");
            else if (c == u'\t')
                result += QStringLiteral("\\t");
            else if (c.category() == QChar::Other_Control)
                result += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                result += c;
        }
        return result;
    }

    QString quoted(const QString& text)
    {
        return QLatin1Char('"') + escaped(text, true) + QLatin1Char('"');
    }

    QString formatReal(double value)
    {
        QString text = QString::number(value, 'g', 17);
        // Shortest text that reads back as the same number.
        for (int precision = 1; precision <= 17; ++precision) {
            const QString candidate = QString::number(value, 'g', precision);
            if (candidate.toDouble() == value) {
                text = candidate;
                break;
            }
        }
        if (!text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e'))
            && !text.contains(QLatin1String("inf")) && !text.contains(QLatin1String("nan")))
            text += QStringLiteral(".0");
        return text;
    }

    void printDictionary(const QVariantMap& dictionary, QTextStream& out)
    {
        // QVariantMap is ordered by key.
        for (auto it = dictionary.begin(); it != dictionary.end(); ++it)
            out << escaped(it.key(), false) << " = " << formatValue(it.value()) << '\n';
    }

    bool isDomainName(const QString& domain)
    {
        static const QRegularExpression pattern(QStringLiteral("^[A-Za-z0-9][A-Za-z0-9._-]*$"));
        return pattern.match(domain).hasMatch();
    }

    std::optional<QVariant> parseValue(const QString& kind, const QString& text)
    {
        bool ok = false;
        if (kind == QLatin1String("-string"))
            return QVariant(text);
        if (kind == QLatin1String("-int")) {
            const qint64 value = text.trimmed().toLongLong(&ok);
            return ok ? std::optional<QVariant>(QVariant(value)) : std::nullopt;
        }
        if (kind == QLatin1String("-float")) {
            const double value = text.trimmed().toDouble(&ok);
            return ok ? std::optional<QVariant>(QVariant(value)) : std::nullopt;
        }
        if (kind == QLatin1String("-bool")) {
            const QString word = text.trimmed().toLower();
            if (word == QLatin1String("true") || word == QLatin1String("yes")
                || word == QLatin1String("1"))
                return QVariant(true);
            if (word == QLatin1String("false") || word == QLatin1String("no")
                || word == QLatin1String("0"))
                return QVariant(false);
        }
        return std::nullopt;
    }

    class Command {
    public:
        Command(const QStringList& arguments, QTextStream& out, QTextStream& err)
            : m_arguments(arguments)
            , m_out(out)
            , m_err(err)
        {
        }

        int run()
        {
            const QString verb = m_arguments.value(0);
            const qsizetype count = m_arguments.size();
            if (verb == QLatin1String("read-merged") && count == 1)
                return readMerged();
            if (count < 2)
                return fail(UsageError, QString::fromLatin1(usage));
            const QString domain = m_arguments.at(1);
            if (!isDomainName(domain))
                return fail(UsageError, QStringLiteral("%1 is not a domain name").arg(domain));
            if (verb == QLatin1String("path") && count == 2) {
                m_out << UserDefaults::pathForDomain(domain) << '\n';
                return Success;
            }
            if (verb == QLatin1String("read") && count <= 3)
                return read(domain, m_arguments.value(2));
            if (verb == QLatin1String("delete") && count <= 3)
                return remove(domain, m_arguments.value(2));
            if (verb == QLatin1String("write") && count == 5)
                return write(domain, m_arguments.at(2), m_arguments.at(3), m_arguments.at(4));
            return fail(UsageError, QString::fromLatin1(usage));
        }

    private:
        int fail(ExitStatus status, const QString& message)
        {
            m_err << "tolvane-defaults: " << message << '\n';
            return status;
        }

        int readMerged()
        {
            try {
                printDictionary(VTUserDefaults(), m_out);
            } catch (const NSException& error) {
                return fail(FileError, error.reason());
            }
            return Success;
        }

        // The domain's dictionary, or an exit status when there is none to read.
        std::variant<QVariantMap, int> load(const QString& domain)
        {
            const QString path = UserDefaults::pathForDomain(domain);
            if (!QFileInfo::exists(path))
                return fail(UsageError, QStringLiteral("domain %1 does not exist").arg(domain));
            const auto dictionary = PropertyList::readDictionary(path);
            if (!dictionary)
                return fail(
                    FileError, QStringLiteral("%1 is not a readable preferences file").arg(path));
            return *dictionary;
        }

        int read(const QString& domain, const QString& key)
        {
            const auto loaded = load(domain);
            if (const int* status = std::get_if<int>(&loaded))
                return *status;
            const QVariantMap& dictionary = std::get<QVariantMap>(loaded);
            if (key.isNull()) {
                printDictionary(dictionary, m_out);
                return Success;
            }
            if (!dictionary.contains(key))
                return fail(NoSuchKey, QStringLiteral("%1 has no key %2").arg(domain, quoted(key)));
            m_out << formatValue(dictionary.value(key)) << '\n';
            return Success;
        }

        int write(
            const QString& domain, const QString& key, const QString& kind, const QString& text)
        {
            const auto value = parseValue(kind, text);
            if (!value) {
                if (!QStringList { "-bool", "-int", "-float", "-string" }.contains(kind))
                    return fail(UsageError, QStringLiteral("unknown kind %1").arg(kind));
                return fail(
                    UsageError, QStringLiteral("%1 is not a value for %2").arg(quoted(text), kind));
            }
            const QString path = UserDefaults::pathForDomain(domain);
            if (QFileInfo::exists(path) && !PropertyList::readDictionary(path))
                return fail(
                    FileError, QStringLiteral("%1 is not a readable preferences file").arg(path));
            return change(path, [&](QVariantMap& dictionary) { dictionary.insert(key, *value); });
        }

        // A read-merge-write under the file's lock; one line when it did not reach the file.
        int change(const QString& path, const std::function<void(QVariantMap&)>& edit)
        {
            QString error;
            const bool written = PreferencesFile::update(
                path,
                [&](const std::optional<QVariantMap>& onDisk) {
                    QVariantMap dictionary = onDisk.value_or(QVariantMap());
                    edit(dictionary);
                    return dictionary;
                },
                &error);
            if (!written)
                return fail(FileError, QStringLiteral("could not write %1: %2").arg(path, error));
            return Success;
        }

        int remove(const QString& domain, const QString& key)
        {
            const auto loaded = load(domain);
            if (const int* status = std::get_if<int>(&loaded))
                return *status;
            const QString path = UserDefaults::pathForDomain(domain);
            if (key.isNull()) {
                if (!QFile::remove(path))
                    return fail(FileError, QStringLiteral("could not delete %1").arg(path));
                return Success;
            }
            if (!std::get<QVariantMap>(loaded).contains(key))
                return fail(NoSuchKey, QStringLiteral("%1 has no key %2").arg(domain, quoted(key)));
            return change(path, [&](QVariantMap& dictionary) { dictionary.remove(key); });
        }

        const QStringList& m_arguments;
        QTextStream& m_out;
        QTextStream& m_err;
    };

}

QString formatValue(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QMetaType::Float:
    case QMetaType::Double:
        return formatReal(value.toDouble());
    case QMetaType::QString:
        return quoted(value.toString());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODate);
    case QMetaType::QByteArray:
        return QLatin1Char('<') + QString::fromLatin1(value.toByteArray().toHex())
            + QLatin1Char('>');
    case QMetaType::QVariantList: {
        QStringList items;
        for (const QVariant& item : value.toList())
            items << formatValue(item);
        return items.isEmpty() ? QStringLiteral("( )")
                               : QStringLiteral("( %1 )").arg(items.join(", "));
    }
    case QMetaType::QVariantMap: {
        QString text = QStringLiteral("{ ");
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            text += quoted(it.key()) + QStringLiteral(" = ") + formatValue(it.value())
                + QStringLiteral("; ");
        return text + QLatin1Char('}');
    }
    default:
        return value.toString();
    }
}

int run(const QStringList& arguments, QTextStream& out, QTextStream& err)
{
    return Command(arguments, out, err).run();
}

}

#include "Commands.h"

#include <QFileInfo>
#include <QImageReader>
#include <QJsonArray>
#include <QJsonDocument>
#include <QStorageInfo>

#include <unistd.h>

namespace ZqtVin {

namespace {

// "--name" or "-x"; "-5" and "-" are operands (a negative number, standard input).
bool looksLikeOption(const QString &arg)
{
    return arg.startsWith(QLatin1String("--")) || (arg.size() > 1 && arg.at(0) == QLatin1Char('-') && arg.at(1).isLetter());
}

// --help or -h anywhere.
bool asksForHelp(const QStringList &args)
{
    return args.contains(QLatin1String("--help")) || args.contains(QLatin1String("-h"));
}

} // namespace

QString escapedForLine(const QString &text)
{
    QString escaped;
    escaped.reserve(text.size());
    for (const QChar c : text) {
        const char16_t code = c.unicode();
        if (code == u'\\')
            escaped += QLatin1String("\\\\");
        else if (code == u'\t')
            escaped += QLatin1String("\\t");
        else if (code == u'\n')
            escaped += QLatin1String("\\n");
        else if (code == u'\r')
            escaped += QLatin1String("\\r");
        else if (code < 0x20 || (code >= 0x7F && code < 0xA0))
            escaped += QStringLiteral("\\x%1").arg(int(code), 2, 16, QLatin1Char('0'));
        else
            escaped += c;
    }
    return escaped;
}

bool refusedAsSvg(const QString &imageFile, Streams io)
{
    const QByteArray format = QImageReader(imageFile).format();
    if (format != "svg" && format != "svgz")
        return false;
    io.err << "zqt-vin: " << imageFile << " is an SVG picture, which is not taken (it can pull in other files)\n";
    return true;
}

QString writeFailure(const QString &path, const QString &writerError)
{
    if (!writerError.isEmpty() && writerError != QLatin1String("Unknown error"))
        return writerError;
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.isDir())
        return QStringLiteral("%1 does not exist").arg(folder.fileName());
    if (::access(QFile::encodeName(folder.filePath()).constData(), W_OK) != 0)
        return QStringLiteral("%1 is read-only").arg(folder.fileName());
    if (QStorageInfo(folder.filePath()).bytesAvailable() == 0)
        return QStringLiteral("No space left on device");
    return QStringLiteral("the file system refused the write");
}

void printJson(const QJsonValue &value, QTextStream &out)
{
    // A document holds only an object or an array: the value is printed as the one item of an array.
    const QByteArray wrapped = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    out << wrapped.mid(1, wrapped.size() - 2) << "\n";
}

int usageError(Streams io, const QString &problem, const char *usage)
{
    io.err << "zqt-vin: " << problem << "\n" << usage;
    return UsageError;
}

std::optional<int> endEarly(const QStringList &args, const QString &problem, Streams io, const char *usage)
{
    if (asksForHelp(args)) {
        io.out << usage;
        return Success;
    }
    if (!problem.isEmpty())
        return usageError(io, problem, usage);
    return std::nullopt;
}

Arguments parseArguments(const QStringList &args, const QStringList &valued, const QStringList &flags)
{
    Arguments parsed;
    for (int i = 0; i < args.size() && parsed.problem.isEmpty(); ++i) {
        const QString &arg = args.at(i);
        if (valued.contains(arg)) {
            if (i + 1 < args.size())
                parsed.values.insert(arg, args.at(++i));
            else
                parsed.problem = arg + QStringLiteral(" needs a value");
        } else if (flags.contains(arg)) {
            parsed.flags.insert(arg);
        } else if (looksLikeOption(arg)) {
            parsed.problem = QStringLiteral("unknown option \"%1\"").arg(arg);
        } else {
            parsed.operands << arg;
        }
    }
    return parsed;
}

} // namespace ZqtVin

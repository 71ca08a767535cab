// zqt-vin settings get|set|remove|clear [--claim ID] [--store FILE] [KEY [VALUE]]
//
//   get [KEY]         prints the value as JSON; without KEY the whole claim (or top level)
//   set KEY VALUE     VALUE is read as JSON (numbers, booleans, arrays and dictionaries keep
//                     their types; JSON null removes the key); anything else is a string
//   remove KEY        removes the key
//   clear             removes the claim's whole entry (needs --claim)
//
// Without --claim the top level of the store is used. --store names the settings file; the
// default is the tool's own standard store. Dates print as ISO 8601 text, data as base64.
// Exit status: 0 done, 1 get found no value (and printed null), 2 usage error, 3 the settings
// file could not be written.
#include "Commands.h"

#include "Utils/ZQTUserDefaults/ZQTUserDefaults.h"
#include "platform/foundation/UserDefaults.h"

#include <QDateTime>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ZqtVin {

namespace {

const char kUsage[] = "usage: zqt-vin settings get|set|remove|clear [--claim ID] [--store FILE] [KEY [VALUE]]\n";

struct Request
{
    QString action;
    QStringList operands; // KEY and VALUE
    QString claimID;      // null: the top level
    QString storePath;    // empty: the default store
};

// Parses the arguments; the problem on a usage error, else empty.
QString parseRequest(const QStringList &args, Request &request)
{
    request.action = args.value(0);
    const Arguments parsed = parseArguments(args.mid(1), {QStringLiteral("--claim"), QStringLiteral("--store")});
    if (!parsed.problem.isEmpty())
        return parsed.problem;
    if (parsed.has("--claim"))
        request.claimID = parsed.value("--claim");
    request.storePath = parsed.value("--store");
    request.operands = parsed.operands;
    const qsizetype count = request.operands.size();
    const QString operands = QStringLiteral("\"%1\" takes %2").arg(request.action);
    if (request.action == QLatin1String("get"))
        return count <= 1 ? QString() : operands.arg(QStringLiteral("at most a KEY"));
    if (request.action == QLatin1String("set"))
        return count == 2 ? QString() : operands.arg(QStringLiteral("a KEY and a VALUE"));
    if (request.action == QLatin1String("remove"))
        return count == 1 ? QString() : operands.arg(QStringLiteral("a KEY"));
    if (request.action == QLatin1String("clear")) {
        if (request.claimID.isNull())
            return QStringLiteral("\"clear\" needs --claim");
        return count == 0 ? QString() : operands.arg(QStringLiteral("no KEY"));
    }
    return request.action.isEmpty() ? QStringLiteral("no action given")
                                    : QStringLiteral("unknown action \"%1\"").arg(request.action);
}

// VALUE as JSON when it is one JSON value, else the text itself. JSON null is nil.
QVariant parseValue(const QString &text)
{
    QJsonParseError error;
    const QJsonArray wrapped = QJsonDocument::fromJson('[' + text.toUtf8() + ']', &error).array();
    if (error.error != QJsonParseError::NoError || wrapped.size() != 1)
        return text;
    const QJsonValue value = wrapped.first();
    return value.isNull() ? QVariant() : value.toVariant();
}

QJsonValue toJson(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::QVariantMap: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it)
            object.insert(it.key(), toJson(it.value()));
        return object;
    }
    case QMetaType::QVariantList: {
        QJsonArray array;
        for (const QVariant &item : value.toList())
            array.append(toJson(item));
        return array;
    }
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    default:
        return QJsonValue::fromVariant(value);
    }
}

int get(const Request &request, QTextStream &out)
{
    QVariant value;
    if (request.operands.isEmpty())
        value = request.claimID.isNull() ? ZQTPlatform::UserDefaults::standardUserDefaults().dictionaryRepresentation()
                                         : ZQTUserDefaults::getDictionaryForClaim(request.claimID);
    else
        value = ZQTUserDefaults::getObjectForKey(request.operands.first(), request.claimID);
    printJson(toJson(value), out);
    return value.isValid() ? Success : Negative;
}

} // namespace

int runSettings(const QStringList &args, Streams io)
{
    Request request;
    if (const std::optional<int> status = endEarly(args, parseRequest(args, request), io, kUsage))
        return *status;
    ZQTPlatform::UserDefaults &store = ZQTPlatform::UserDefaults::standardUserDefaults();
    if (!request.storePath.isEmpty())
        store.setFilePath(QFileInfo(request.storePath).absoluteFilePath());

    if (request.action == QLatin1String("get"))
        return get(request, io.out);
    const QString key = request.operands.value(0);
    if (request.action == QLatin1String("set")) {
        const QVariant value = parseValue(request.operands.at(1));
        const QString refusal = ZQTPlatform::UserDefaults::refusalReason(value, key);
        if (!refusal.isEmpty())
            return usageError(io, QStringLiteral("the value cannot be stored: ") + refusal, kUsage);
        ZQTUserDefaults::setObjectForKeyWithClaimID(value, key, request.claimID);
    } else if (request.action == QLatin1String("remove")) {
        ZQTUserDefaults::removeObjectForKeyWithClaimID(key, request.claimID);
    } else {
        ZQTUserDefaults::clearUserDefaultsForClaimID(request.claimID);
    }
    // The library ignores the flush result; a script needs to know that nothing reached the file.
    if (!store.synchronize()) {
        io.err << "zqt-vin: could not write the settings file " << store.filePath() << "\n";
        return Failure;
    }
    return Success;
}

} // namespace ZqtVin

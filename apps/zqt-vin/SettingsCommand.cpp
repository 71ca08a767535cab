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
#include "platform/UserDefaults.h"

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

// Parses the arguments; false on a usage error.
bool parseRequest(const QStringList &args, Request &request)
{
    request.action = args.value(0);
    for (int i = 1; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if ((arg == QLatin1String("--claim") || arg == QLatin1String("--store")) && i + 1 < args.size())
            (arg == QLatin1String("--claim") ? request.claimID : request.storePath) = args.at(++i);
        else if (arg.startsWith(QLatin1String("--")))
            return false;
        else
            request.operands << arg;
    }
    const qsizetype count = request.operands.size();
    if (request.action == QLatin1String("get"))
        return count <= 1;
    if (request.action == QLatin1String("set"))
        return count == 2;
    if (request.action == QLatin1String("remove"))
        return count == 1;
    if (request.action == QLatin1String("clear"))
        return count == 0 && !request.claimID.isNull();
    return false;
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

void printJson(const QVariant &value, QTextStream &out)
{
    const QByteArray wrapped = QJsonDocument(QJsonArray{toJson(value)}).toJson(QJsonDocument::Compact);
    out << wrapped.mid(1, wrapped.size() - 2) << "\n";
}

int get(const Request &request, QTextStream &out)
{
    QVariant value;
    if (request.operands.isEmpty())
        value = request.claimID.isNull() ? ZQTPlatform::UserDefaults::standardUserDefaults().dictionaryRepresentation()
                                         : ZQTUserDefaults::getDictionaryForClaim(request.claimID);
    else
        value = ZQTUserDefaults::getObjectForKey(request.operands.first(), request.claimID);
    printJson(value, out);
    return value.isValid() ? Success : Negative;
}

} // namespace

int runSettings(const QStringList &args, Streams io)
{
    Request request;
    if (!parseRequest(args, request)) {
        io.err << kUsage;
        return UsageError;
    }
    ZQTPlatform::UserDefaults &store = ZQTPlatform::UserDefaults::standardUserDefaults();
    if (!request.storePath.isEmpty())
        store.setFilePath(QFileInfo(request.storePath).absoluteFilePath());

    if (request.action == QLatin1String("get"))
        return get(request, io.out);
    const QString key = request.operands.value(0);
    if (request.action == QLatin1String("set")) {
        const QVariant value = parseValue(request.operands.at(1));
        const QString refusal = ZQTPlatform::UserDefaults::refusalReason(value, key);
        if (!refusal.isEmpty()) {
            io.err << "zqt-vin: the value cannot be stored: " << refusal << "\n" << kUsage;
            return UsageError;
        }
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

#include "Model/ConfigurationError_p.h"

#include "platform/foundation/Exception.h"
#include "platform/foundation/Log.h"

namespace ConfigurationError {

namespace {

[[noreturn]] void raise(const QString &exceptionName, const QString &reason)
{
    ZQTPlatform::log(QStringLiteral("Configuration error: ") + reason);
    throw ZQTPlatform::Exception(exceptionName, reason);
}

QString withArticle(const QString &kind)
{
    const bool vowel = QStringLiteral("aeiou").contains(kind.at(0));
    return (vowel ? QStringLiteral("an ") : QStringLiteral("a ")) + kind;
}

} // namespace

QString kindOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("nothing");
    case QMetaType::QString:
        return QStringLiteral("string");
    case QMetaType::Bool:
        return QStringLiteral("boolean");
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return QStringLiteral("array");
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return QStringLiteral("dictionary");
    case QMetaType::QDateTime:
        return QStringLiteral("date");
    case QMetaType::QByteArray:
        return QStringLiteral("data");
    default:
        return QStringLiteral("number");
    }
}

void raiseWrongKind(const QString &key, const QString &file, const QVariant &value, const QString &expected)
{
    raise(QStringLiteral("NSInvalidArgumentException"),
          QStringLiteral("key \"%1\" in \"%2\" is %3, expected %4").arg(key, file, withArticle(kindOf(value)), expected));
}

void raiseOutOfRange(const QString &key, const QString &file, const QString &problem)
{
    raise(QStringLiteral("NSRangeException"), QStringLiteral("key \"%1\" in \"%2\": %3").arg(key, file, problem));
}

void raiseOutOfRange(const QString &problem)
{
    raise(QStringLiteral("NSRangeException"), problem);
}

} // namespace ConfigurationError

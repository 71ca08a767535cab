#include "platform/foundation/Description_p.h"

#include <QDateTime>
#include <QLocale>

namespace ZQTPlatform {

namespace {

QString describeNested(const QVariant &value, int depth);

// Inside arrays and dictionaries, strings that are not plain words are quoted.
QString quotedIfNeeded(const QString &text)
{
    bool plain = !text.isEmpty();
    for (const QChar c : text)
        plain = plain && (c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('.') || c == QLatin1Char('$'));
    if (plain)
        return text;
    QString escaped = text;
    escaped.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString indent(int depth)
{
    return QString(depth * 4, QLatin1Char(' '));
}

QString describeList(const QVariantList &list, int depth)
{
    QStringList items;
    for (const QVariant &item : list)
        items << indent(depth + 1) + describeNested(item, depth + 1);
    return QLatin1String("(\n") + items.join(QLatin1String(",\n")) + (items.isEmpty() ? "" : "\n")
         + indent(depth) + QLatin1Char(')');
}

QString describeMap(const QVariantMap &map, int depth)
{
    QString text = QStringLiteral("{\n");
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        text += indent(depth + 1) + quotedIfNeeded(it.key()) + QLatin1String(" = ")
              + describeNested(it.value(), depth + 1) + QLatin1String(";\n");
    return text + indent(depth) + QLatin1Char('}');
}

QString describeScalar(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
        return QStringLiteral("(null)");
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("1") : QStringLiteral("0");
    case QMetaType::Float:
    case QMetaType::Double:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QDateTime:
        return value.toDateTime().toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss +0000"));
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return QStringLiteral("{length = %1, bytes = 0x%2}")
            .arg(bytes.size()).arg(QString::fromLatin1(bytes.toHex()));
    }
    default:
        return value.toString();
    }
}

QString describeNested(const QVariant &value, int depth)
{
    switch (value.typeId()) {
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return describeList(value.toList(), depth);
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash:
        return describeMap(value.toMap(), depth);
    case QMetaType::QString:
        return depth > 0 ? quotedIfNeeded(value.toString()) : value.toString();
    default:
        return describeScalar(value);
    }
}

} // namespace

QString describe(const QVariant &value)
{
    return describeNested(value, 0);
}

} // namespace ZQTPlatform

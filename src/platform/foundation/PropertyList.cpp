#include "platform/foundation/PropertyList.h"

#include "platform/foundation/BinaryPlistScreen_p.h"
#include "platform/foundation/RegularFile_p.h"

#include <QDateTime>
#include <QXmlStreamReader>

#include <plist/plist.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <memory>

namespace ZQTPlatform {

namespace {

// Owns a libplist node tree.
struct NodeDeleter
{
    void operator()(void *node) const { plist_free(static_cast<plist_t>(node)); }
};
using Node = std::unique_ptr<void, NodeDeleter>;

// Dates in property lists count seconds from 2001-01-01 00:00:00 UTC.
QDateTime referenceDate()
{
    return QDateTime(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
}

void setError(QString *error, const QString &text)
{
    if (error)
        *error = text;
}

// libplist 2.2 reads a truncated XML document as far as it gets and returns what it found, so the
// text has to be checked for well-formedness first.
bool isWellFormedXml(const QByteArray &data, QString *error)
{
    QXmlStreamReader reader(data);
    while (!reader.atEnd())
        reader.readNext();
    if (!reader.hasError())
        return true;
    setError(error, QStringLiteral("not well-formed XML (line %1, column %2): %3")
                        .arg(reader.lineNumber()).arg(reader.columnNumber()).arg(reader.errorString()));
    return false;
}

// Whether libplist can keep the text whole (it cannot hold U+0000).
bool canBeKept(const QString &text, QString *error)
{
    if (!text.contains(QChar(0)))
        return true;
    setError(error, QStringLiteral("a string or key holds U+0000, which a property list cannot keep"));
    return false;
}

QVariant toVariant(plist_t node, QString *error)
{
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return bool(value);
    }
    case PLIST_UINT: {
        // libplist 2.2 keeps every integer as 64 bits without its signedness; negative numbers
        // come back in two's complement.
        uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return qint64(value);
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return value;
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        uint64_t length = 0;
        const char *text = plist_get_string_ptr(node, &length);
        return QString::fromUtf8(text, qsizetype(length));
    }
    case PLIST_DATA: {
        uint64_t length = 0;
        const char *bytes = plist_get_data_ptr(node, &length);
        return QByteArray(bytes, qsizetype(length));
    }
    case PLIST_DATE: {
        // libplist 2.2 gives the whole seconds cut towards zero and the fraction without its sign;
        // a date beyond 32-bit seconds (or not a number) comes out as the lowest 32-bit number.
        int32_t seconds = 0;
        int32_t microseconds = 0;
        plist_get_date_val(node, &seconds, &microseconds);
        if (seconds == std::numeric_limits<int32_t>::min() || microseconds < 0 || microseconds >= 1000000) {
            setError(error, QStringLiteral("a date lies beyond the range a property list date can hold here"));
            return QVariant();
        }
        const double fraction = (seconds < 0 ? -microseconds : microseconds) / 1000.0;
        return referenceDate().addMSecs(std::llround(seconds * 1000.0 + fraction));
    }
    case PLIST_ARRAY: {
        QVariantList list;
        const uint32_t size = plist_array_get_size(node);
        list.reserve(qsizetype(size));
        for (uint32_t i = 0; i < size; ++i) {
            QVariant item = toVariant(plist_array_get_item(node, i), error);
            if (!item.isValid())
                return QVariant();
            list.append(item);
        }
        return list;
    }
    case PLIST_DICT: {
        QVariantMap map;
        plist_dict_iter iter = nullptr;
        plist_dict_new_iter(node, &iter);
        for (;;) {
            char *key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, iter, &key, &value);
            if (!value) {
                std::free(key);
                break;
            }
            const QString name = QString::fromUtf8(key);
            std::free(key);
            QVariant item = toVariant(value, error);
            if (!item.isValid()) {
                std::free(iter);
                return QVariant();
            }
            map.insert(name, item);
        }
        std::free(iter);
        return map;
    }
    case PLIST_UID:
        setError(error, QStringLiteral("keyed-archive UID values are not supported"));
        return QVariant();
    case PLIST_NONE:
        break;
    }
    setError(error, QStringLiteral("unknown property-list node"));
    return QVariant();
}

Node toNode(const QVariant &value, QString *error)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return Node(plist_new_bool(value.toBool() ? 1 : 0));
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return Node(plist_new_uint(uint64_t(value.toLongLong())));
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        if (value.toULongLong() > quint64(std::numeric_limits<qint64>::max())) {
            setError(error, QStringLiteral("integer %1 is too large for a property list").arg(value.toULongLong()));
            return Node();
        }
        return Node(plist_new_uint(value.toULongLong()));
    case QMetaType::Float:
    case QMetaType::Double:
        return Node(plist_new_real(value.toDouble()));
    case QMetaType::QString: {
        // libplist keeps strings NUL-terminated and would cut the text at U+0000.
        if (!canBeKept(value.toString(), error))
            return Node();
        const QByteArray utf8 = value.toString().toUtf8();
        return Node(plist_new_string(utf8.constData()));
    }
    case QMetaType::QByteArray: {
        const QByteArray bytes = value.toByteArray();
        return Node(plist_new_data(bytes.constData(), uint64_t(bytes.size())));
    }
    case QMetaType::QDateTime: {
        const QDateTime date = value.toDateTime();
        const qint64 msecs = date.isValid() ? referenceDate().msecsTo(date) : 0;
        const qint64 seconds = msecs >= 0 ? msecs / 1000 : -((-msecs + 999) / 1000);
        // The lowest 32-bit second reads back as "out of range", and within the second before
        // the reference date a fraction reads back with the wrong sign (see toVariant).
        if (!date.isValid() || seconds <= std::numeric_limits<int32_t>::min()
            || seconds > std::numeric_limits<int32_t>::max() || (seconds == -1 && msecs != -1000)) {
            setError(error, QStringLiteral("date %1 cannot be stored in a property list")
                                .arg(date.toString(Qt::ISODateWithMs)));
            return Node();
        }
        return Node(plist_new_date(int32_t(seconds), int32_t((msecs - seconds * 1000) * 1000)));
    }
    case QMetaType::QVariantList:
    case QMetaType::QStringList: {
        Node array(plist_new_array());
        for (const QVariant &item : value.toList()) {
            Node child = toNode(item, error);
            if (!child)
                return Node();
            plist_array_append_item(array.get(), child.release());
        }
        return array;
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        Node dict(plist_new_dict());
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            if (!canBeKept(it.key(), error))
                return Node();
            Node child = toNode(it.value(), error);
            if (!child)
                return Node();
            plist_dict_set_item(dict.get(), it.key().toUtf8().constData(), child.release());
        }
        return dict;
    }
    default:
        break;
    }
    setError(error, value.isValid()
                        ? QStringLiteral("a value of type %1 is not a property-list type")
                              .arg(QString::fromLatin1(value.typeName()))
                        : QStringLiteral("an empty value is not a property-list type"));
    return Node();
}

} // namespace

QVariant PropertyList::fromData(const QByteArray &data, QString *error)
{
    if (data.isEmpty()) {
        setError(error, QStringLiteral("empty data"));
        return QVariant();
    }
    if (quint64(data.size()) > std::numeric_limits<uint32_t>::max()) {
        setError(error, QStringLiteral("data too large"));
        return QVariant();
    }
    const auto length = uint32_t(data.size());
    plist_t root = nullptr;
    if (plist_is_binary(data.constData(), length)) {
        // The binary reader checks offsets and the trailer itself and refuses damaged input, but
        // aborts on some well-formed input, which is refused here first.
        const QString hazard = binaryPlistHazard(data);
        if (!hazard.isEmpty()) {
            setError(error, hazard);
            return QVariant();
        }
        plist_from_bin(data.constData(), length, &root);
    } else {
        if (!isWellFormedXml(data, error))
            return QVariant();
        plist_from_xml(data.constData(), length, &root);
    }
    if (!root) {
        setError(error, QStringLiteral("not a property list"));
        return QVariant();
    }
    Node owner(root);
    return toVariant(root, error);
}

QVariant PropertyList::readFile(const QString &path, QString *error)
{
    const RegularFileContent content = readRegularFile(path);
    if (content.status != RegularFileContent::Status::Read) {
        setError(error, content.error);
        return QVariant();
    }
    return fromData(content.data, error);
}

QByteArray PropertyList::toData(const QVariant &value, Format format, QString *error)
{
    const Node root = toNode(value, error);
    if (!root)
        return QByteArray();
    char *bytes = nullptr;
    uint32_t length = 0;
    QByteArray result;
    if (format == Format::Xml) {
        plist_to_xml(root.get(), &bytes, &length);
        result = QByteArray(bytes, qsizetype(length));
        plist_to_xml_free(bytes);
    } else {
        plist_to_bin(root.get(), &bytes, &length);
        result = QByteArray(bytes, qsizetype(length));
        plist_to_bin_free(bytes);
    }
    if (result.isEmpty())
        setError(error, QStringLiteral("libplist could not serialise the value"));
    return result;
}

bool PropertyList::isPropertyListValue(const QVariant &value, QString *why)
{
    return bool(toNode(value, why));
}

bool PropertyList::isPropertyListText(const QString &text, QString *why)
{
    return canBeKept(text, why);
}

} // namespace ZQTPlatform

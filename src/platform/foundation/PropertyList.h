// Property lists (XML and binary) read and written through libplist, as QVariant:
// dictionaries are QVariantMap, arrays QVariantList, strings QString, integers qint64 (any
// integer type up to the qint64 range is written), reals double, booleans bool, dates QDateTime
// (UTC, millisecond precision in binary lists, whole seconds in XML), data QByteArray.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <QVariant>

namespace ZQTPlatform {

class ZQT_EXPORT PropertyList
{
public:
    enum class Format { Xml, Binary };

    // Parses a whole property list. Returns an invalid QVariant and fills *error when the data
    // is not a complete, well-formed property list (a truncated file is refused, not half-read).
    static QVariant fromData(const QByteArray &data, QString *error = nullptr);
    // Reads a file; a missing, unreadable or malformed file, or anything but a regular file of at
    // most 64 MiB, gives an invalid QVariant and *error.
    static QVariant readFile(const QString &path, QString *error = nullptr);
    // Serialises a value; returns an empty array and fills *error when the value (or anything
    // inside it) is not a property-list type.
    static QByteArray toData(const QVariant &value, Format format = Format::Xml, QString *error = nullptr);
    // True when the value and everything inside it can be stored in a property list so that it
    // reads back equal; else *why says what cannot be. Strings and keys holding U+0000 cannot, nor
    // dates outside 1932-12-13T20:45:53Z..2069-01-19T03:14:07Z or within the second before
    // 2001-01-01 with a fraction of a second.
    static bool isPropertyListValue(const QVariant &value, QString *why = nullptr);
    // The same for a string or a dictionary key.
    static bool isPropertyListText(const QString &text, QString *why = nullptr);
};

} // namespace ZQTPlatform

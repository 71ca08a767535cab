#include "platform/foundation/BinaryPlistScreen_p.h"

#include <cstdint>
#include <optional>

namespace ZQTPlatform {

namespace {

constexpr qsizetype kHeaderSize = 8;   // "bplist00"
constexpr qsizetype kTrailerSize = 32;

// A big-endian unsigned number of 1 to 8 bytes at the offset; nothing when it runs past the end.
std::optional<quint64> bigEndian(const QByteArray &data, qsizetype offset, qsizetype bytes)
{
    if (bytes < 1 || bytes > 8 || offset < 0 || offset > data.size() - bytes)
        return std::nullopt;
    quint64 value = 0;
    for (qsizetype i = 0; i < bytes; ++i)
        value = (value << 8) | quint8(data.at(offset + i));
    return value;
}

// The object table as the trailer describes it.
struct Table
{
    qsizetype offsetSize = 0;
    quint64 count = 0;
    qsizetype start = 0; // where the object offsets are listed
};

std::optional<Table> tableOf(const QByteArray &data)
{
    if (data.size() < kHeaderSize + kTrailerSize)
        return std::nullopt;
    const qsizetype trailer = data.size() - kTrailerSize;
    Table table;
    table.offsetSize = quint8(data.at(trailer + 6));
    const std::optional<quint64> count = bigEndian(data, trailer + 8, 8);
    const std::optional<quint64> start = bigEndian(data, trailer + 24, 8);
    if (table.offsetSize < 1 || table.offsetSize > 8 || !count || !start || *start < quint64(kHeaderSize)
        || *start > quint64(trailer) || *count > (quint64(trailer) - *start) / quint64(table.offsetSize))
        return std::nullopt;
    table.count = *count;
    table.start = qsizetype(*start);
    return table;
}

// Where a string object's characters start and how many bytes they take; the marker's low nibble
// is the length, or 0xF followed by an integer object holding it.
std::optional<std::pair<qsizetype, quint64>> stringExtent(const QByteArray &data, qsizetype at, qsizetype unit)
{
    const quint8 marker = quint8(data.at(at));
    quint64 length = marker & 0x0F;
    qsizetype content = at + 1;
    if (length == 0x0F) {
        if (content >= data.size() || (quint8(data.at(content)) & 0xF0) != 0x10)
            return std::nullopt;
        const qsizetype bytes = qsizetype(1) << (quint8(data.at(content)) & 0x0F);
        const std::optional<quint64> extended = bigEndian(data, content + 1, bytes);
        if (!extended)
            return std::nullopt;
        length = *extended;
        content += 1 + bytes;
    }
    if (length > quint64(data.size() - content) / quint64(unit))
        return std::nullopt;
    return std::make_pair(content, length * quint64(unit));
}

bool holdsNul(const QByteArray &data, qsizetype content, qsizetype bytes, qsizetype unit)
{
    for (qsizetype i = content; i + unit <= content + bytes; i += unit) {
        bool zero = true;
        for (qsizetype j = 0; j < unit; ++j)
            zero = zero && data.at(i + j) == 0;
        if (zero)
            return true;
    }
    return false;
}

} // namespace

QString binaryPlistHazard(const QByteArray &data)
{
    const std::optional<Table> table = tableOf(data);
    if (!table)
        return QStringLiteral("damaged binary property list trailer");
    for (quint64 i = 0; i < table->count; ++i) {
        const quint64 offset = *bigEndian(data, table->start + qsizetype(i) * table->offsetSize, table->offsetSize);
        if (offset < quint64(kHeaderSize) || offset >= quint64(table->start))
            return QStringLiteral("object %1 lies outside the object area").arg(i);
        const qsizetype at = qsizetype(offset);
        // ASCII, UTF-16 and UTF-8 strings; dictionary keys are strings too.
        const quint8 kind = quint8(data.at(at)) >> 4;
        if (kind != 0x5 && kind != 0x6 && kind != 0x7)
            continue;
        const qsizetype unit = kind == 0x6 ? 2 : 1;
        const auto extent = stringExtent(data, at, unit);
        if (!extent)
            return QStringLiteral("string object %1 runs past the end of the data").arg(i);
        if (holdsNul(data, extent->first, qsizetype(extent->second), unit))
            return QStringLiteral("a string or key holds U+0000");
    }
    return QString();
}

} // namespace ZQTPlatform

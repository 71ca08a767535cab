#include "platform/foundation/StringScanner_p.h"

#include <algorithm>

namespace ZQTPlatform::StringScanner {

namespace {

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

int hexDigitValue(QChar c)
{
    if (isDigit(c))
        return c.unicode() - '0';
    if (c >= QLatin1Char('a') && c <= QLatin1Char('f'))
        return c.unicode() - 'a' + 10;
    if (c >= QLatin1Char('A') && c <= QLatin1Char('F'))
        return c.unicode() - 'A' + 10;
    return -1;
}

// Index of the first character that is not white space (line breaks included).
qsizetype skipWhiteSpace(QStringView text, qsizetype i = 0)
{
    while (i < text.size() && text[i].isSpace())
        ++i;
    return i;
}

qsizetype skipDigits(QStringView text, qsizetype i)
{
    while (i < text.size() && isDigit(text[i]))
        ++i;
    return i;
}

bool isSign(QStringView text, qsizetype i)
{
    return i < text.size() && (text[i] == QLatin1Char('+') || text[i] == QLatin1Char('-'));
}

} // namespace

float floatValue(QStringView text)
{
    const qsizetype start = skipWhiteSpace(text);
    qsizetype i = start;
    if (isSign(text, i))
        ++i;
    const qsizetype integerEnd = skipDigits(text, i);
    qsizetype end = integerEnd;
    bool hasDigits = integerEnd > i;
    if (end < text.size() && text[end] == QLatin1Char('.')) {
        const qsizetype fractionEnd = skipDigits(text, end + 1);
        hasDigits = hasDigits || fractionEnd > end + 1;
        end = fractionEnd;
    }
    if (!hasDigits)
        return 0.0f;
    if (end < text.size() && (text[end] == QLatin1Char('e') || text[end] == QLatin1Char('E'))) {
        qsizetype exponent = end + 1;
        if (isSign(text, exponent))
            ++exponent;
        const qsizetype exponentEnd = skipDigits(text, exponent);
        if (exponentEnd > exponent)
            end = exponentEnd;
    }
    // Only ASCII characters were accepted, so the Latin-1 form is exact.
    return float(text.mid(start, end - start).toLatin1().toDouble());
}

bool boolValue(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == QLatin1Char(' ') || text[i] == QLatin1Char('\t')
                               || text[i].category() == QChar::Separator_Space))
        ++i;
    if (isSign(text, i))
        ++i;
    while (i < text.size() && text[i] == QLatin1Char('0'))
        ++i;
    if (i >= text.size())
        return false;
    const QChar c = text[i];
    return c == QLatin1Char('Y') || c == QLatin1Char('y') || c == QLatin1Char('T') || c == QLatin1Char('t')
        || (c >= QLatin1Char('1') && c <= QLatin1Char('9'));
}

std::optional<bool> boolValue(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::QString:
        return boolValue(QStringView(value.toString()));
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
        return value.toDouble() != 0.0;
    default:
        return std::nullopt;
    }
}

quint32 scanHexInt(QStringView text)
{
    qsizetype i = skipWhiteSpace(text);
    if (i + 1 < text.size() && text[i] == QLatin1Char('0')
        && (text[i + 1] == QLatin1Char('x') || text[i + 1] == QLatin1Char('X')))
        i += 2;
    quint64 value = 0;
    for (; i < text.size(); ++i) {
        const int digit = hexDigitValue(text[i]);
        if (digit < 0)
            break;
        value = std::min<quint64>(value * 16 + quint64(digit), quint64(0xFFFFFFFFu) + 1);
    }
    return value > 0xFFFFFFFFu ? 0xFFFFFFFFu : quint32(value);
}

} // namespace ZQTPlatform::StringScanner

// Reading numbers out of text the way the platform's string and scanner classes do: a leading
// number is taken, white space before it skipped, anything after it ignored.
#pragma once

#include <QString>
#include <QVariant>
#include <QStringView>

#include <optional>

namespace ZQTPlatform::StringScanner {

// The text's float value: white space skipped, then an optional sign, digits, an optional
// fraction and exponent; 0 when the text does not start with a number ("  12.5abc" gives 12.5).
float floatValue(QStringView text);
// The text's boolean value: after blanks, an optional sign and zeros, true when the next
// character is one of Y y T t or a digit 1-9 ("yes", "TRUE", "007"); false otherwise.
bool boolValue(QStringView text);
// The boolean value of a property-list value: a boolean as it is, a number when it is not zero, a
// string by boolValue above ("NO" is false); none for any other kind.
std::optional<bool> boolValue(const QVariant &value);
// A scanned hexadecimal number: white space skipped, an optional "0x"/"0X", then hexadecimal
// digits up to the first other character. 0 when there is no digit; 0xFFFFFFFF when the value
// does not fit in 32 bits.
quint32 scanHexInt(QStringView text);

} // namespace ZQTPlatform::StringScanner

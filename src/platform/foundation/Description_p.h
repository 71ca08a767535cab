// The text the platform's "%@" format gives for a value: "(null)" for no value, strings as
// they are, numbers in decimal, booleans as 1 and 0, dates as "2001-01-01 00:00:00 +0000",
// arrays and dictionaries in the platform's bracketed, indented description.
#pragma once

#include <QString>
#include <QVariant>

namespace ZQTPlatform {

QString describe(const QVariant &value);

} // namespace ZQTPlatform

// Looks over a binary property list before libplist parses it. libplist 2.2 aborts the process
// (a failed assertion) when it hands out a dictionary key holding U+0000, and cuts string values
// at U+0000; such data, and data whose object table cannot be followed safely, is refused here.
#pragma once

#include <QByteArray>
#include <QString>

namespace ZQTPlatform {

// Why the binary property list must not be given to libplist; empty when it may.
QString binaryPlistHazard(const QByteArray &data);

} // namespace ZQTPlatform

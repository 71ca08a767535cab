// A raised platform exception: carries the exception's name (for example
// "NSInvalidArgumentException" or "NotEnoughFreeSpaceException") and its reason.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <exception>
#include <functional>
#include <string>

namespace ZQTPlatform {

class ZQT_EXPORT Exception : public std::exception
{
public:
    Exception(const QString &name, const QString &reason);

    QString name() const { return m_name; }
    QString reason() const { return m_reason; }
    const char *what() const noexcept override { return m_what.c_str(); }

private:
    QString m_name;
    QString m_reason;
    std::string m_what;
};

// Receives an exception that nothing caught, with its name and reason, on the thread that raised
// it, just before the program ends.
using UncaughtExceptionHandler = std::function<void(const QString &name, const QString &reason)>;

// Installs the process's handler (an empty one removes it), as a host does to report a platform
// exception that leaves any thread uncaught, such as "NotEnoughFreeSpaceException" raised on the
// capture thread. After the handler returns, the program ends as it would have without it
// (std::terminate's previous handler, by default an abort); a handler may end it itself first.
ZQT_EXPORT void setUncaughtExceptionHandler(UncaughtExceptionHandler handler);

} // namespace ZQTPlatform

// A raised platform exception: carries the exception's name (for example
// "NSInvalidArgumentException" or "NotEnoughFreeSpaceException") and its reason.
#pragma once

#include "ZQTGlobal.h"

#include <QString>
#include <exception>
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

} // namespace ZQTPlatform

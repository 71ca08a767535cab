// An error as the platform reports one: a domain, a code and a description. A default-made error
// is the null error and stands for "no error" wherever an error argument may be absent.
#pragma once

#include <QString>
#include <QtGlobal>

namespace ZQTPlatform {

class Error
{
public:
    Error() = default; // the null error
    Error(const QString &domain, qint64 code, const QString &localizedDescription)
        : m_domain(domain), m_code(code), m_localizedDescription(localizedDescription)
    {
    }

    bool isNull() const { return m_domain.isEmpty(); }
    QString domain() const { return m_domain; }
    qint64 code() const { return m_code; }
    QString localizedDescription() const { return m_localizedDescription; }

    bool operator==(const Error &other) const
    {
        return m_domain == other.m_domain && m_code == other.m_code
            && m_localizedDescription == other.m_localizedDescription;
    }
    bool operator!=(const Error &other) const { return !(*this == other); }

private:
    QString m_domain;
    qint64 m_code = 0;
    QString m_localizedDescription;
};

} // namespace ZQTPlatform

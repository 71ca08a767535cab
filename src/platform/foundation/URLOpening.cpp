#include "platform/foundation/URLOpening.h"

#include <QDesktopServices>
#include <QUrl>

namespace ZQTPlatform {

namespace {

bool isHexDigit(QChar c)
{
    return (c >= QLatin1Char('0') && c <= QLatin1Char('9')) || (c >= QLatin1Char('a') && c <= QLatin1Char('f'))
        || (c >= QLatin1Char('A') && c <= QLatin1Char('F'));
}

// The characters a URL may hold as they are: unreserved, reserved and "%" (RFC 3986).
bool isURLCharacter(QChar c)
{
    static const QString others = QStringLiteral("-._~:/?#[]@!$&'()*+,;=%");
    return (c.unicode() < 0x80 && c.isLetterOrNumber()) || others.contains(c);
}

} // namespace

QString percentEncodedForURLHost(const QString &text)
{
    // Qt keeps the unreserved characters; the rest of the host-allowed set is listed here.
    return QString::fromLatin1(text.toUtf8().toPercentEncoding("!$&'()*+,;=:[]"));
}

bool canOpenURL(const QString &url)
{
    for (qsizetype i = 0; i < url.size(); ++i) {
        if (!isURLCharacter(url.at(i)))
            return false;
        if (url.at(i) == QLatin1Char('%')
            && (i + 2 >= url.size() || !isHexDigit(url.at(i + 1)) || !isHexDigit(url.at(i + 2))))
            return false;
    }
    const QUrl parsed(url, QUrl::StrictMode);
    return parsed.isValid() && !parsed.scheme().isEmpty();
}

bool openURL(const QString &url)
{
    return canOpenURL(url) && QDesktopServices::openUrl(QUrl(url, QUrl::StrictMode));
}

} // namespace ZQTPlatform

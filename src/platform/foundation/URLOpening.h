// The platform's URL requests to other applications ("tel:", "mailto:"): the percent-encoding
// the component uses for their parts, asking whether a request can be opened, and opening it
// through QDesktopServices (hosts and tests take requests with QDesktopServices::setUrlHandler).
// GUI thread only.
#pragma once

#include "ZQTGlobal.h"

#include <QString>

namespace ZQTPlatform {

// The text as UTF-8 with every byte outside the platform's URL-host-allowed characters
// (letters, digits and "-._~!$&'()*+,;=:[]") written as %XX.
ZQT_EXPORT QString percentEncodedForURLHost(const QString &text);
// Whether the text is a request the platform takes: a scheme followed by URL characters only
// (no blanks, no characters beyond ASCII, every "%" starting a hexadecimal pair).
ZQT_EXPORT bool canOpenURL(const QString &url);
// Hands the request to the URL handler of its scheme, or to the desktop. A text that is not a
// URL (see canOpenURL) opens nothing. False when nothing took the request.
ZQT_EXPORT bool openURL(const QString &url);

} // namespace ZQTPlatform

// A configuration value of the wrong kind is a mistake in a shipped file and ends the program:
// one log line names the key, the file and what was expected, then a platform exception is
// thrown that nothing in the component catches.
#pragma once

#include <QString>
#include <QVariant>

namespace ConfigurationError {

// "string", "number", "boolean", "array", "dictionary", "date", "data" or "nothing".
QString kindOf(const QVariant &value);

// Logs `Configuration error: key "<key>" in "<file>" is a <kind>, expected <expected>` ("an" before
// "array") and
// throws ZQTPlatform::Exception("NSInvalidArgumentException", ...).
[[noreturn]] void raiseWrongKind(const QString &key, const QString &file, const QVariant &value,
                                 const QString &expected);

// Logs `Configuration error: key "<key>" in "<file>": <problem>` and throws
// ZQTPlatform::Exception("NSRangeException", ...).
[[noreturn]] void raiseOutOfRange(const QString &key, const QString &file, const QString &problem);
// Logs `Configuration error: <problem>` and throws ZQTPlatform::Exception("NSRangeException", ...),
// for a bad value that no key or file names.
[[noreturn]] void raiseOutOfRange(const QString &problem);

} // namespace ConfigurationError

// The sub-commands of zqt-vin. Each takes the arguments after its own name and returns the
// process exit status: 0 success, 1 a negative answer, 2 a usage error, 3 a failure.
#pragma once

#include <QHash>
#include <QJsonValue>
#include <QSet>
#include <QStringList>
#include <QTextStream>

#include <optional>

namespace ZqtVin {

enum ExitStatus { Success = 0, Negative = 1, UsageError = 2, Failure = 3 };

struct Streams
{
    QTextStream &out;
    QTextStream &err;
};

// A command's arguments: options with a value, flags, and the operands in order.
struct Arguments
{
    QHash<QString, QString> values; // "--name" -> VALUE (the last one given)
    QSet<QString> flags;
    QStringList operands;
    QString problem; // why the arguments are unusable (an unknown option, a missing value)

    QString value(const char *name) const { return values.value(QLatin1String(name)); }
    bool has(const char *name) const { return values.contains(QLatin1String(name)) || flags.contains(QLatin1String(name)); }
};

// Splits ARGS by the options a command knows: `valued` take the next argument, `flags` stand
// alone. Anything else that starts with "--" or "-<letter>" is an unknown option.
Arguments parseArguments(const QStringList &args, const QStringList &valued, const QStringList &flags = {});

// Prints "zqt-vin: PROBLEM" and the usage on standard error; returns UsageError.
int usageError(Streams io, const QString &problem, const char *usage);
// The status a command ends with before doing anything: Success after printing the usage on
// standard output when the arguments ask for help, a usage error when PROBLEM is not empty,
// else none (go on).
std::optional<int> endEarly(const QStringList &args, const QString &problem, Streams io, const char *usage);

// The text for one field of a line of plain output: control characters and "\" are written as
// C escapes ("\t", "\n", "\x1b", "\\"), so that a value read from a barcode or a file name can
// neither end its field or line nor reach the terminal as a control sequence.
QString escapedForLine(const QString &text);

// Why a file could not be written at the path, in words: the writer's own text unless it has
// none ("Unknown error"), else what the folder tells ("Documents is read-only", "No space left
// on device").
QString writeFailure(const QString &path, const QString &writerError = QString());

// Whether the picture file is an SVG (by its contents, whatever its name), after saying on
// standard error that it is not taken: an SVG picture may draw other files of the machine into
// itself, and a stored or stamped copy would then carry them.
bool refusedAsSvg(const QString &imageFile, Streams io);

// Prints the value as one line of compact JSON; a string, number or null is printed as itself.
void printJson(const QJsonValue &value, QTextStream &out);

int runCheck(const QStringList &args, Streams io);
int runConfig(const QStringList &args, Streams io);
int runSettings(const QStringList &args, Streams io);
int runPhotos(const QStringList &args, Streams io);
int runScan(const QStringList &args, Streams io);
int runStamp(const QStringList &args, Streams io);

} // namespace ZqtVin

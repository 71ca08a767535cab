// The sub-commands of zqt-vin. Each takes the arguments after its own name and returns the
// process exit status: 0 success, 1 a negative answer, 2 a usage error, 3 a failure.
#pragma once

#include <QStringList>
#include <QTextStream>

namespace ZqtVin {

enum ExitStatus { Success = 0, Negative = 1, UsageError = 2, Failure = 3 };

struct Streams
{
    QTextStream &out;
    QTextStream &err;
};

int runCheck(const QStringList &args, Streams io);
int runConfig(const QStringList &args, Streams io);
int runSettings(const QStringList &args, Streams io);
int runPhotos(const QStringList &args, Streams io);
int runScan(const QStringList &args, Streams io);
int runStamp(const QStringList &args, Streams io);

} // namespace ZqtVin

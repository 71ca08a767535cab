// Runs the project's programs (zqt-vin, zqt-vin-capture) as separate processes, the way scripts
// use them. They share the test's home and standard folders.
#pragma once

#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

struct ZqtVinRun
{
    int status = -1; // the exit code; -1 when it crashed or did not finish within a minute
    QString out;
    QString err;
};

ZqtVinRun runZqtVin(const QStringList &args);
// environment: the process's own by default.
ZqtVinRun runZqtVinCapture(const QStringList &args, const QProcessEnvironment &environment = {});

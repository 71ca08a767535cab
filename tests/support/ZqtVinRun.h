// Runs the zqt-vin tool as a separate process, the way scripts use it.
#pragma once

#include <QString>
#include <QStringList>

struct ZqtVinRun
{
    int status = -1; // the exit code; -1 when it crashed or did not finish within a minute
    QString out;
    QString err;
};

ZqtVinRun runZqtVin(const QStringList &args);

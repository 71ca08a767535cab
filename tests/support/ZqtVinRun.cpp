#include "support/ZqtVinRun.h"

#include <QProcess>

ZqtVinRun runZqtVin(const QStringList &args)
{
    QProcess process;
    process.start(QStringLiteral(ZQT_ZQTVIN_BINARY), args);
    ZqtVinRun run;
    if (!process.waitForFinished(60000))
        return run;
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

#include "support/ZqtVinRun.h"

#include <QProcess>

namespace {

ZqtVinRun runProgram(const QString &program, const QStringList &args, const QProcessEnvironment &environment = {})
{
    QProcess process;
    if (!environment.isEmpty())
        process.setProcessEnvironment(environment);
    process.start(program, args);
    ZqtVinRun run;
    if (!process.waitForFinished(60000)) {
        process.kill();
        process.waitForFinished();
        return run;
    }
    run.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

} // namespace

ZqtVinRun runZqtVin(const QStringList &args)
{
    return runProgram(QStringLiteral(ZQT_ZQTVIN_BINARY), args);
}

ZqtVinRun runZqtVinCapture(const QStringList &args, const QProcessEnvironment &environment)
{
    return runProgram(QStringLiteral(ZQT_CAPTURE_BINARY), args, environment);
}

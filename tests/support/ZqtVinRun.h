// Runs the project's programs (zqt-vin, zqt-vin-capture) as separate processes, the way scripts
// use them. They share the test's home and standard folders.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

struct ZqtVinRun
{
    int status = -1; // the exit code; -1 when it crashed or did not finish within a minute
    QString out;
    QString err;
};

// environment: the process's own when empty.
inline ZqtVinRun runProgram(const QString &program, const QStringList &args, const QProcessEnvironment &environment = {})
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

inline ZqtVinRun runZqtVin(const QStringList &args)
{
    return runProgram(QStringLiteral(ZQT_ZQTVIN_BINARY), args);
}

inline ZqtVinRun runZqtVinCapture(const QStringList &args, const QProcessEnvironment &environment = {})
{
    return runProgram(QStringLiteral(ZQT_CAPTURE_BINARY), args, environment);
}

#include "AppEnvironment.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace ZqtApps {

namespace {

const char sampleClipName[] = "vin-label-code39.webm";
QtMessageHandler previousHandler = nullptr;

// Qt's offscreen platform warns on every window that it cannot pass size hints on; that says
// nothing to a user of a headless run.
void quietOffscreenHandler(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (message == QLatin1String("This plugin does not support propagateSizeHints()"))
        return;
    if (previousHandler)
        previousHandler(type, context, message);
}

} // namespace

void prepareEnvironment(bool headless)
{
    if (headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    previousHandler = qInstallMessageHandler(quietOffscreenHandler);
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString runtime = QDir::tempPath() + QStringLiteral("/runtime-") + QString::number(getuid());
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    }
}

QString sampleClipPath()
{
    // Installed: relative to the program, wherever the prefix is. Built: beside the sources.
    const QDir programFolder(QCoreApplication::applicationDirPath());
    for (const QString &folder : {programFolder.filePath(QStringLiteral(ZQT_INSTALLED_SAMPLES_DIR)),
                                  QStringLiteral(ZQT_SOURCE_SAMPLES_DIR)}) {
        const QString path = QDir::cleanPath(QDir(folder).filePath(QString::fromLatin1(sampleClipName)));
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

} // namespace ZqtApps

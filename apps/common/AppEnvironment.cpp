#include "AppEnvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <unistd.h>

namespace ZqtApps {

namespace {
const char sampleClipName[] = "vin-label-code39.webm";
}

void prepareEnvironment(bool headless)
{
    if (headless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
        const QString runtime = QDir::tempPath() + QStringLiteral("/runtime-") + QString::number(getuid());
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    }
}

QString sampleClipPath()
{
    for (const char *folder : {ZQT_SOURCE_SAMPLES_DIR, ZQT_INSTALLED_SAMPLES_DIR}) {
        const QString path = QDir(QString::fromUtf8(folder)).filePath(QString::fromLatin1(sampleClipName));
        if (QFileInfo(path).isFile())
            return path;
    }
    return {};
}

} // namespace ZqtApps

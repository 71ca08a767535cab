#include "support/Artifacts.h"

#include <QCoreApplication>
#include <QDir>

namespace Artifacts {

QString path(const QString &fileName)
{
    // The test executable lives in <build>/tests.
    QDir folder(QCoreApplication::applicationDirPath());
    folder.cdUp();
    folder.mkpath(QStringLiteral("test-artifacts"));
    return folder.filePath(QStringLiteral("test-artifacts/") + fileName);
}

} // namespace Artifacts

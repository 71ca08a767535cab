#include "platform/foundation/Bundle.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QMutex>

namespace ZQTPlatform {

namespace {

QMutex mainBundleMutex;
QString chosenMainBundlePath; // empty: beside the executable

} // namespace

Bundle Bundle::bundleWithPath(const QString &path)
{
    if (path.isEmpty() || !QFileInfo(path).isDir())
        return Bundle();
    return Bundle(path);
}

Bundle Bundle::mainBundle()
{
    QMutexLocker lock(&mainBundleMutex);
    return Bundle(chosenMainBundlePath.isEmpty() ? QCoreApplication::applicationDirPath() : chosenMainBundlePath);
}

void Bundle::setMainBundlePath(const QString &path)
{
    QMutexLocker lock(&mainBundleMutex);
    chosenMainBundlePath = path;
}

Bundle Bundle::frameworkBundle()
{
    return Bundle(QStringLiteral(":/ZQTVINScanComponent"));
}

QString Bundle::pathForResource(const QString &name, const QString &type) const
{
    if (isNull() || name.isEmpty())
        return QString();
    const QString fileName = type.isEmpty() ? name : name + QLatin1Char('.') + type;
    const QString path = m_path + QLatin1Char('/') + fileName;
    return QFileInfo::exists(path) ? path : QString();
}

} // namespace ZQTPlatform

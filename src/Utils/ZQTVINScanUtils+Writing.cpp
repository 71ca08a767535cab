// The claim photo store: saving and writing photos, and the backup exclusion flag.
#include "Utils/ZQTVINScanUtils.h"

#include "Utils/ZQTDeviceUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"
#include "platform/Exception.h"
#include "platform/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QUrl>

#include <sys/xattr.h>

using ZQTPlatform::Image;

namespace {

constexpr float kStoredQuality = 1.0f;
constexpr qint64 kLeftoverAgeSeconds = 60; // far longer than any write takes

// Removes the temporaries that earlier writes of this photo left behind when they were cut
// short. Only old ones: a young one may belong to a write still in progress.
void removeStaleLeftovers(const QString &path)
{
    const QFileInfo target(path);
    const QDateTime cutoff = QDateTime::currentDateTimeUtc().addSecs(-kLeftoverAgeSeconds);
    const QFileInfoList entries = target.dir().entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : entries) {
        const QString name = entry.fileName();
        if (name.size() == target.fileName().size() + 7 && name.startsWith(target.fileName())
            && ZQTVINScanUtilsPrivate::isAtomicWriteLeftover(name) && entry.lastModified() < cutoff)
            QFile::remove(entry.filePath());
    }
}

} // namespace

QString ZQTVINScanUtils::savePhotoWithClaimId(const QString &, const Image &image, const QString &title,
                                              const QString &path)
{
    if (!title.isEmpty() && !ZQTVINScanUtilsPrivate::acceptsPathComponent(title, "photo title"))
        return QString();
    if (!image.isNull() && !title.isEmpty() && !path.isEmpty()) {
        ZQTPlatform::log(QStringLiteral("save photo: %1").arg(path));
        writeFile(image, path);
    }
    // After the write on purpose: a save that fills the device keeps its file and then raises.
    if (!ZQTDeviceUtils::isEnoughFreeSpaceToSaveImage(image))
        throw ZQTPlatform::Exception(QStringLiteral("NotEnoughFreeSpaceException"),
                                     QStringLiteral("There is not enough free space on the device."));
    return path;
}

void ZQTVINScanUtils::writeFile(const Image &image, const QString &toPath)
{
    const QByteArray data = ZQTVINScanUtilsPrivate::jpegData(compressImage(image).bitmap(), kStoredQuality);
    // The temporary is made in the photo's own folder, so the rename is atomic. The result is
    // not checked: a failed write leaves no file and shows as a failed load later.
    removeStaleLeftovers(toPath);
    QSaveFile file(toPath);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(data);
        file.commit();
    }
    if (!addSkipBackupAttributeToItemAtURL(QUrl::fromLocalFile(toPath)))
        ZQTPlatform::log(QStringLiteral("Error excluding FILE from iCloud: %1").arg(toPath));
    ZQTPlatform::log(QStringLiteral("file writing: %1").arg(toPath));
}

bool ZQTVINScanUtils::addSkipBackupAttributeToItemAtURL(const QUrl &url)
{
    if (!url.isLocalFile())
        return false;
    const QByteArray path = QFile::encodeName(url.toLocalFile());
    const char *value = ZQTVINScanUtilsPrivate::backupExclusionValue;
    return setxattr(path.constData(), ZQTVINScanUtilsPrivate::backupExclusionAttribute, value, qstrlen(value), 0) == 0;
}

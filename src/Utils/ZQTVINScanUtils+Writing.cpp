// The claim photo store: saving and writing photos, and the backup exclusion flag.
#include "Utils/ZQTVINScanUtils.h"

#include "Utils/ZQTDeviceUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"
#include "platform/foundation/Exception.h"
#include "platform/foundation/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>
#include <QUrl>

#include <cerrno>
#include <cstdio>

#include <sys/xattr.h>
#include <unistd.h>

using ZQTPlatform::Image;

namespace {

constexpr float kStoredQuality = 1.0f;
constexpr qint64 kLeftoverAgeSeconds = 60; // far longer than any write takes
constexpr int kNameAttempts = 8;

// The store's own folder for a photo being written to a path of the store
// (<documents>/ZQTPhotos/<claim id>/<name>): <documents>/.ZQTPhotos-staging, beside the root
// folder, so on the file system of every claim folder (a rename from it is atomic) and outside
// the root, so no claim id can name it. Everything in it was written by the store. Empty for a
// path outside the store.
QString stagingFolderFor(const QString &toPath)
{
    QDir folder = QFileInfo(toPath).absoluteDir();
    if (!folder.cdUp() || folder.dirName() != QLatin1String(ZQTVINScanUtilsPrivate::photoRootName) || !folder.cdUp())
        return QString();
    const QString staging = folder.filePath(QStringLiteral(".ZQTPhotos-staging"));
    QDir().mkdir(staging);
    return staging;
}

// Removes the temporaries of earlier writes that were cut short. Only old ones: a young one may
// belong to a write still in progress, in this process or another.
void removeStaleTemporaries(const QString &staging)
{
    const QDateTime cutoff = QDateTime::currentDateTimeUtc().addSecs(-kLeftoverAgeSeconds);
    for (const QFileInfo &entry : QDir(staging).entryInfoList(QDir::Files | QDir::Hidden | QDir::System)) {
        if (entry.lastModified() < cutoff)
            QFile::remove(entry.filePath());
    }
}

enum class StagedWrite { Done, Failed, NotStaged };

// Writes the data to a new file of the staging folder, syncs it and renames it over the path.
// NotStaged: the path is outside the store, or on another file system than its staging folder.
StagedWrite writeThroughStaging(const QByteArray &data, const QString &toPath)
{
    const QString staging = stagingFolderFor(toPath);
    if (staging.isEmpty())
        return StagedWrite::NotStaged;
    removeStaleTemporaries(staging);
    QFile file;
    for (int attempt = 0; attempt < kNameAttempts && !file.isOpen(); ++attempt) {
        file.setFileName(staging + QLatin1Char('/')
                         + QString::number(QRandomGenerator::global()->generate64(), 36) + QStringLiteral(".jpg"));
        file.open(QIODevice::WriteOnly | QIODevice::NewOnly);
    }
    if (!file.isOpen())
        return StagedWrite::Failed;
    const bool written = file.write(data) == data.size() && file.flush() && ::fsync(file.handle()) == 0;
    file.close();
    if (written && ::rename(QFile::encodeName(file.fileName()).constData(), QFile::encodeName(toPath).constData()) == 0)
        return StagedWrite::Done;
    const int reason = errno;
    QFile::remove(file.fileName());
    return written && reason == EXDEV ? StagedWrite::NotStaged : StagedWrite::Failed;
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
    if (!ZQTVINScanUtilsPrivate::acceptsStoreEntry(QFileInfo(toPath).absolutePath(), "claim folder")
        || !ZQTVINScanUtilsPrivate::acceptsStoreEntry(toPath, "photo"))
        return;
    const QByteArray data = ZQTVINScanUtilsPrivate::jpegData(compressImage(image).bitmap(), kStoredQuality);
    // The temporary is written in the store's staging folder and renamed into place, so the
    // claim folder only ever holds whole photos and the host's own files. A path outside the
    // store (or a claim folder mounted from another file system) is written beside itself
    // instead. The result is not checked: a failed write leaves no file and shows as a failed
    // load later.
    if (writeThroughStaging(data, toPath) == StagedWrite::NotStaged) {
        QSaveFile file(toPath);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(data);
            file.commit();
        }
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

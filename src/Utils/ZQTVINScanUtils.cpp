// The claim photo store: folders and paths, loading, deleting and listing photos.
#include "Utils/ZQTVINScanUtils.h"

#include "Utils/ZQTVINScanUtils_p.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Exception.h"
#include "platform/foundation/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGeoPositionInfo>
#include <QStandardPaths>

#include <algorithm>

using ZQTPlatform::Image;

namespace {

const QLatin1String kRootName(ZQTVINScanUtilsPrivate::photoRootName);
const QLatin1String kExtension(".jpg");
const QLatin1String kErrorDomain("ZQTPhotoComponents");
constexpr qint64 kEmptyListingCode = 100;

// Makes the folder when nothing exists at the path; its parent must exist. Errors are ignored.
QString createDirectoryAsNeeded(const QString &path)
{
    if (!QFileInfo::exists(path))
        QDir().mkdir(path);
    return path;
}

// The entries of a folder in the file system's order, every one of them: the store writes its
// temporaries elsewhere, so whatever is here is a photo or the host's own file.
QStringList folderEntries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Unsorted);
}

// The error of an empty listing, as the platform describes an error without user information.
ZQTPlatform::Error emptyListingError()
{
    return ZQTPlatform::Error(kErrorDomain, kEmptyListingCode,
                              QStringLiteral("The operation couldn\u2019t be completed. (%1 error %2.)")
                                  .arg(kErrorDomain)
                                  .arg(kEmptyListingCode));
}

// The location's coordinate, or 0, 0 for no location.
void setCoordinate(ZQTVINPhotoCaptureItem &item, const QGeoPositionInfo *location)
{
    item.setLatitude(location ? location->coordinate().latitude() : 0.0);
    item.setLongitude(location ? location->coordinate().longitude() : 0.0);
}

} // namespace

namespace ZQTVINScanUtilsPrivate {

bool isPathComponent(const QString &text)
{
    return !text.isEmpty() && text != QLatin1String(".") && text != QLatin1String("..")
        && !text.contains(QLatin1Char('/')) && !text.contains(QChar(0));
}

bool acceptsPathComponent(const QString &text, const char *kind)
{
    if (isPathComponent(text))
        return true;
    QString shown = text;
    shown.replace(QChar(0), QLatin1String("\\0"));
    ZQTPlatform::log(QStringLiteral("Refusing %1 \"%2\": it cannot be one path component")
                         .arg(QLatin1String(kind), shown));
    return false;
}

bool acceptsStoreEntry(const QString &path, const char *kind)
{
    if (!QFileInfo(path).isSymLink())
        return true;
    ZQTPlatform::log(QStringLiteral("Refusing %1 \"%2\": it is a symbolic link").arg(QLatin1String(kind), path));
    return false;
}

} // namespace ZQTVINScanUtilsPrivate

using ZQTVINScanUtilsPrivate::acceptsPathComponent;
using ZQTVINScanUtilsPrivate::acceptsStoreEntry;

QString ZQTVINScanUtils::createZQTPhotosDirAsNeeded()
{
    // A phone's documents folder always exists; a fresh Linux home may have none yet.
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    QDir().mkpath(documents);
    return createDirectoryAsNeeded(documents + QLatin1Char('/') + kRootName);
}

QString ZQTVINScanUtils::createClaimDirAsNeededWithClaimId(const QString &claimId)
{
    if (!acceptsPathComponent(claimId, "claim id"))
        return QString();
    const QString root = createZQTPhotosDirAsNeeded();
    const QString folder = createDirectoryAsNeeded(root + QLatin1Char('/') + claimId);
    return acceptsStoreEntry(folder, "claim folder") ? folder : QString();
}

QString ZQTVINScanUtils::createPhotoPathWithClaimId(const QString &claimId, const QString &title)
{
    const QString claimDirectory = createClaimDirAsNeededWithClaimId(claimId);
    if (claimDirectory.isNull() || !acceptsPathComponent(title, "photo title"))
        return QString();
    const QString fileName = title.endsWith(kExtension) ? title : title + kExtension;
    const QString path = claimDirectory + QLatin1Char('/') + fileName;
    return acceptsStoreEntry(path, "photo") ? path : QString();
}

QString ZQTVINScanUtils::getPhotoPathWithClaimId(const QString &claimId, const QString &title)
{
    return createPhotoPathWithClaimId(claimId, title);
}

Image ZQTVINScanUtils::loadPhotoWithClaimId(const QString &claimId, const QString &title)
{
    if (title.isEmpty())
        return Image();
    const QString path = createPhotoPathWithClaimId(claimId, title);
    return path.isNull() ? Image() : Image::imageWithContentsOfFile(path);
}

Image ZQTVINScanUtils::photoWithClaimId(const QString &claimId, const QString &title)
{
    if (title.isEmpty())
        return Image();
    const QString path = createPhotoPathWithClaimId(claimId, title);
    if (path.isNull() || !QFileInfo::exists(path))
        return Image();
    return Image::imageWithContentsOfFile(path);
}

void ZQTVINScanUtils::loadPhotoWithClaimId(const QString &claimId, const QString &title,
                                           std::function<void(const Image &)> completion)
{
    ZQTPlatform::Dispatch::globalAsync([claimId, title, completion = std::move(completion)] {
        const Image image = loadPhotoWithClaimId(claimId, title);
        if (completion)
            completion(image);
    });
}

void ZQTVINScanUtils::loadPhotoAndPathWithClaimId(const QString &claimId, const QString &title,
                                                  std::function<void(const Image &, const Image &)> completion)
{
    ZQTPlatform::Dispatch::globalAsync([claimId, title, completion = std::move(completion)] {
        const Image image = loadPhotoWithClaimId(claimId, title);
        const Image photo = photoWithClaimId(claimId, title);
        if (completion)
            completion(image, photo);
    });
}

bool ZQTVINScanUtils::deletePhotoWithClaimId(const QString &claimId, const QString &title)
{
    if (title.isEmpty())
        return false;
    const QString path = createPhotoPathWithClaimId(claimId, title);
    if (path.isNull() || !QFileInfo::exists(path))
        return false;
    return QFile::remove(path);
}

void ZQTVINScanUtils::deletePhotoWithClaimId(const QString &claimId, const QString &title,
                                             std::function<void(bool)> completion)
{
    const bool deleted = deletePhotoWithClaimId(claimId, title);
    if (completion)
        completion(deleted);
}

QStringList ZQTVINScanUtils::allPhotoNamesWithClaimId(const QString &claimId)
{
    const QString claimDirectory = createClaimDirAsNeededWithClaimId(claimId);
    return claimDirectory.isNull() ? QStringList() : folderEntries(claimDirectory);
}

void ZQTVINScanUtils::allPhotoNamesWithClaimId(const QString &claimId,
                                               std::function<void(const QStringList &, const ZQTPlatform::Error &)> completion)
{
    ZQTPlatform::Dispatch::globalAsync([claimId, completion = std::move(completion)] {
        const QStringList names = allPhotoNamesWithClaimId(claimId);
        const ZQTPlatform::Error error = names.isEmpty() ? emptyListingError() : ZQTPlatform::Error();
        if (completion)
            completion(names, error);
    });
}

QList<Image> ZQTVINScanUtils::allPhotosWithClaimId(const QString &claimId)
{
    const QString claimDirectory = createClaimDirAsNeededWithClaimId(claimId);
    if (claimDirectory.isNull())
        return {};
    QList<Image> photos;
    for (const QString &name : folderEntries(claimDirectory)) {
        const Image photo = Image::imageWithContentsOfFile(claimDirectory + QLatin1Char('/') + name);
        // Not skipped: an entry that is not a picture fails the listing, as an absent object
        // cannot be added to the platform's arrays.
        if (photo.isNull())
            throw ZQTPlatform::Exception(QStringLiteral("NSInvalidArgumentException"),
                                         QStringLiteral("*** -[__NSArrayM insertObject:atIndex:]: object cannot be nil"));
        photos.append(photo);
    }
    return photos;
}

QList<ZQTVINPhotoCaptureItem> ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId(const QString &claimId,
                                                                               const QGeoPositionInfo *location,
                                                                               const QStringList &photoTitleArray)
{
    const QString claimDirectory = createClaimDirAsNeededWithClaimId(claimId);
    if (claimDirectory.isNull())
        return {};
    QList<ZQTVINPhotoCaptureItem> items;

    // Saved photos: names holding ".jpg" exactly once, dated now, placed only with a location.
    for (const QString &name : allPhotoNamesWithClaimId(claimId)) {
        const QStringList pieces = name.split(kExtension);
        if (pieces.size() != 2)
            continue;
        const QString &title = pieces.first();
        ZQTVINPhotoCaptureItem item;
        item.setClaimId(claimId);
        item.setPhotoTitle(title);
        item.setPhoto(photoWithClaimId(claimId, title));
        item.setImagePath(createPhotoPathWithClaimId(claimId, title));
        if (location)
            setCoordinate(item, location);
        item.setImageCreatedDate(QDateTime::currentDateTime());
        items.append(item);
    }

    // Placeholders for the titles still missing: always "<title>.jpg", never dated, and placed
    // at 0, 0 when there is no location.
    for (const QString &title : photoTitleArray) {
        const bool present = std::any_of(items.cbegin(), items.cend(),
                                         [&](const ZQTVINPhotoCaptureItem &item) { return item.photoTitle() == title; });
        if (present)
            continue;
        ZQTVINPhotoCaptureItem item;
        item.setClaimId(claimId);
        item.setPhotoTitle(title);
        if (acceptsPathComponent(title, "photo title")) {
            const QString path = claimDirectory + QLatin1Char('/') + title + kExtension;
            item.setImagePath(path);
            item.setPhoto(Image::imageWithContentsOfFile(path));
        }
        setCoordinate(item, location);
        items.append(item);
    }
    return items;
}

// The claim photo store: the JPEG photos of each claim, one folder per claim, under
// "<Documents>/ZQTPhotos/<claim id>/<title>.jpg" (Documents = QStandardPaths::DocumentsLocation).
// Class operations only; nothing is kept in memory, the folder listing is the set of photos.
//
// Photos are scaled to at most 800 pixels on the long side, encoded as JPEG at 0.65, decoded
// again and written as JPEG at 1.0 (the double encoding is intended), atomically (QSaveFile in
// the claim folder), and flagged as excluded from backup: the extended attribute
// "user.xdg.robots.backup" = "false" (the freedesktop.org convention for "do not back up").
//
// "nil" in C++: a null QString, a null Image, a null Error; a nil location is a null pointer.
// A claim id or title that cannot be one path component (empty, ".", "..", containing "/" or
// NUL) is refused with a log line and a nil/false result, so nothing outside the claim's own
// folder is ever read, written or listed. So is a claim folder or photo that is a symbolic link:
// the store follows no link.
//
// Failures are not reported: directory, listing, write and removal errors are ignored and show
// as nil, false or empty results. The one exception is "NotEnoughFreeSpaceException" after a save.
// All operations may be called from any thread; the completion forms say where they run.
#pragma once

#include "ZQTGlobal.h"
#include "Model/ZQTVINPhotoCaptureItem.h"
#include "platform/foundation/Error.h"
#include "platform/ui/Image.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>

class QGeoPositionInfo;
class QUrl;
class ZQTVINPhotoCaptureEntity;

class ZQT_EXPORT ZQTVINScanUtils
{
public:
    ZQTVINScanUtils() = delete;

    // Paths. Each creates the missing folders on its way (never their parents' parents) and
    // returns the path even when the creation failed.
    // "<Documents>/ZQTPhotos". The documents folder itself is made when the home has none.
    static QString createZQTPhotosDirAsNeeded();
    // "<Documents>/ZQTPhotos/<claim id>", the claim id used exactly as given.
    static QString createClaimDirAsNeededWithClaimId(const QString &claimId);
    // The claim folder joined with "<title>.jpg", or with "<title>" when the title already ends
    // in ".jpg": "door" and "door.jpg" name the same file.
    static QString createPhotoPathWithClaimId(const QString &claimId, const QString &title);
    // The same as createPhotoPathWithClaimId.
    static QString getPhotoPathWithClaimId(const QString &claimId, const QString &title);

    // Writes the image to `path` (made by createPhotoPathWithClaimId; the claim id plays no
    // part) when the image is not null and the title and path are not empty, then tests the free
    // space for the image whether or not anything was written, and returns `path`. Throws
    // ZQTPlatform::Exception "NotEnoughFreeSpaceException" after the write when there is no room.
    // A title that cannot be a file name is refused: nothing is written or tested, nil returned.
    // Encodes on the calling thread: keep it off the GUI thread.
    static QString savePhotoWithClaimId(const QString &claimId, const ZQTPlatform::Image &image,
                                        const QString &title, const QString &path);
    // Compresses the image and writes it atomically to the path as JPEG at quality 1.0, then sets
    // the backup exclusion flag. The write's success is not checked; a flag that cannot be set
    // is logged.
    static void writeFile(const ZQTPlatform::Image &image, const QString &toPath);
    // The image as stored: scaled so that its long side is at most 800 points (the short side in
    // proportion), drawn upright at scale 1, encoded as JPEG at 0.65 and decoded again. An image
    // that already fits keeps its size but is still re-encoded. Null for a null image.
    static ZQTPlatform::Image compressImage(const ZQTPlatform::Image &image);

    // Loading. A nil or empty title gives nil. Finding the path creates the claim folder.
    static ZQTPlatform::Image loadPhotoWithClaimId(const QString &claimId, const QString &title);
    // The same, only when a file exists at the path.
    static ZQTPlatform::Image photoWithClaimId(const QString &claimId, const QString &title);
    // loadPhotoWithClaimId on the global thread pool; the completion runs there.
    static void loadPhotoWithClaimId(const QString &claimId, const QString &title,
                                     std::function<void(const ZQTPlatform::Image &image)> completion);
    // On the global thread pool: loadPhotoWithClaimId, then photoWithClaimId; the completion runs
    // there with both results. The second is an image, not a path, whatever the name says.
    static void loadPhotoAndPathWithClaimId(const QString &claimId, const QString &title,
                                            std::function<void(const ZQTPlatform::Image &image,
                                                               const ZQTPlatform::Image &photo)> completion);

    // Deleting. True when a file existed at the path and was removed.
    static bool deletePhotoWithClaimId(const QString &claimId, const QString &title);
    // The same, then the completion with the result, both on the calling thread.
    static void deletePhotoWithClaimId(const QString &claimId, const QString &title,
                                       std::function<void(bool deleted)> completion);

    // Listing. The entry names of the claim folder ("door.jpg"), in the file system's order,
    // unfiltered except for the temporaries of writes in progress or cut short (see
    // ZQTVINScanUtils_p.h). Empty when the folder cannot be listed.
    static QStringList allPhotoNamesWithClaimId(const QString &claimId);
    // The same on the global thread pool; the completion runs there. An empty listing comes
    // with the error of domain "ZQTPhotoComponents", code 100; otherwise the error is nil.
    static void allPhotoNamesWithClaimId(const QString &claimId,
                                         std::function<void(const QStringList &names,
                                                            const ZQTPlatform::Error &error)> completion);
    // The pictures of all listed entries, in listing order. An entry that is not an image makes
    // the whole call fail: it throws ZQTPlatform::Exception "NSInvalidArgumentException".
    static QList<ZQTPlatform::Image> allPhotosWithClaimId(const QString &claimId);
    // The saved photos (entries holding ".jpg" exactly once; made now, with the location's
    // coordinates when one is given), then one placeholder per title of `photoTitleArray` that
    // has no saved photo (path "<claim folder>/<title>.jpg", no date, coordinates of the location
    // or 0 and 0 when there is none). A title that cannot be a file name gets a placeholder
    // without a path or picture.
    static QList<ZQTVINPhotoCaptureItem> allPhotoCaptureItemsWithClaimId(const QString &claimId,
                                                                         const QGeoPositionInfo *location,
                                                                         const QStringList &photoTitleArray);

    // Sets the backup exclusion flag on a local file; false when it cannot be set.
    static bool addSkipBackupAttributeToItemAtURL(const QUrl &url);

    // A byte count as text: "1024.00 bytes", "1.00 KB", "1.46 MB" (bytes, KB, MB, GB, TB; the unit
    // steps while the value is above 1024). Throws ZQTPlatform::Exception "NSRangeException"
    // above 1024 TB, where no unit is left.
    static QString transformedValue(const QVariant &value);
    // {"overlays": data} as compact JSON text, or nil (with a log line) when data holds anything
    // JSON cannot carry (dates, bytes, NaN, infinities, other types). An invalid QVariant is null.
    static QString createJSONStringFromData(const QVariant &data);
    // Camera use and location use are both permitted (both are always asked, camera first).
    static bool hasCameraAndLocationPermissions();

    // The utility class keeps no slot list (the working list is the capture screen's
    // thumbnailItems), so this is always empty.
    static QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> builtinZQTPhotoCaptureEntitis();
    // builtinZQTPhotoCaptureEntitis on the global thread pool; the completion runs there with
    // the list and a nil error.
    static void builtinThumbnailPreviewItemsWithCompletion(
        std::function<void(const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> &items,
                           const ZQTPlatform::Error &error)> completion);
};

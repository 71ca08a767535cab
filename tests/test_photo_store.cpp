// The claim photo store: its folders and file names, the stored size and encoding, the log
// lines, the listings and capture items. (The completion forms and the listing of decoded
// photos have no caller in the component or the apps.)
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include "Utils/ZQTVINScanUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <sys/xattr.h>

using ZQTPlatform::Image;
namespace P = ZQTVINScanUtilsPrivate;

namespace {

// A picture with detail everywhere (so a JPEG round trip changes pixels) and a red top-left
// quarter (so the way it is drawn can be seen).
Image picture(int width, int height, qreal scale = 1.0, Image::Orientation orientation = Image::Orientation::Up)
{
    QImage bitmap(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            bitmap.setPixel(x, y, x < width / 2 && y < height / 2 ? qRgb(230, (x ^ y) & 0x1F, 0) : qRgb(0, (x * 7) & 0xFF, 200));
    return Image(bitmap, scale, orientation);
}

QString claimFolder(const QString &claim)
{
    return QDir::homePath() + "/Documents/ZQTPhotos/" + claim;
}

void saveDoor(const QString &claim)
{
    ZQTVINScanUtils::writeFile(picture(64, 48), ZQTVINScanUtils::createPhotoPathWithClaimId(claim, "door"));
}

} // namespace

TEST(PhotoStore, PathsLiveUnderTheHomesDocumentsNeverDoubleTheExtensionAndWritesAreQualityOneJpegsFlaggedForNoBackup)
{
    EXPECT_EQ(ZQTVINScanUtils::createZQTPhotosDirAsNeeded(), QDir::homePath() + "/Documents/ZQTPhotos");
    const std::pair<const char *, const char *> titleAndFile[] = {
        {"door", "door.jpg"}, {"door.jpg", "door.jpg"}, {"door.JPG", "door.JPG.jpg"}, {"a.jpg.jpg", "a.jpg.jpg"}, {"...", "....jpg"}};
    for (const auto &[title, file] : titleAndFile) {
        EXPECT_EQ(ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", title), claimFolder("CLM-1") + "/" + file);
        EXPECT_EQ(ZQTVINScanUtils::getPhotoPathWithClaimId("CLM-1", title), claimFolder("CLM-1") + "/" + file);
    }
    // Reading from a claim that never existed makes its empty folder and finds nothing.
    EXPECT_TRUE(ZQTVINScanUtils::loadPhotoWithClaimId("CLM-new", "door").isNull());
    EXPECT_TRUE(QDir(claimFolder("CLM-new")).isEmpty());

    LogCapture log;
    EXPECT_TRUE(ZQTVINScanUtils::createPhotoPathWithClaimId("../x", "door").isNull());
    EXPECT_TRUE(ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", QString("a") + QChar(0) + "b").isNull());
    EXPECT_EQ(log.lines(), QStringList({"Refusing claim id \"../x\": it cannot be one path component",
                                        "Refusing photo title \"a\\0b\": it cannot be one path component"}));

    // Writing stores a quality-one JPEG flagged for no backup.
    log.clear();
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "door");
    ZQTVINScanUtils::writeFile(picture(1600, 1200), path);
    EXPECT_EQ(log.lines(), QStringList{"file writing: " + path});

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray jpeg = file.readAll();
    // Quality 1.0: every value of the first quantisation table (after marker, length, id) is 1.
    const qsizetype table = jpeg.indexOf("\xFF\xDB");
    ASSERT_GE(table, 0);
    EXPECT_EQ(jpeg.mid(table + 5, 64), QByteArray(64, '\x01'));

    char flag[16] = {};
    const ssize_t length = getxattr(QFile::encodeName(path).constData(), P::backupExclusionAttribute, flag, sizeof flag);
    EXPECT_EQ(QByteArray(flag, int(std::max<ssize_t>(length, 0))), "false");

    // Nothing can be written into a missing folder, nor flagged.
    log.clear();
    const QString nowhere = claimFolder("CLM-1") + "/missing/door.jpg";
    ZQTVINScanUtils::writeFile(picture(64, 48), nowhere);
    EXPECT_FALSE(QFile::exists(nowhere));
    EXPECT_EQ(log.lines(), QStringList({"Error excluding FILE from iCloud: " + nowhere, "file writing: " + nowhere}));

    // Saving writes only when there is a title and a picture.
    ASSERT_TRUE(QFile::remove(path));
    log.clear();
    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", picture(64, 48), "", path), path);
    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", Image(), "door", path), path);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(log.lines().isEmpty());
    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("ignored", picture(64, 48), "door", path), path);
    EXPECT_EQ(log.lines(), QStringList({"save photo: " + path, "file writing: " + path}));
}

TEST(PhotoStore, StoredSizeFollowsTheLongSideRuleAndIsDrawnUpright)
{
    using O = Image::Orientation;
    struct Case { int width, height; qreal scale; O orientation; QSize stored; };
    const Case cases[] = {
        {1600, 1200, 1, O::Up, {800, 600}},   {600, 1200, 1, O::Up, {400, 800}}, {1000, 1000, 1, O::Up, {800, 800}},
        {640, 480, 1, O::Up, {640, 480}},     {3024, 4032, 1, O::Right, {800, 600}}, {1600, 1200, 2, O::Up, {800, 600}},
        {2400, 1000, 1, O::Left, {334, 800}},
    };
    for (const Case &c : cases) {
        const QImage stored = ZQTVINScanUtils::compressImage(picture(c.width, c.height, c.scale, c.orientation)).bitmap();
        EXPECT_EQ(stored.size(), c.stored) << c.width << "x" << c.height << " at " << c.scale;
        // The red quarter is at the top left, or where the orientation shows it.
        const QPoint red = c.orientation == O::Right ? QPoint(stored.width() - 5, 5)
                         : c.orientation == O::Left  ? QPoint(5, stored.height() - 5) : QPoint(5, 5);
        EXPECT_GT(qRed(stored.pixel(red)), 180) << c.width << "x" << c.height;
        EXPECT_LT(qRed(stored.pixel(stored.width() / 2 + 5, stored.height() / 2 + 5)), 60);
    }
    // An image that fits is still re-encoded.
    const Image small = picture(640, 480);
    EXPECT_NE(ZQTVINScanUtils::compressImage(small).bitmap().convertToFormat(QImage::Format_RGB32), small.bitmap());
}

TEST(PhotoStore, ListingsAndCaptureItemsTreatNamesAsTheyStand)
{
    const QString folder = claimFolder("CLM-1");
    saveDoor("CLM-1");
    QFile::copy(folder + "/door.jpg", folder + "/a.jpg.jpg");
    // The host's own files beside a photo, named like it plus a suffix and however old, are
    // listed as they stand and survive later saves of that photo; a save leaves nothing else.
    const QStringList hostFiles{"door.jpg.sha256", "door.jpg.backup", "door.jpg.Xy12Zq"};
    for (const QString &name : hostFiles) {
        ASSERT_TRUE(QFile::copy(folder + "/door.jpg", folder + "/" + name));
        QFile file(folder + "/" + name);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite)
                    && file.setFileTime(QDateTime::currentDateTime().addSecs(-120), QFileDevice::FileModificationTime));
    }
    saveDoor("CLM-1");
    saveDoor("CLM-1");
    QStringList expected = QStringList({"a.jpg.jpg", "door.jpg"}) + hostFiles;
    expected.sort();
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden, QDir::Name), expected);

    QStringList names = ZQTVINScanUtils::allPhotoNamesWithClaimId("CLM-1");
    names.sort();
    EXPECT_EQ(names, expected);
    for (const QString &name : hostFiles)
        ASSERT_TRUE(QFile::remove(folder + "/" + name));

    // a.jpg.jpg is skipped; "hood" and "vin" are missing, "hood" once.
    const QList<ZQTVINPhotoCaptureItem> items =
        ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId("CLM-1", nullptr, {"hood", "door", "hood", "vin"});
    ASSERT_EQ(items.size(), 3);
    EXPECT_EQ(std::make_tuple(items[0].claimId(), items[0].photoTitle(), items[0].imagePath()),
              std::make_tuple(QString("CLM-1"), QString("door"), folder + "/door.jpg"));
    EXPECT_FALSE(items[0].photo().isNull());
    EXPECT_LE(qAbs(items[0].imageCreatedDate().secsTo(QDateTime::currentDateTime())), 5);
    for (const auto &[item, title] : {std::pair(items[1], QString("hood")), std::pair(items[2], QString("vin"))}) {
        EXPECT_EQ(std::make_pair(item.photoTitle(), item.imagePath()), std::make_pair(title, folder + "/" + title + ".jpg"));
        EXPECT_TRUE(item.photo().isNull());
        EXPECT_FALSE(item.imageCreatedDate().isValid());
        EXPECT_EQ(std::make_pair(item.latitude(), item.longitude()), std::make_pair(0.0, 0.0));
    }

    // Deleting answers at once, on the calling thread.
    QList<bool> answers;
    for (int i = 0; i < 2; ++i)
        ZQTVINScanUtils::deletePhotoWithClaimId("CLM-1", "a.jpg.jpg", [&](bool deleted) { answers << deleted; });
    EXPECT_EQ(answers, QList<bool>({true, false}));
}

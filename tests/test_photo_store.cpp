// The claim photo store: its folders and file names, the stored size and encoding, the log
// lines, the listings and capture items, the completion forms and the small helpers.
#include "support/LogCapture.h"

#include "Utils/ZQTVINScanUtils.h"
#include "Utils/ZQTVINScanUtils_p.h"
#include "platform/Exception.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QGeoPositionInfo>
#include <QImageReader>
#include <QSemaphore>
#include <QThread>

#include <sys/xattr.h>

using ZQTPlatform::Image;
namespace P = ZQTVINScanUtilsPrivate;

namespace {

// A picture with detail everywhere, so a JPEG round trip changes pixels.
Image picture(int width, int height, qreal scale = 1.0, Image::Orientation orientation = Image::Orientation::Up)
{
    QImage bitmap(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            bitmap.setPixel(x, y, qRgb((x * 7) & 0xFF, (y * 5) & 0xFF, ((x ^ y) * 3) & 0xFF));
    return Image(bitmap, scale, orientation);
}

QString claimFolder(const QString &claim)
{
    return QDir::homePath() + "/Documents/ZQTPhotos/" + claim;
}

// The values of a JPEG file's quantisation tables (all 1 at quality 1.0). Each table is a
// segment of its own: marker, length, precision and id, then 64 values.
QList<int> quantisationValues(const QByteArray &jpeg)
{
    QList<int> values;
    for (qsizetype at = jpeg.indexOf("\xFF\xDB"); at >= 0 && at + 69 <= jpeg.size(); at = jpeg.indexOf("\xFF\xDB", at + 2))
        for (int i = 0; i < 64; ++i)
            values << quint8(jpeg[at + 5 + i]);
    return values;
}

// Runs an operation that answers on the thread pool; returns once the answer came.
template <typename Start>
void waitForCompletion(Start start)
{
    QSemaphore done;
    start([&done] { done.release(); });
    ASSERT_TRUE(done.tryAcquire(1, 10000));
}

} // namespace

TEST(PhotoStore, PathsLiveUnderTheHomesDocumentsAndNeverDoubleTheExtension)
{
    EXPECT_EQ(ZQTVINScanUtils::createZQTPhotosDirAsNeeded(), QDir::homePath() + "/Documents/ZQTPhotos");
    struct Case { const char *title; const char *file; };
    const Case cases[] = {{"door", "door.jpg"},   {"door.jpg", "door.jpg"},   {"door.JPG", "door.JPG.jpg"},
                          {"a.jpg.jpg", "a.jpg.jpg"}, {"VIN photo", "VIN photo.jpg"}, {".jpg", ".jpg"}};
    for (const Case &c : cases) {
        EXPECT_EQ(ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", c.title), claimFolder("CLM-1") + "/" + c.file);
        EXPECT_EQ(ZQTVINScanUtils::getPhotoPathWithClaimId("CLM-1", c.title), claimFolder("CLM-1") + "/" + c.file);
    }
    // Reading from a claim that never existed makes its empty folder and finds nothing.
    EXPECT_TRUE(ZQTVINScanUtils::loadPhotoWithClaimId("CLM-new", "door").isNull());
    EXPECT_TRUE(QDir(claimFolder("CLM-new")).isEmpty());
}

TEST(PhotoStore, ComponentRuleRefusesWhatCannotBeOneFileName)
{
    const QString refused[] = {"", ".", "..", "../x", "a/b", "/", QString("a") + QChar(0) + "b"};
    for (const QString &text : refused)
        EXPECT_FALSE(P::isPathComponent(text)) << text.toStdString();
    for (const char *text : {"...", ".hidden", "a b", "x..", "CLM:7"})
        EXPECT_TRUE(P::isPathComponent(text)) << text;

    LogCapture log;
    EXPECT_TRUE(ZQTVINScanUtils::createPhotoPathWithClaimId("../x", "door").isNull());
    EXPECT_TRUE(ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "a/b").isNull());
    EXPECT_EQ(log.lines(), QStringList({"Refusing claim id \"../x\": it cannot be one path component",
                                        "Refusing photo title \"a/b\": it cannot be one path component"}));
}

TEST(PhotoStore, StoredSizeFollowsTheLongSideRuleAndDrawsUpright)
{
    using O = Image::Orientation;
    struct Case { int width, height; qreal scale; O orientation; QSize stored; };
    const Case cases[] = {
        {1600, 1200, 1, O::Up, {800, 600}},   {600, 1200, 1, O::Up, {400, 800}}, {1000, 1000, 1, O::Up, {800, 800}},
        {640, 480, 1, O::Up, {640, 480}},     {4032, 3024, 1, O::Up, {800, 600}}, {3024, 4032, 1, O::Right, {800, 600}},
        {1600, 1200, 2, O::Up, {800, 600}},   {2400, 1000, 1, O::Left, {334, 800}},
    };
    for (const Case &c : cases) {
        const Image stored = ZQTVINScanUtils::compressImage(picture(c.width, c.height, c.scale, c.orientation));
        EXPECT_EQ(stored.bitmap().size(), c.stored) << c.width << "x" << c.height << " at " << c.scale;
        EXPECT_EQ(stored.imageOrientation(), O::Up);
        EXPECT_EQ(stored.scale(), 1.0);
    }
    // An image that fits is still re-encoded.
    const Image small = picture(640, 480);
    EXPECT_NE(ZQTVINScanUtils::compressImage(small).bitmap().convertToFormat(QImage::Format_RGB32), small.bitmap());
}

TEST(PhotoStore, BoxReductionAveragesEachChannelOfEachBlock)
{
    QImage bitmap(4, 2, QImage::Format_ARGB32_Premultiplied);
    const QRgb left[] = {qRgba(0, 0, 0, 0), qRgba(100, 20, 4, 255), qRgba(10, 200, 40, 255), qRgba(6, 8, 252, 255)};
    for (int i = 0; i < 4; ++i) {
        bitmap.setPixel(i % 2, i / 2, left[i]);
        bitmap.setPixel(2 + i % 2, i / 2, qRgba(255, 255, 255, 255));
    }
    const QImage reduced = P::boxReduced(bitmap, 2);
    ASSERT_EQ(reduced.size(), QSize(2, 1));
    EXPECT_EQ(reduced.pixel(0, 0), qRgba(29, 57, 74, 191));
    EXPECT_EQ(reduced.pixel(1, 0), qRgba(255, 255, 255, 255));

    QImage grey(7, 7, QImage::Format_Grayscale8); // converted; the odd row and column are dropped
    grey.fill(90);
    const QImage greyReduced = P::boxReduced(grey, 3);
    EXPECT_EQ(greyReduced.size(), QSize(2, 2));
    EXPECT_EQ(greyReduced.pixel(1, 1), qRgb(90, 90, 90));

    EXPECT_EQ(P::boxReductionFactor({4032, 3024}, {800, 600}), 5);
    EXPECT_EQ(P::boxReductionFactor({1000, 1000}, {800, 800}), 1);
    EXPECT_EQ(P::boxReductionFactor({20000, 20000}, {100, 100}), 16);
}

TEST(PhotoStore, WriteStoresAQualityOneJpegFlaggedForNoBackupAndLogs)
{
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "door");
    LogCapture log;
    ZQTVINScanUtils::writeFile(picture(1600, 1200), path);
    EXPECT_EQ(log.lines(), QStringList{"file writing: " + path});

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray jpeg = file.readAll();
    EXPECT_TRUE(jpeg.startsWith("\xFF\xD8") && jpeg.endsWith("\xFF\xD9"));
    EXPECT_EQ(QImage::fromData(jpeg).size(), QSize(800, 600));
    const QList<int> quantisation = quantisationValues(jpeg);
    ASSERT_FALSE(quantisation.isEmpty());
    EXPECT_EQ(quantisation.count(1), quantisation.size()) << "not written at quality 1.0";

    char flag[16] = {};
    const ssize_t length = getxattr(QFile::encodeName(path).constData(), P::backupExclusionAttribute, flag, sizeof flag);
    EXPECT_EQ(QByteArray(flag, int(std::max<ssize_t>(length, 0))), "false");

    // Nothing can be written into a missing folder, nor flagged.
    log.clear();
    const QString nowhere = claimFolder("CLM-1") + "/missing/door.jpg";
    ZQTVINScanUtils::writeFile(picture(64, 48), nowhere);
    EXPECT_FALSE(QFile::exists(nowhere));
    EXPECT_EQ(log.lines(), QStringList({"Error excluding FILE from iCloud: " + nowhere, "file writing: " + nowhere}));
    EXPECT_FALSE(ZQTVINScanUtils::addSkipBackupAttributeToItemAtURL(QUrl("https://example.com/door.jpg")));
}

TEST(PhotoStore, SaveWritesWhenThereIsATitleAndRaisesAfterTheWriteWhenTheDeviceIsFull)
{
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "door");
    LogCapture log;
    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", picture(64, 48), "", path), path);
    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", Image(), "door", path), path);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_TRUE(log.lines().isEmpty());

    EXPECT_EQ(ZQTVINScanUtils::savePhotoWithClaimId("ignored", picture(64, 48), "door", path), path);
    EXPECT_EQ(log.lines(), QStringList({"save photo: " + path, "file writing: " + path}));

    // A home the free-space query cannot find has no room.
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", home + "/missing");
    QFile::remove(path);
    try {
        ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", picture(64, 48), "door", path);
        ADD_FAILURE() << "no exception";
    } catch (const ZQTPlatform::Exception &e) {
        EXPECT_EQ(e.name(), "NotEnoughFreeSpaceException");
        EXPECT_EQ(e.reason(), "There is not enough free space on the device.");
    }
    qputenv("HOME", home);
    EXPECT_EQ(QImageReader(path).size(), QSize(64, 48)) << "the file is written before the test";
}

TEST(PhotoStore, LoadingAndDeletingGoByTitle)
{
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "hood");
    ZQTVINScanUtils::writeFile(picture(64, 48), path);
    EXPECT_EQ(ZQTVINScanUtils::loadPhotoWithClaimId("CLM-1", "hood.jpg").size(), QSizeF(64, 48));
    EXPECT_FALSE(ZQTVINScanUtils::photoWithClaimId("CLM-1", "hood").isNull());
    EXPECT_TRUE(ZQTVINScanUtils::photoWithClaimId("CLM-1", "").isNull());
    EXPECT_FALSE(ZQTVINScanUtils::deletePhotoWithClaimId("CLM-1", ""));

    QList<bool> answers;
    ZQTVINScanUtils::deletePhotoWithClaimId("CLM-1", "hood", [&](bool deleted) { answers << deleted; });
    ZQTVINScanUtils::deletePhotoWithClaimId("CLM-1", "hood", [&](bool deleted) { answers << deleted; });
    EXPECT_EQ(answers, QList<bool>({true, false})) << "answered before returning";
    EXPECT_FALSE(QFile::exists(path));
}

TEST(PhotoStore, ListingsAndCaptureItemsTreatNamesAsTheyStand)
{
    const QString folder = claimFolder("CLM-1");
    ZQTVINScanUtils::savePhotoWithClaimId("CLM-1", picture(64, 48), "door",
                                          ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-1", "door"));
    QFile::copy(folder + "/door.jpg", folder + "/a.jpg.jpg");
    // Temporaries of cut-short writes: never listed, removed by the next write of their photo
    // once they are old enough not to belong to a write in progress.
    for (const char *leftover : {"/door.jpg.Xy12Zq", "/door.jpg.Old123", "/hood.jpg.Old123"})
        QFile::copy(folder + "/door.jpg", folder + leftover);
    for (const char *leftover : {"/door.jpg.Old123", "/hood.jpg.Old123"}) {
        QFile file(folder + leftover);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite)
                    && file.setFileTime(QDateTime::currentDateTime().addSecs(-120), QFileDevice::FileModificationTime));
    }
    ZQTVINScanUtils::writeFile(picture(64, 48), folder + "/door.jpg");
    EXPECT_EQ(QDir(folder).entryList({"*.??????"}, QDir::Files), QStringList({"door.jpg.Xy12Zq", "hood.jpg.Old123"}));

    QStringList names = ZQTVINScanUtils::allPhotoNamesWithClaimId("CLM-1");
    names.sort();
    EXPECT_EQ(names, QStringList({"a.jpg.jpg", "door.jpg"}));
    EXPECT_EQ(ZQTVINScanUtils::allPhotosWithClaimId("CLM-1").size(), 2);

    const QStringList titles = {"hood", "door", "hood", "vin"};
    const QList<ZQTVINPhotoCaptureItem> unplaced = ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId("CLM-1", nullptr, titles);
    ASSERT_EQ(unplaced.size(), 3);
    EXPECT_EQ(unplaced[0].photoTitle(), "door");
    EXPECT_EQ(unplaced[0].imagePath(), folder + "/door.jpg");
    EXPECT_EQ(unplaced[0].claimId(), "CLM-1");
    EXPECT_FALSE(unplaced[0].photo().isNull());
    EXPECT_LE(qAbs(unplaced[0].imageCreatedDate().secsTo(QDateTime::currentDateTime())), 5);
    for (int i : {1, 2}) {
        EXPECT_EQ(unplaced[i].photoTitle(), titles[i == 1 ? 0 : 3]);
        EXPECT_EQ(unplaced[i].imagePath(), folder + "/" + titles[i == 1 ? 0 : 3] + ".jpg");
        EXPECT_TRUE(unplaced[i].photo().isNull());
        EXPECT_FALSE(unplaced[i].imageCreatedDate().isValid());
        EXPECT_EQ(unplaced[i].latitude(), 0.0);
    }

    const QGeoPositionInfo location(QGeoCoordinate(52.52, 13.405), QDateTime::currentDateTime());
    const QList<ZQTVINPhotoCaptureItem> placed = ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId("CLM-1", &location, {"vin"});
    ASSERT_EQ(placed.size(), 2);
    for (const ZQTVINPhotoCaptureItem &item : placed)
        EXPECT_EQ(std::make_pair(item.latitude(), item.longitude()), std::make_pair(52.52, 13.405)) << item.photoTitle().toStdString();

    QFile text(folder + "/notes.txt"); // not a picture: the photo listing fails on it
    ASSERT_TRUE(text.open(QIODevice::WriteOnly) && text.write("notes") == 5);
    text.close();
    EXPECT_THROW(ZQTVINScanUtils::allPhotosWithClaimId("CLM-1"), ZQTPlatform::Exception);
}

TEST(PhotoStore, CompletionFormsAnswerOnThePool)
{
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("CLM-2", "door");
    ZQTVINScanUtils::writeFile(picture(64, 48), path);
    QThread *const gui = QThread::currentThread();

    QThread *thread = gui;
    QStringList names;
    ZQTPlatform::Error error;
    waitForCompletion([&](auto done) {
        ZQTVINScanUtils::allPhotoNamesWithClaimId("CLM-empty", [&, done](const QStringList &n, const ZQTPlatform::Error &e) {
            names = n, error = e, thread = QThread::currentThread();
            done();
        });
    });
    EXPECT_NE(thread, gui);
    EXPECT_TRUE(names.isEmpty());
    EXPECT_EQ(error.domain(), "ZQTPhotoComponents");
    EXPECT_EQ(error.code(), 100);
    waitForCompletion([&](auto done) {
        ZQTVINScanUtils::allPhotoNamesWithClaimId("CLM-2", [&, done](const QStringList &n, const ZQTPlatform::Error &e) {
            names = n, error = e;
            done();
        });
    });
    EXPECT_EQ(names, QStringList{"door.jpg"});
    EXPECT_TRUE(error.isNull());

    QList<bool> found;
    for (const char *title : {"door", "window"}) {
        waitForCompletion([&](auto done) {
            ZQTVINScanUtils::loadPhotoAndPathWithClaimId("CLM-2", title, [&, done](const Image &image, const Image &photo) {
                found << !image.isNull() << !photo.isNull() << (QThread::currentThread() != gui);
                done();
            });
        });
    }
    EXPECT_EQ(found, QList<bool>({true, true, true, false, false, true}));
}

TEST(PhotoStore, ByteCountsStepUpOnlyAboveTheLimit)
{
    struct Case { QVariant value; const char *text; };
    const Case cases[] = {{0, "0.00 bytes"},           {1024, "1024.00 bytes"},       {1025, "1.00 KB"},
                          {1536000, "1.46 MB"},        {QString("2048"), "2.00 KB"}, {3.5e9, "3.26 GB"},
                          {1125899906842624.0, "1024.00 TB"}};
    for (const Case &c : cases)
        EXPECT_EQ(ZQTVINScanUtils::transformedValue(c.value), c.text) << c.value.toString().toStdString();
    EXPECT_THROW(ZQTVINScanUtils::transformedValue(1125899906842625.0), ZQTPlatform::Exception);
}

TEST(PhotoStore, OverlayJsonWrapsTheValueOrLogsWhyItCannot)
{
    const QVariantList overlays = {QVariantMap{{"title", "VIN"}, {"frames", QStringList{"a", "b"}}}, 2, true, QVariant()};
    EXPECT_EQ(ZQTVINScanUtils::createJSONStringFromData(overlays),
              R"({"overlays":[{"frames":["a","b"],"title":"VIN"},2,true,null]})");
    LogCapture log;
    EXPECT_TRUE(ZQTVINScanUtils::createJSONStringFromData(QVariantList{QDateTime::currentDateTime()}).isNull());
    EXPECT_TRUE(ZQTVINScanUtils::createJSONStringFromData(qQNaN()).isNull());
    EXPECT_EQ(log.lines(), QStringList({"Got an error: Invalid type in JSON write (QDateTime)",
                                        "Got an error: Invalid number value (NaN) in JSON write"}));
}

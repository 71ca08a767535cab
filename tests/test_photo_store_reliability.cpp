// The claim photo store under abuse: a saving process killed at random moments, and claim ids
// and titles that try to leave the claim's folder. Both check what is on disk afterwards.
#include "Utils/ZQTVINScanUtils.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QMap>
#include <QProcess>

#include <chrono>
#include <random>
#include <thread>

namespace {

// Every entry under a folder, hidden ones included, with what would show that it was touched.
QMap<QString, QString> snapshot(const QString &top)
{
    QMap<QString, QString> entries;
    QDirIterator it(top, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QFileInfo info(it.next());
        QString state = info.lastModified().toString(Qt::ISODateWithMs) + ' ' + QString::number(info.size());
        QFile file(info.filePath());
        if (info.isFile() && file.open(QIODevice::ReadOnly))
            state += ' ' + QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5).toHex();
        entries.insert(info.filePath(), state);
    }
    return entries;
}

} // namespace

// A child saving photos in a loop is killed at random moments: no half photo, no listed temporary.
TEST(PhotoStoreReliability, ASaverKilledAtRandomMomentsLeavesOnlyWholePhotos)
{
    constexpr int kKills = 200;
    const QString claim = QStringLiteral("CLM-killed");
    const QString folder = ZQTVINScanUtils::createClaimDirAsNeededWithClaimId(claim);
    const QStringList titles = {"photo0.jpg", "photo1.jpg", "photo2.jpg", "photo3.jpg", "photo4.jpg"};

    const unsigned seed = std::random_device{}();
    SCOPED_TRACE(testing::Message() << "random seed " << seed);
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> delayMicroseconds(0, 20000);

    long saves = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        QProcess saver;
        saver.start(QStringLiteral(ZQT_PHOTO_SAVER_BINARY), {claim});
        ASSERT_TRUE(saver.waitForReadyRead(30000)) << "kill " << kill << ": " << saver.readAllStandardError().toStdString();
        std::this_thread::sleep_for(std::chrono::microseconds(delayMicroseconds(random)));
        saver.kill();
        ASSERT_TRUE(saver.waitForFinished(30000));
        saves += saver.readAllStandardOutput().count('\n');

        for (const QString &name : ZQTVINScanUtils::allPhotoNamesWithClaimId(claim))
            ASSERT_TRUE(titles.contains(name)) << "kill " << kill << ": the listing shows " << name.toStdString();
        for (const QString &name : QDir(folder).entryList({"*.jpg"}, QDir::Files | QDir::Hidden)) {
            QFile file(folder + '/' + name);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray jpeg = file.readAll();
            ASSERT_TRUE(jpeg.startsWith("\xFF\xD8") && jpeg.endsWith("\xFF\xD9")) << "kill " << kill << ": " << name.toStdString();
            ASSERT_EQ(QImage::fromData(jpeg, "JPEG").size(), QSize(96, 72)) << "kill " << kill << ": " << name.toStdString();
        }
    }
    EXPECT_GT(saves, kKills) << "the children hardly saved anything";
}

TEST(PhotoStoreReliability, HostileClaimIdsAndTitlesTouchNothing)
{
    const QString root = ZQTVINScanUtils::createZQTPhotosDirAsNeeded();
    const QString claimFolder = ZQTVINScanUtils::createClaimDirAsNeededWithClaimId("CLM");
    // Targets a hostile name could reach: the photo root, the documents folder, the home.
    for (const QString &path : {root + "/x.jpg", root + "/../x.jpg", root + "/../../x.jpg", root + "/a/b.jpg",
                                claimFolder + "/x.jpg", root + "/victim/door.jpg"})
        writeTestFile(path, "photo");
    const QString home = QDir::homePath();
    const QMap<QString, QString> before = snapshot(home);

    const QStringList hostile = {"", ".", "..", "../x", "../..", "a/b", "/", "/tmp", "x/..", QString("x") + QChar(0) + "y", "../victim"};
    QImage bitmap(16, 16, QImage::Format_RGB32);
    bitmap.fill(Qt::darkGreen);
    for (const QString &bad : hostile) {
        for (const auto &[claim, title] : {std::pair(bad, QStringLiteral("x")), std::pair(QStringLiteral("CLM"), bad),
                                          std::pair(bad, bad)}) {
            SCOPED_TRACE(testing::Message() << "claim \"" << claim.toStdString() << "\" title \"" << title.toStdString() << '"');
            const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId(claim, title);
            EXPECT_TRUE(path.isNull());
            EXPECT_TRUE(ZQTVINScanUtils::savePhotoWithClaimId(claim, ZQTPlatform::Image(bitmap), title, path).isNull());
            EXPECT_TRUE(ZQTVINScanUtils::loadPhotoWithClaimId(claim, title).isNull());
            EXPECT_TRUE(ZQTVINScanUtils::photoWithClaimId(claim, title).isNull());
            EXPECT_FALSE(ZQTVINScanUtils::deletePhotoWithClaimId(claim, title));
            for (const ZQTVINPhotoCaptureItem &item : ZQTVINScanUtils::allPhotoCaptureItemsWithClaimId(claim, nullptr, {title}))
                EXPECT_TRUE(item.photoTitle() != title || (item.imagePath().isNull() && item.photo().isNull()));
        }
        EXPECT_TRUE(ZQTVINScanUtils::createClaimDirAsNeededWithClaimId(bad).isNull());
        EXPECT_TRUE(ZQTVINScanUtils::allPhotoNamesWithClaimId(bad).isEmpty());
        EXPECT_TRUE(ZQTVINScanUtils::allPhotosWithClaimId(bad).isEmpty());
    }
    EXPECT_EQ(snapshot(home), before);
}

// Symbolic links inside the photo store are never followed: a claim folder or a photo that is a
// link is refused with a log line, and what the link points at is neither written nor deleted.
#include "Utils/ZQTVINScanUtils.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDirIterator>

namespace {

struct Placement
{
    const char *name;
    const char *linkPath; // below the store root
    // Puts the link into the claim "LINKED" of the store root, pointing into the outside folder.
    void (*link)(const QString &root, const QString &outside);
};

const Placement kPlacements[] = {
    {"ClaimFolder", "LINKED", [](const QString &root, const QString &outside) { QFile::link(outside, root + "/LINKED"); }},
    {"Photo", "LINKED/door.jpg",
     [](const QString &root, const QString &outside) {
         QDir().mkpath(root + "/LINKED");
         QFile::link(outside + "/keep.jpg", root + "/LINKED/door.jpg");
     }},
};

// Every file below the folder with a digest of its bytes.
QMap<QString, QByteArray> contents(const QString &folder)
{
    QMap<QString, QByteArray> files;
    for (QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories); it.hasNext();) {
        const QString path = it.next();
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        files.insert(path, QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1));
    }
    return files;
}

class PhotoStoreLinks : public ::testing::TestWithParam<Placement> {};

} // namespace

TEST_P(PhotoStoreLinks, AreRefusedAndWhatTheyPointAtIsUntouched)
{
    const QTemporaryDir outside;
    writeTestFile(outside.filePath("keep.jpg"), "the host's own file");
    const QString root = ZQTVINScanUtils::createZQTPhotosDirAsNeeded();
    GetParam().link(root, outside.path());
    const QMap<QString, QByteArray> before = contents(outside.path());
    const ZQTPlatform::Image image(TestData::filled(64, 48, Qt::darkCyan));

    LogCapture log;
    const QString path = ZQTVINScanUtils::createPhotoPathWithClaimId("LINKED", "door");
    EXPECT_TRUE(path.isNull());
    ZQTVINScanUtils::savePhotoWithClaimId("LINKED", image, "door", path);
    ZQTVINScanUtils::writeFile(image, root + "/LINKED/door.jpg");
    ZQTVINScanUtils::writeFile(image, root + "/LINKED/window.jpg");
    EXPECT_FALSE(ZQTVINScanUtils::deletePhotoWithClaimId("LINKED", "keep"));
    EXPECT_FALSE(ZQTVINScanUtils::deletePhotoWithClaimId("LINKED", "door"));

    EXPECT_EQ(contents(outside.path()), before);
    EXPECT_TRUE(QFileInfo(root + '/' + GetParam().linkPath).isSymLink());
    EXPECT_FALSE(log.lines().filter("symbolic link").isEmpty()) << log.lines().join('\n').toStdString();
}

INSTANTIATE_TEST_SUITE_P(Placements, PhotoStoreLinks, ::testing::ValuesIn(kPlacements),
                         [](const ::testing::TestParamInfo<Placement> &info) { return std::string(info.param.name); });

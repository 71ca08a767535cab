// The barcode reader against real barcode photographs and renderings: each image of a suite
// must come back with the exact text of its .txt file, in at least the suite's minimum number of
// images, upright and turned. A reader gets each image as a short stream of frames (one strategy
// cycle), as it would from a camera held still.
#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/MetadataOutput.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QTransform>

using namespace ZQTPlatform;

namespace {

struct Suite { const char *name; int images, required; QList<int> rotations; QStringList types; };

const QList<int> linearTurns{0, 180};
const QList<int> matrixTurns{0, 90, 180, 270};
const QStringList code39{MetadataObject::typeCode39, MetadataObject::typeCode39Mod43};

void PrintTo(const Suite &suite, std::ostream *out)
{
    *out << suite.name;
}

class BarcodeRegression : public ::testing::TestWithParam<Suite> {};

// Whether some frame of one strategy cycle reads exactly the expected text.
bool readsWithinCycle(const BarcodeReader &reader, const QImage &image, const QString &expected)
{
    for (int frame = 0; frame < ReadStrategy::cycleLength(); ++frame) {
        for (const DecodedBarcode &code : reader.read(image, frame)) {
            if (code.text == expected)
                return true;
        }
    }
    return false;
}

TEST_P(BarcodeRegression, ReadsTheSuiteUprightAndTurned)
{
    const Suite &suite = GetParam();
    const QDir folder(TestData::directory() + "/barcodes/" + suite.name);
    ASSERT_TRUE(folder.exists()) << "missing reference images: " << folder.path().toStdString();
    const QStringList images = folder.entryList({"*.png", "*.jpg", "*.gif"}, QDir::Files, QDir::Name);
    ASSERT_EQ(images.size(), suite.images);

    const BarcodeReader reader(suite.types);
    for (const int rotation : suite.rotations) {
        int passed = 0;
        QStringList failed;
        for (const QString &name : images) {
            QFile expectedFile(folder.filePath(QFileInfo(name).completeBaseName() + ".txt"));
            ASSERT_TRUE(expectedFile.open(QIODevice::ReadOnly)) << name.toStdString();
            const QString expected = QString::fromUtf8(expectedFile.readAll());
            const QImage image = QImage(folder.filePath(name)).transformed(QTransform().rotate(rotation));
            ASSERT_FALSE(image.isNull()) << name.toStdString();
            if (readsWithinCycle(reader, image, expected))
                ++passed;
            else
                failed.append(name);
        }
        EXPECT_GE(passed, suite.required)
            << suite.name << " at " << rotation << " degrees; not read: " << failed.join(", ").toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(
    Suites, BarcodeRegression,
    ::testing::Values(Suite{"code39-1", 4, 4, linearTurns, code39}, Suite{"code39-2", 2, 2, linearTurns, code39},
                      Suite{"code39-3", 17, 17, linearTurns, code39},
                      Suite{"code93-1", 3, 3, linearTurns, {MetadataObject::typeCode93}},
                      Suite{"code128-1", 7, 7, linearTurns, {MetadataObject::typeCode128}},
                      Suite{"code128-3", 2, 2, linearTurns, {MetadataObject::typeCode128}},
                      Suite{"datamatrix-1", 23, 23, matrixTurns, {MetadataObject::typeDataMatrix}},
                      Suite{"datamatrix-2", 18, 13, matrixTurns, {MetadataObject::typeDataMatrix}},
                      Suite{"datamatrix-3", 18, 18, matrixTurns, {MetadataObject::typeDataMatrix}}),
    [](const ::testing::TestParamInfo<Suite> &info) { return QString(info.param.name).remove('-').toStdString(); });

} // namespace

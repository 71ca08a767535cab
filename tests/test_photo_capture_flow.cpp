// The photo capture flow of the capture screen: saving the VIN photo with the expected titles,
// confirming the save, and the read-outs of the claim's photos.
#include "ZQTVINScanComponent.h"
#include "platform/foundation/Dispatch.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"
#include "support/TemporarySettingsStore.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QGeoPositionInfo>
#include <QStandardPaths>
#include <QTest>

#include <atomic>

using namespace ZQTPlatform;

namespace {

QString claimFolder(const QString &claimId)
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + "/ZQTPhotos/" + claimId;
}

Image picture(int width, int height)
{
    return Image(TestData::filled(width, height, QColor("#13315C")));
}

// Runs work on a pool thread, as the barcode session's capture worker does, and waits for it.
void runOffTheGuiThread(const std::function<void()> &work)
{
    std::atomic<bool> done{false};
    Dispatch::globalAsync([&] {
        work();
        done = true;
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 10000));
}

class PhotoCaptureFlow : public ::testing::Test
{
protected:
    // A screen for the claim whose VIN slot is built from the current configuration.
    std::unique_ptr<ZQTVINCaptureVC> screenFor(const QString &claimId, bool withVinSlot = true)
    {
        std::unique_ptr<ZQTVINCaptureVC> screen(ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, claimId));
        if (withVinSlot)
            screen->setVINPhotoCaptureEntity();
        return screen;
    }

    TemporarySettingsStore settings;
    LogCapture capture;
};

} // namespace

TEST_F(PhotoCaptureFlow, VinPhotoIsSavedUnderTheSlotsSaveTitleAfterTheExpectedTitlesAreRecordedAndConfirmingMarksTheClaim)
{
    const QVariantMap expected{{"A", 1}, {"B", "rear"}};
    // The expected titles are recorded whenever there is a picture, even when it cannot be stored.
    struct Row { const char *claim; bool image, vinSlot; QByteArray settings; bool recorded; QString file; };
    const Row rows[] = {
        {"CLM-SAVE", true, true, {}, true, "VIN.jpg"},
        {"CLM-NO-IMAGE", false, true, {}, false, {}},
        {"CLM-NO-SLOT", true, false, {}, true, {}},
        {"CLM-NO-TITLE", true, true, "<key>TextVINImageSaveTitle</key><string></string>", true, {}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.claim);
        TemporaryMainBundle host;
        if (!row.settings.isEmpty())
            host.writeSettings(row.settings);
        const auto screen = screenFor(row.claim, row.vinSlot);
        screen->setPhotosToBeSaved(expected);
        const Image image = row.image ? picture(1600, 1200) : Image();
        runOffTheGuiThread([&] { screen->processUsePhotoCompletionHandler(image); });

        const QVariant recorded = ZQTUserDefaults::getObjectForKey("PHOTOS_NAMES_TO_BE_SAVED", row.claim);
        EXPECT_EQ(recorded.isValid(), row.recorded);
        if (row.recorded) {
            EXPECT_EQ(recorded.toMap(), expected);
        }
        const QStringList files = QDir(claimFolder(row.claim)).entryList(QDir::Files);
        EXPECT_EQ(files, row.file.isEmpty() ? QStringList() : QStringList{row.file});
    }

    // Confirming the save logs the expected photos found and marks the claim.
    for (const bool vinPhoto : {true, false}) {
        const QString claim = vinPhoto ? "CLM-DONE" : "CLM-NOTHING";
        SCOPED_TRACE(claim.toStdString());
        const auto screen = screenFor(claim);
        screen->setPhotosToBeSaved({{"A", true}, {"VIN", true}});
        if (vinPhoto)
            screen->processUsePhotoCompletionHandler(picture(64, 48));
        else
            ZQTUserDefaults::setObject(screen->photosToBeSaved(), "PHOTOS_NAMES_TO_BE_SAVED", claim);
        capture.clear();

        std::optional<bool> reported;
        screen->imageSavedWithCompletion([&](bool success) {
            reported = success && ZQTUserDefaults::boolForKey("SAVE_IMAGE_COMPLETED", claim);
        });
        EXPECT_EQ(reported, std::optional<bool>(true)) << "marked, then reported at once, even with no file";
        EXPECT_EQ(capture.lines().filter("file found"), vinPhoto ? QStringList{"VIN file found"} : QStringList());
    }
}

TEST_F(PhotoCaptureFlow, ReadOutsListTheSavedPhotoThenPlaceholdersWithTheHostsPosition)
{
    const auto screen = screenFor("CLM-READ");
    screen->setPhotosToBeSaved({{"A", 1}, {"B", 2}, {"VIN", 3}});
    screen->processUsePhotoCompletionHandler(picture(64, 48));
    const QString folder = claimFolder("CLM-READ");

    QStringList listed;
    for (const ZQTVINPhotoCaptureItem &item : screen->allPhotoCaptureItems()) {
        listed << item.photoTitle();
        EXPECT_EQ(item.imageCreatedDate().isValid(), !item.photo().isNull()) << "placeholders carry no date";
    }
    EXPECT_EQ(listed, (QStringList{"VIN", "A", "B"}));

    EXPECT_EQ(screen->allPhotoCapturePaths(),
              (QVariantMap{{"A", folder + "/A.jpg"}, {"B", folder + "/B.jpg"}, {"VIN", folder + "/VIN.jpg"}}));

    const QDateTime before = QDateTime::currentDateTime();
    const QVariantMap details = screen->allPhotoCaptureWithDetails();
    ASSERT_EQ(details.keys(), (QStringList{"A", "B", "VIN"}));
    const QVariantMap a = details["A"].toMap();
    EXPECT_EQ(a.keys(), (QStringList{"imageCreatedDate", "imagePath", "latitude", "longitude", "photoTitle"}));
    EXPECT_EQ(a["imagePath"], folder + "/A.jpg");
    EXPECT_GE(a["imageCreatedDate"].toDateTime(), before) << "placeholders are dated now";
    EXPECT_EQ(a["latitude"].typeId(), QMetaType::Double);

    // Positions come from the host's location only while location services are on.
    const QGeoPositionInfo here(QGeoCoordinate(52.37, 4.89), QDateTime::currentDateTime());

    struct Row { const char *what; bool services; const QGeoPositionInfo *location; double latitude; };
    const Row rows[] = {
        {"services on, position known", true, &here, 52.37},
        {"services off", false, &here, 0.0},
        {"services on, no position yet", true, nullptr, 0.0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        screen->setEnableLocationServices(row.services);
        screen->setLocation(row.location);
        for (const ZQTVINPhotoCaptureItem &item : screen->allPhotoCaptureItems())
            EXPECT_EQ(item.latitude(), row.latitude) << qPrintable(item.photoTitle());
        EXPECT_EQ(screen->allPhotoCaptureWithDetails()["VIN"].toMap()["latitude"].toDouble(), row.latitude);
    }
}

// The photo catalogue: slot validity, the slot factories, the VIN slot built
// from configuration with its ping-pong help frames, and the framework's own pictures.
#include "ZQTVINScanComponent.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Exception.h"
#include "support/TemporaryMainBundle.h"
#include "support/TestData.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTest>

#include <atomic>

using namespace ZQTPlatform;

namespace {

// PNG bytes of a small picture of one colour.
QByteArray solidPng(const QColor &color)
{
    return TestData::encoded(TestData::filled(6, 4, color));
}

QString colorOf(const Image &image)
{
    return image.isNull() ? QStringLiteral("null") : image.bitmap().pixelColor(0, 0).name();
}

// The colour of each frame, for comparing frame lists at a glance.
QStringList colorsOf(const QList<Image> &frames)
{
    QStringList colors;
    for (const Image &frame : frames)
        colors << colorOf(frame);
    return colors;
}

QByteArray stringArray(const QStringList &names)
{
    QByteArray xml = "<array>";
    for (const QString &name : names)
        xml += "<string>" + name.toUtf8() + "</string>";
    return xml + "</array>";
}

std::unique_ptr<ZQTVINCaptureVC> newScreen()
{
    return std::unique_ptr<ZQTVINCaptureVC>(ZQTVINCaptureVC::createVinScannerViewWithDelegate(nullptr, "CLM-CAT"));
}

Image frameworkImage(const char *name)
{
    return Image::imageNamed(QString::fromLatin1(name), Bundle::frameworkBundle());
}

} // namespace

TEST(PhotoCatalogue, ValidSlotNeedsOverlayPictureHeaderThumbnailAndTitleAndBundlePicturesComeFromTheNamedBundle)
{
    const Image picture(QImage(4, 4, QImage::Format_RGB32));
    struct Row { const char *what; QString title, header; Image thumbnail, overlay; bool valid; };
    const Row rows[] = {
        {"complete", "VIN", "Header", picture, picture, true},
        {"no overlay picture", "VIN", "Header", picture, Image(), false},
        {"empty header", "VIN", "", picture, picture, false},
        {"no thumbnail", "VIN", "Header", Image(), picture, false},
        {"empty title", "", "Header", picture, picture, false},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        // No save title, overlay title, description or camera overlay: none of them is required.
        const auto slot = ZQTVINPhotoCaptureEntity::createWithTitle(row.title, row.thumbnail, row.header, QString(),
                                                                    QString(), row.overlay);
        EXPECT_EQ(slot->isValidModel(), row.valid);
        EXPECT_FALSE(slot->autoDisplayFirstTime()) << "the six-argument factory never auto-displays";
    }

    // The bundle factory's pictures come only from the named bundle of the main bundle.
    TemporaryMainBundle host;
    host.writeFile("Cars.bundle/thumb.png", solidPng(Qt::red));
    host.writeFile("Cars.bundle/overlay.png", solidPng(Qt::green));
    // Same names at the top of the main bundle: must not stand in for a missing bundle.
    host.writeFile("thumb.png", solidPng(Qt::blue));
    host.writeFile("overlay.png", solidPng(Qt::blue));

    const auto found = ZQTVINPhotoCaptureEntity::createWithTitle("Car", "Cars", "thumb", "Header", "Title", "Desc",
                                                                 "overlay", true);
    EXPECT_EQ(colorOf(found->thumbnailImage()), "#ff0000");
    EXPECT_EQ(colorOf(found->overlayImage()), "#00ff00");
    EXPECT_TRUE(found->isValidModel() && found->autoDisplayFirstTime());

    const auto missing = ZQTVINPhotoCaptureEntity::createWithTitle("Car", "Trucks", "thumb", "Header", "Title",
                                                                   "Desc", "overlay", false);
    EXPECT_EQ(colorOf(missing->thumbnailImage()), "null");
    EXPECT_EQ(colorOf(missing->overlayImage()), "null");
    EXPECT_FALSE(missing->isValidModel());
}

TEST(PhotoCatalogue, HelpFramesPlayForwardThenBack)
{
    struct Row { QStringList names; QStringList frames; QString still; };
    const Row rows[] = {
        {{"a", "b", "c"}, {"#ff0000", "#00ff00", "#0000ff", "#0000ff", "#00ff00", "#ff0000"}, "#ff0000"},
        {{"b"}, {"#00ff00", "#00ff00"}, "#00ff00"},
        {{}, {}, "null"},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.names.join(",").toStdString());
        TemporaryMainBundle host;
        host.writeFile("a.png", solidPng(Qt::red));
        host.writeFile("b.png", solidPng(Qt::green));
        host.writeFile("c.png", solidPng(Qt::blue));
        host.writeSettings(helpPageSettings(stringArray(row.names)));

        const auto screen = newScreen();
        ZQTVINPhotoCaptureEntity slot;
        const Image still = screen->getAnimationImages(0, slot);
        EXPECT_EQ(colorsOf(slot.animationOverlayImages()), row.frames);
        EXPECT_EQ(colorOf(still), row.still);

        screen->setVINPhotoCaptureEntity();
        if (row.names.isEmpty()) {
            EXPECT_EQ(screen->vinScanItem(), nullptr) << "no overlay picture: the slot is dropped";
        } else {
            ASSERT_NE(screen->vinScanItem(), nullptr);
            EXPECT_EQ(colorOf(screen->vinScanItem()->overlayImage()), row.still);
            EXPECT_EQ(colorsOf(screen->vinScanItem()->animationOverlayImages()), row.frames);
        }
        // A frame list may name only existing pictures.
        host.writeSettings(helpPageSettings(stringArray(row.names + QStringList{"no_such_picture"})));
        EXPECT_THROW(screen->getAnimationImages(0, slot), Exception);
    }
}

TEST(PhotoCatalogue, DefaultConfigurationGivesAValidAnimatedVinSlotAHostPictureNameTheBuiltInOneAutoDisplayReadsBooleansAndTheHostListComesOnAPoolThread)
{
    const auto screen = newScreen();
    screen->setVINPhotoCaptureEntity();
    const auto slot = screen->vinScanItem();
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(slot->saveTitle(), "VIN");
    EXPECT_TRUE(slot->autoDisplayFirstTime() && !slot->hasBeenDisplayed());

    const QList<Image> frames = slot->animationOverlayImages();
    ASSERT_EQ(frames.size(), 8);
    EXPECT_EQ(slot->overlayImage().bitmap(), frameworkImage("help_vin_frame_1").bitmap());
    EXPECT_NE(frames[0].bitmap(), frames[1].bitmap()) << "the phone moves between frames";

    // The camera overlay is laid over the live picture: clear in the middle, drawn at the edges.
    const QImage camera = slot->cameraOverlayImage().bitmap();
    EXPECT_EQ(camera.pixelColor(camera.width() / 2, camera.height() * 2 / 5).alpha(), 0);
    EXPECT_GT(camera.pixelColor(2, 2).alpha(), 0);

    // Every appearance rebuilds the slot; a help already shown stays shown.
    slot->setHasBeenDisplayed(true);
    screen->setVINPhotoCaptureEntity();
    EXPECT_NE(screen->vinScanItem(), slot);
    EXPECT_TRUE(screen->vinScanItem()->hasBeenDisplayed());

    // A single picture name means the built-in help picture; the host's pictures come first.
    TemporaryMainBundle host;
    host.writeSettings(helpPageSettings("<string>a</string>"));
    host.writeFile("a.png", solidPng(Qt::red));
    host.writeFile("carousel_VIN.png", solidPng(Qt::green));
    screen->setVINPhotoCaptureEntity();
    const auto single = screen->vinScanItem();
    ASSERT_NE(single, nullptr);
    EXPECT_EQ(single->overlayImage().bitmap(), frameworkImage("help_info_vin").bitmap());
    EXPECT_TRUE(single->animationOverlayImages().isEmpty());
    EXPECT_EQ(colorOf(single->thumbnailImage()), "#00ff00") << "the host's picture wins over the framework's";
    EXPECT_EQ(single->cameraOverlayImage().bitmap(), frameworkImage("cam_info_vin").bitmap());

    // Hand-written settings often say "NO" or 0 where a boolean belongs; they read as the platform
    // reads them, not as "any text is true".
    const struct { QByteArray xml; bool shows; } rows[] = {
        {"<string>NO</string>", false}, {"<integer>0</integer>", false}, {"<dict/>", false},
        {"<string> true</string>", true}, {"<integer>2</integer>", true},
    };
    for (const auto &row : rows) {
        host.writeSettings(helpPageSettings("<string>help_info_vin</string>", "Header", row.xml));
        screen->setVINPhotoCaptureEntity();
        ASSERT_NE(screen->vinScanItem(), nullptr) << row.xml.constData();
        EXPECT_EQ(screen->vinScanItem()->autoDisplayFirstTime(), row.shows) << row.xml.constData();
    }

    // The built-in slots are the host's list, handed over on a pool thread.
    const auto door = ZQTVINPhotoCaptureEntity::createWithTitle("Door", "H", "T", "D", false);
    screen->setThumbnailItems({door});
    std::atomic<bool> done{false};
    bool onPool = false, asSet = false;
    screen->builtinThumbnailPreviewItemsWithCompletion([&](const auto &entities, const Error &error) {
        onPool = !Dispatch::isMainThread();
        asSet = entities == QList{door} && error.isNull();
        done = true;
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 3000));
    EXPECT_TRUE(onPool && asSet);
}

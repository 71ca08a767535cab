// The photo catalogue: slot validity, the slot factories and overlay setters, the VIN slot built
// from configuration with its ping-pong help frames, and the framework's own pictures.
#include "ZQTVINScanComponent.h"
#include "platform/Dispatch.h"
#include "platform/Exception.h"
#include "support/LogCapture.h"
#include "support/TemporaryMainBundle.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QPainter>
#include <QTest>
#include <QThread>

#include <atomic>

using namespace ZQTPlatform;

namespace {

// PNG bytes of a small picture of one colour.
QByteArray solidPng(const QColor &color)
{
    QImage bitmap(6, 4, QImage::Format_RGB32);
    bitmap.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    bitmap.save(&buffer, "PNG");
    return bytes;
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

// Help page 0 of a host configuration with the given "imageName" value.
QByteArray helpPageWithImageName(const QByteArray &imageNameXml)
{
    return "<key>HelpOverlayDetailsDictionary</key><dict><key>overlays</key><array><dict>"
           "<key>imageName</key>" + imageNameXml +
           "<key>header</key><string>Header</string><key>title</key><string>Title</string>"
           "<key>descr</key><string>Description</string><key>autoDisplayFirstTime</key><false/>"
           "</dict></array></dict>";
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

const QMap<QString, QColor> framePalette = {{"a", Qt::red}, {"b", Qt::green}, {"c", Qt::blue}};

} // namespace

// --- Slot records

TEST(PhotoCatalogue, ValidSlotNeedsOverlayPictureHeaderThumbnailAndTitle)
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
}

TEST(PhotoCatalogue, TextOnlySlotIsInvalidUntilBothPicturesAreSet)
{
    TemporaryMainBundle host;
    const auto slot = ZQTVINPhotoCaptureEntity::createWithTitle("Door", "Header", "Title", "Desc", true);
    EXPECT_TRUE(slot->autoDisplayFirstTime());
    EXPECT_FALSE(slot->isValidModel());
    slot->setThumbnailImage(Image(QImage(2, 2, QImage::Format_RGB32)));
    EXPECT_FALSE(slot->isValidModel());
    slot->setOverlayWithPath(host.writeFile("overlay.png", solidPng(Qt::red)));
    EXPECT_TRUE(slot->isValidModel());
}

TEST(PhotoCatalogue, BundleFactoryReadsOnlyFromTheNamedBundleOfTheMainBundle)
{
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
    EXPECT_TRUE(found->isValidModel());
    EXPECT_TRUE(found->autoDisplayFirstTime());
    EXPECT_TRUE(found->saveTitle().isEmpty() && found->animationOverlayImages().isEmpty());

    const auto missing = ZQTVINPhotoCaptureEntity::createWithTitle("Car", "Trucks", "thumb", "Header", "Title",
                                                                   "Desc", "overlay", false);
    EXPECT_EQ(colorOf(missing->thumbnailImage()), "null");
    EXPECT_EQ(colorOf(missing->overlayImage()), "null");
    EXPECT_FALSE(missing->isValidModel());
}

TEST(PhotoCatalogue, OverlaySettersKeepThePreviousPictureWhenNothingLoads)
{
    TemporaryMainBundle host;
    host.writeFile("wheel.bundle/wheel.png", solidPng(Qt::green));
    host.writeFile("other.bundle/wheel.png", solidPng(Qt::blue));
    const QString path = host.writeFile("loose/red.png", solidPng(Qt::red));

    ZQTVINPhotoCaptureEntity slot;
    EXPECT_EQ(colorOf(slot.setOverlayWithPath(path).overlayImage()), "#ff0000");
    EXPECT_EQ(colorOf(slot.setOverlayWithPath(host.path() + "/none.png").overlayImage()), "#ff0000");
    // The first word names both the bundle and the picture; the second is not used.
    EXPECT_EQ(colorOf(slot.setOverlayWithName("wheel", "other").overlayImage()), "#00ff00");
    EXPECT_EQ(colorOf(slot.setOverlayWithName("other", "wheel").overlayImage()), "#00ff00");
}

// --- The VIN slot from configuration

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
        for (auto it = framePalette.cbegin(); it != framePalette.cend(); ++it)
            host.writeFile(it.key() + ".png", solidPng(it.value()));
        host.writeSettings(helpPageWithImageName(stringArray(row.names)));

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
    }
}

TEST(PhotoCatalogue, FrameNamingAMissingPictureIsAConfigurationError)
{
    TemporaryMainBundle host;
    host.writeFile("a.png", solidPng(Qt::red));
    host.writeSettings(helpPageWithImageName(stringArray({"a", "no_such_picture"})));
    const auto screen = newScreen();
    ZQTVINPhotoCaptureEntity slot;
    try {
        screen->getAnimationImages(0, slot);
        ADD_FAILURE() << "a missing frame was accepted";
    } catch (const Exception &e) {
        EXPECT_EQ(e.name(), "NSInvalidArgumentException");
        EXPECT_TRUE(e.reason().contains("no_such_picture"));
    }
}

TEST(PhotoCatalogue, SinglePictureNameMeansTheBuiltInHelpPictureAndHostPicturesComeFirst)
{
    TemporaryMainBundle host;
    host.writeSettings(helpPageWithImageName("<string>a</string>"));
    host.writeFile("a.png", solidPng(Qt::red));
    host.writeFile("carousel_VIN.png", solidPng(Qt::green));

    const auto screen = newScreen();
    screen->setVINPhotoCaptureEntity();
    const auto slot = screen->vinScanItem();
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(slot->overlayImage().bitmap(), frameworkImage("help_info_vin").bitmap());
    EXPECT_TRUE(slot->animationOverlayImages().isEmpty());
    EXPECT_EQ(colorOf(slot->thumbnailImage()), "#00ff00") << "the host's picture wins over the framework's";
    EXPECT_EQ(slot->cameraOverlayImage().bitmap(), frameworkImage("cam_info_vin").bitmap());
}

TEST(PhotoCatalogue, DefaultConfigurationGivesAValidAnimatedVinSlot)
{
    const auto screen = newScreen();
    screen->setVINPhotoCaptureEntity();
    const auto slot = screen->vinScanItem();
    ASSERT_NE(slot, nullptr);
    EXPECT_EQ(slot->title(), "VIN");
    EXPECT_EQ(slot->saveTitle(), "VIN");
    EXPECT_EQ(slot->overlayHeader(), "VIN photo");
    EXPECT_EQ(slot->overlayTitle(), "Find the VIN barcode");
    EXPECT_TRUE(slot->overlayDesc().startsWith("Look for the barcode"));
    EXPECT_TRUE(slot->autoDisplayFirstTime());
    EXPECT_FALSE(slot->hasBeenDisplayed());

    const QList<Image> frames = slot->animationOverlayImages();
    ASSERT_EQ(frames.size(), 8);
    const Image first = frameworkImage("help_vin_frame_1");
    EXPECT_EQ(frames.first().bitmap(), first.bitmap());
    EXPECT_EQ(frames.last().bitmap(), first.bitmap());
    EXPECT_EQ(frames[3].bitmap(), frames[4].bitmap());
    EXPECT_NE(frames[0].bitmap(), frames[1].bitmap()) << "the phone moves between frames";
    EXPECT_EQ(slot->overlayImage().bitmap(), first.bitmap());

    // The camera overlay is laid over the live picture: clear in the middle, drawn at the edges.
    const QImage camera = slot->cameraOverlayImage().bitmap();
    ASSERT_FALSE(camera.isNull());
    EXPECT_EQ(camera.pixelColor(camera.width() / 2, camera.height() * 2 / 5).alpha(), 0);
    EXPECT_GT(camera.pixelColor(2, 2).alpha(), 0);

    // Every appearance rebuilds the slot; a help already shown stays shown.
    slot->setHasBeenDisplayed(true);
    screen->setVINPhotoCaptureEntity();
    EXPECT_NE(screen->vinScanItem(), slot);
    EXPECT_TRUE(screen->vinScanItem()->hasBeenDisplayed());
}

TEST(PhotoCatalogue, AutoDisplayedHelpShowsHalfASecondAfterTheScreenAppears)
{
    for (const bool autoDisplay : {true, false}) {
        SCOPED_TRACE(autoDisplay ? "auto-display" : "on request only");
        TemporaryMainBundle host;
        host.writeFile("a.png", solidPng(Qt::red));
        QByteArray page = helpPageWithImageName(stringArray({"a"}));
        if (autoDisplay)
            page.replace("<key>autoDisplayFirstTime</key><false/>", "<key>autoDisplayFirstTime</key><true/>");
        host.writeSettings(page);
        LogCapture capture;
        const auto screen = newScreen();
        screen->show();
        screen->viewDidAppear(true);
        ASSERT_NE(screen->vinScanItem(), nullptr);
        EXPECT_FALSE(capture.steps().contains("showOverlay")) << "not at once";
        QTest::qWait(800);
        EXPECT_EQ(capture.steps().contains("showOverlay"), autoDisplay);
    }
}

TEST(PhotoCatalogue, BuiltinSlotsAreTheHostListHandedOverOnAPoolThread)
{
    const auto screen = newScreen();
    const auto door = ZQTVINPhotoCaptureEntity::createWithTitle("Door", "H", "T", "D", false);
    screen->setThumbnailItems({door});
    EXPECT_EQ(screen->builtinZQTPhotoCaptureEntitis(), screen->thumbnailItems());

    std::atomic<bool> done{false};
    bool onPool = false;
    QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> received;
    Error error("x", 1, "not called");
    screen->builtinThumbnailPreviewItemsWithCompletion([&](const auto &entities, const Error &e) {
        onPool = !Dispatch::isMainThread();
        received = entities;
        error = e;
        done = true;
    });
    ASSERT_TRUE(QTest::qWaitFor([&] { return done.load(); }, 3000));
    EXPECT_TRUE(onPool);
    ASSERT_EQ(received.size(), 1);
    EXPECT_EQ(received.first(), door);
    EXPECT_TRUE(error.isNull());
}

// --- The framework's pictures, rendered for a person to look at

TEST(PhotoCatalogue, FrameworkPicturesRenderToAContactSheet)
{
    const char *names[] = {"carousel_VIN", "help_info_vin", "cam_info_vin", "help_vin_frame_1",
                           "help_vin_frame_2", "help_vin_frame_3", "help_vin_frame_4"};
    const int cell = 320;
    QImage sheet(cell * 4, cell * 2, QImage::Format_ARGB32);
    sheet.fill(QColor("#d9dde3"));
    QPainter painter(&sheet);
    int index = 0;
    for (const char *name : names) {
        SCOPED_TRACE(name);
        const Image image = frameworkImage(name);
        ASSERT_FALSE(image.isNull());
        const QPoint origin((index % 4) * cell + 10, (index / 4) * cell + 10);
        const QRect frame(origin, image.bitmap().size());
        // A stand-in for the live camera under the camera overlay.
        if (QByteArray(name) == "cam_info_vin")
            painter.fillRect(frame, QColor("#7d8b6a"));
        painter.drawImage(origin, image.bitmap());
        ++index;
    }
    painter.end();
    QDir folder(QCoreApplication::applicationDirPath() + "/../test-artifacts");
    ASSERT_TRUE(folder.mkpath("."));
    EXPECT_TRUE(sheet.save(folder.filePath("catalogue_art.png")));
}

// The barcode reader on generated camera frames (VIN labels in every symbology, in the pixel
// layouts cameras deliver), and the metadata output end to end: a picture stand-in streaming
// through a capture session to the delegate on the GUI thread.
#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/CaptureDevice.h"
#include "platform/capture/CaptureSession.h"
#include "platform/capture/MetadataOutput.h"
#include "platform/capture/FrameLayout_p.h"
#include "platform/capture/VideoFrames_p.h"
#include "ViewControllers/VINPayload_p.h"
#include "support/TestData.h"

#include <BarcodeArt.h>

#include <gtest/gtest.h>

#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QtEndian>
#include <QThread>
#include <QVideoFrame>

#include <algorithm>
#include <memory>

using namespace ZQTPlatform;
using BarcodeArt::Symbology;

namespace {

const QString vin = QStringLiteral("1HGCM82633A004352");
const QStringList vinTypes{MetadataObject::typeCode39, MetadataObject::typeCode39Mod43, MetadataObject::typeCode93,
                           MetadataObject::typeCode128, MetadataObject::typeDataMatrix};

QImage labelFrame(Symbology symbology, const QString &text, int modulePixels = 3, QSize size = {1280, 720})
{
    BarcodeArt::Scene scene;
    scene.frameSize = size;
    scene.caption = QStringLiteral("VIN ") + text;
    return BarcodeArt::renderScene(BarcodeArt::renderSymbol(symbology, text, modulePixels), scene);
}

// Two symbols side by side on white.
QImage sideBySide(const QImage &first, const QImage &second)
{
    return BarcodeArt::composeSymbols({{first, QPoint(0, 0)}, {second, QPoint(first.width(), 0)}});
}

QPointF centroid(const QList<QPointF> &points)
{
    QPointF sum;
    for (const QPointF &point : points)
        sum += point;
    return points.isEmpty() ? sum : sum / points.size();
}

// Door-frame labels: the VIN with a part number, a paint code or a VIN-shaped number beside it.
const QString partNumber = QStringLiteral("PN 84512-33A07");
const QString paintCode = QStringLiteral("PAINT NH-731P");
const QString vinShaped = QStringLiteral("1HGCM82633A004353"); // the VIN with a wrong check digit

// A code as printed on such labels: 3-pixel modules (6 for Data Matrix), bars 20 modules high.
QImage labelCode(Symbology symbology, const QString &text)
{
    return BarcodeArt::renderSymbol(symbology, text, symbology == Symbology::DataMatrix ? 6 : 3, 60);
}

struct LabelLayout
{
    const char *name;
    QImage frame;
    QStringList readingOrder; // the texts top to bottom
    QStringList vinFirst;     // the texts as the capture screen ranks them
};

// Labels whose anchored code sits at the centre of the frame, the others above, below or beside.
QList<LabelLayout> labelLayouts()
{
    const QImage part = labelCode(Symbology::Code128, partNumber);
    const QImage vin39 = labelCode(Symbology::Code39, vin);
    const QImage paint = labelCode(Symbology::DataMatrix, paintCode);
    const QImage shaped = labelCode(Symbology::Code128, vinShaped);
    const int gap = 20;
    const auto centred = [&vin39](const QImage &code) { return (vin39.width() - code.width()) / 2; };
    BarcodeArt::Scene hd;
    BarcodeArt::Scene fullHd;
    fullHd.frameSize = QSize(1920, 1080);
    // Held at a slant, a little out of focus: straight rows still read the short part number, only
    // the turned strategies the long VIN.
    BarcodeArt::Scene slanted;
    slanted.tiltDegrees = 4;
    slanted.blurRadius = 0.7;
    slanted.noiseSigma = 4;
    slanted.contrast = 0.7;
    const QList<BarcodeArt::Placed> partNumberAboveVin{{part, QPoint(centred(part), 0)}, {vin39, QPoint(0, part.height() + gap)}};
    // The paint code crosses the part number's middle row (where the Data Matrix detector looks)
    // with its centre 30 pixels lower.
    const QPoint paintAt(0, part.height() / 2 + 30 - paint.height() / 2);
    return {
        {"part number at the centre, VIN below",
         BarcodeArt::renderLabelScene(partNumberAboveVin, 0, hd),
         {partNumber, vin},
         {vin, partNumber}},
        {"part number at the centre, VIN below, at a slant",
         BarcodeArt::renderLabelScene(partNumberAboveVin, 0, slanted),
         {partNumber, vin},
         {vin, partNumber}},
        {"paint code beside the part number at the centre, VIN below",
         BarcodeArt::renderLabelScene({{part, QPoint(paint.width() + 2 * gap, 0)},
                                       {paint, paintAt},
                                       {vin39, QPoint(0, paintAt.y() + paint.height() + gap)}},
                                      0, fullHd),
         {partNumber, paintCode, vin},
         {vin, partNumber, paintCode}},
        {"part number, VIN-shaped number at the centre, VIN",
         BarcodeArt::renderLabelScene({{part, QPoint(centred(part), 0)},
                                       {shaped, QPoint(centred(shaped), part.height() + gap)},
                                       {vin39, QPoint(0, part.height() + shaped.height() + 2 * gap)}},
                                      1, fullHd),
         {partNumber, vinShaped, vin},
         {vin, vinShaped, partNumber}},
    };
}

// A frame of the given layout with the picture's luminance (neutral chroma; grey RGB).
QVideoFrame frameWithLayout(const QImage &picture, QVideoFrameFormat::PixelFormat format)
{
    const QImage grey = picture.convertToFormat(QImage::Format_Grayscale8);
    QVideoFrame frame(QVideoFrameFormat(grey.size(), format));
    if (!frame.map(QVideoFrame::WriteOnly))
        return {};
    for (int plane = 1; plane < frame.planeCount(); ++plane)
        memset(frame.bits(plane), 128, frame.mappedBytes(plane));
    for (int y = 0; y < grey.height(); ++y) {
        const uchar *in = grey.constScanLine(y);
        uchar *out = frame.bits(0) + y * frame.bytesPerLine(0);
        for (int x = 0; x < grey.width(); ++x) {
            switch (format) {
            case QVideoFrameFormat::Format_Y16: qToLittleEndian<quint16>(in[x] << 8 | (x * 37 & 0xFF), out + 2 * x); break;
            case QVideoFrameFormat::Format_UYVY: out[2 * x] = 128; out[2 * x + 1] = in[x]; break;
            case QVideoFrameFormat::Format_YUYV: out[2 * x] = in[x]; out[2 * x + 1] = 128; break;
            default: // 32-bit RGB with the padding byte last or first
                memset(out + 4 * x, in[x], 4);
                out[format == QVideoFrameFormat::Format_BGRX8888 ? 4 * x + 3 : 4 * x] = 0;
                break;
            }
        }
    }
    frame.unmap();
    return frame;
}

TEST(BarcodeReader, ReadsVinLabelsOfEverySymbologyInEveryFrameLayout)
{
    const BarcodeReader reader(vinTypes);
    const struct { Symbology symbology; QString type; } cases[] = {
        {Symbology::Code39, MetadataObject::typeCode39},
        {Symbology::Code93, MetadataObject::typeCode93},
        {Symbology::Code128, MetadataObject::typeCode128},
        {Symbology::DataMatrix, MetadataObject::typeDataMatrix},
    };
    for (const auto &c : cases) {
        const QImage picture = labelFrame(c.symbology, vin);
        QList<QVideoFrame> frames{videoFrameFromImage(picture)}; // YUV420P
        // Planar frames (NV12 and the others) share the first one's luma layout.
        for (const auto layout : {QVideoFrameFormat::Format_Y16, QVideoFrameFormat::Format_UYVY, QVideoFrameFormat::Format_YUYV,
                                  QVideoFrameFormat::Format_BGRX8888, QVideoFrameFormat::Format_XRGB8888})
            frames.append(frameWithLayout(picture, layout));
        for (const QVideoFrame &frame : frames) {
            SCOPED_TRACE((c.type + " in " + QVideoFrameFormat::pixelFormatToString(frame.pixelFormat())).toStdString());
            ASSERT_TRUE(frame.isValid());
            // A clean label is read by the cheapest strategy, in the first frame.
            const QList<DecodedBarcode> codes = reader.read(frame, 0);
            ASSERT_EQ(codes.size(), 1);
            EXPECT_EQ(codes[0].type, c.type);
            EXPECT_EQ(codes[0].text, vin);
            ASSERT_EQ(codes[0].corners.size(), 4);
            const QPointF centre = centroid(codes[0].corners);
            EXPECT_NEAR(centre.x(), 640, 40);
            EXPECT_NEAR(centre.y(), 360 - 15, 40); // the caption sits under the symbol
        }
    }
}

// The printed-VIN reader's grey copy of a frame: the frame's luminance in every layout read in
// place, in rows padded as a grey picture's are (30 pixels wide: 2 bytes of padding a row).
TEST(FrameLayout, GreyOfAFrameIsItsLuminanceInEveryLayout)
{
    QImage picture(30, 6, QImage::Format_Grayscale8);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.scanLine(y)[x] = uchar(x * 8 + y);
    QList<QVideoFrame> frames{videoFrameFromImage(picture)};
    for (const auto layout : {QVideoFrameFormat::Format_Y16, QVideoFrameFormat::Format_UYVY, QVideoFrameFormat::Format_YUYV,
                              QVideoFrameFormat::Format_BGRX8888, QVideoFrameFormat::Format_XRGB8888})
        frames.append(frameWithLayout(picture, layout));
    for (const QVideoFrame &frame : frames) {
        SCOPED_TRACE(QVideoFrameFormat::pixelFormatToString(frame.pixelFormat()).toStdString());
        const QImage grey = greyOfVideoFrame(frame);
        ASSERT_EQ(grey.format(), QImage::Format_Grayscale8);
        ASSERT_EQ(grey.size(), picture.size());
        for (int y = 0; y < picture.height(); ++y)
            EXPECT_EQ(memcmp(grey.constScanLine(y), picture.constScanLine(y), size_t(picture.width())), 0) << "row " << y;
    }
    EXPECT_TRUE(greyOfVideoFrame(QVideoFrame()).isNull());
}

// Code 39 text always comes back whole: a leading "I", and real VINs whose last character
// happens to be the mod 43 check character of the others (which the check-digit option would cut off).
TEST(BarcodeReader, Code39KeepsEveryCharacterAndTellsMod43Apart)
{
    const QString mod43Alphabet = QStringLiteral("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%");
    QStringList mod43Vins;
    const QList<QStringList> rows = TestData::readCsv(TestData::directory() + "/vins/real-vins.csv");
    for (const QStringList &row : rows.mid(1)) {
        const QString &text = row[0];
        if (text.size() != 17 || text.contains(QRegularExpression("[^0-9A-Z]")))
            continue;
        int sum = 0;
        for (const QChar c : text.chopped(1))
            sum += int(mod43Alphabet.indexOf(c));
        if (mod43Alphabet.indexOf(text.back()) == sum % 43)
            mod43Vins.append(text);
    }
    ASSERT_GE(mod43Vins.size(), 2);

    const BarcodeReader both(vinTypes);
    const BarcodeReader plainOnly({MetadataObject::typeCode39});
    const BarcodeReader mod43Only({MetadataObject::typeCode39Mod43});
    for (const QString &text : mod43Vins) {
        const QImage picture = labelFrame(Symbology::Code39, text);
        const QList<DecodedBarcode> codes = both.read(picture, 0);
        ASSERT_EQ(codes.size(), 1) << text.toStdString();
        EXPECT_EQ(codes[0].text, text);
        EXPECT_EQ(codes[0].type, MetadataObject::typeCode39Mod43);
        ASSERT_EQ(plainOnly.read(picture, 0).size(), 1);
        EXPECT_EQ(plainOnly.read(picture, 0)[0].type, MetadataObject::typeCode39);
    }

    const QImage prefixed = labelFrame(Symbology::Code39, QStringLiteral("I") + vin);
    const QList<DecodedBarcode> codes = both.read(prefixed, 0);
    ASSERT_EQ(codes.size(), 1);
    EXPECT_EQ(codes[0].text, QStringLiteral("I") + vin);
    EXPECT_EQ(codes[0].type, MetadataObject::typeCode39);
    EXPECT_TRUE(mod43Only.read(prefixed, 0).isEmpty());
}

// Every code of a label is read, top to bottom: a frame in which any strategy finds a code gives
// them all, so a part number nearest the centre or easier to read no longer comes alone.
TEST(BarcodeReader, ReadsEveryCodeOfALabelInReadingOrder)
{
    const BarcodeReader reader(vinTypes);
    for (const LabelLayout &layout : labelLayouts()) {
        const QVideoFrame frame = videoFrameFromImage(layout.frame);
        QList<int> readingFrames;
        for (int f = 0; f < ReadStrategy::cycleLength(); ++f) {
            SCOPED_TRACE(std::string(layout.name) + ", strategy " + std::to_string(f));
            QStringList texts;
            for (const DecodedBarcode &code : reader.read(frame, f))
                texts.append(code.text);
            if (!texts.isEmpty()) {
                readingFrames.append(f);
                EXPECT_EQ(texts.join(" | ").toStdString(), layout.readingOrder.join(" | ").toStdString());
            }
        }
        EXPECT_TRUE(readingFrames.contains(0) && readingFrames.contains(4)) << layout.name;
    }
}

// Frames that ZXing-cpp's multi-scale search (its default) cannot read without aborting the
// process: ordinary frames of one clean label, and the same 1-D label twice, one above the other or
// side by side (asked for both at once, ZXing-cpp aborts on the latter). No strategy of the reader
// aborts, and it reads the VIN once.
TEST(BarcodeReader, ReadsFramesThatAbortZXingsMultiScaleSearch)
{
    QTemporaryDir folder;
    const BarcodeReader reader(vinTypes);
    const QImage linear = BarcodeArt::renderSymbol(Symbology::Code128, vin, 2);
    BarcodeArt::Scene fullHd;
    fullHd.frameSize = QSize(1920, 1080);
    const QImage stacked = BarcodeArt::composeSymbols({{linear, QPoint(0, 0)}, {linear, QPoint(0, 2 * linear.height())}});
    struct Picture { QString name; QImage image; bool cleanLabel; };
    QList<Picture> pictures{{"one above the other", BarcodeArt::renderScene(stacked, fullHd), false},
                            {"side by side", BarcodeArt::renderScene(sideBySide(linear, linear), fullHd), false}};
    for (const QSize size : {QSize(1280, 720), QSize(1920, 1080)}) {
        BarcodeArt::Scene scene;
        scene.frameSize = size;
        scene.noiseSigma = 3;
        scene.caption = QStringLiteral("VIN ") + vin;
        const QImage picture = BarcodeArt::renderScene(BarcodeArt::renderSymbol(Symbology::Code39, vin, 3), scene);
        const QString path = folder.filePath(QStringLiteral("label-%1.png").arg(size.height()));
        ASSERT_TRUE(picture.save(path));
        QProcess zxing;
        zxing.start(QStringLiteral(ZQT_ZXING_DEFAULTS_BINARY), {path});
        ASSERT_TRUE(zxing.waitForFinished(60000));
        EXPECT_EQ(zxing.exitStatus(), QProcess::CrashExit) << "ZXing-cpp read the frame: " << zxing.readAll().toStdString();
        pictures.append({path, picture, true});
    }
    for (const Picture &picture : pictures) {
        SCOPED_TRACE(picture.name.toStdString());
        const QVideoFrame frame = videoFrameFromImage(picture.image);
        for (int f = 0; f < ReadStrategy::cycleLength(); ++f) {
            const QList<DecodedBarcode> codes = reader.read(frame, f);
            EXPECT_LE(codes.size(), 1) << "strategy " << f;
            if (picture.cleanLabel && f == 0) {
                EXPECT_EQ(codes.size(), 1) << "the fast strategy reads a clean label";
            }
            for (const DecodedBarcode &code : codes)
                EXPECT_EQ(code.text, vin);
        }
    }
}

TEST(BarcodeReader, FramesWithoutCodesOrWithoutSenseGiveNothing)
{
    const BarcodeReader reader(BarcodeReader::knownTypes());
    const QImage blank = TestData::filled(1280, 720, Qt::white);
    QImage emptySymbol(400, 100, QImage::Format_Grayscale8);
    emptySymbol.fill(255);
    const QImage labelWithoutCode = BarcodeArt::renderScene(emptySymbol, {});
    for (const QImage &picture : {blank, labelWithoutCode}) {
        for (int f = 0; f < ReadStrategy::cycleLength(); ++f)
            EXPECT_TRUE(reader.read(videoFrameFromImage(picture), f).isEmpty());
    }

    // Noise of odd and tiny sizes in every layout, and frames that are not frames.
    QRandomGenerator random(7);
    for (const QSize size : {QSize(1, 1), QSize(3, 7), QSize(17, 1), QSize(641, 479), QSize(1921, 3)}) {
        QImage noise(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
            random.fillRange(reinterpret_cast<quint32 *>(noise.scanLine(y)), size.width());
        for (int f = 0; f < ReadStrategy::cycleLength(); ++f) {
            EXPECT_TRUE(reader.read(noise, f).isEmpty());
            EXPECT_TRUE(reader.read(frameWithLayout(noise, QVideoFrameFormat::Format_UYVY), f).isEmpty());
            EXPECT_TRUE(reader.read(videoFrameFromImage(noise), f).isEmpty());
        }
    }
    EXPECT_TRUE(reader.read(QVideoFrame(), 0).isEmpty());
    EXPECT_TRUE(reader.read(QImage(), 0).isEmpty());
    EXPECT_TRUE(BarcodeReader({}).read(labelFrame(Symbology::Code39, vin), 0).isEmpty());
}

// Gives the tests the session's way in.
struct FrameFedOutput : MetadataOutput { using MetadataOutput::videoFrameArrived; };

struct Delivery { QList<MetadataObject> objects; bool onGuiThread = false; };

class MetadataOutputTest : public ::testing::Test
{
protected:
    void TearDown() override { CaptureDevice::removeStandIns(); }

    // A running session over a picture stand-in, with an output reporting the given types.
    std::shared_ptr<MetadataOutput> startSession(const QImage &picture, const QStringList &types)
    {
        CaptureDevice *device = CaptureDevice::addStandIn(picture);
        EXPECT_NE(device, nullptr);
        session = std::make_unique<CaptureSession>();
        session->addInput(CaptureDeviceInput::deviceInputWithDevice(device, nullptr));
        auto output = std::make_shared<MetadataOutput>();
        session->addOutput(output);
        output->setMetadataObjectTypes(types);
        output->setMetadataObjectsDelegate(
            [this](const QList<MetadataObject> &objects, CaptureConnection *connection) {
                deliveries.append({objects, QThread::currentThread() == qApp->thread()});
                connectionSeen = connection != nullptr;
            },
            nullptr);
        session->startRunning();
        return output;
    }

    std::unique_ptr<CaptureSession> session;
    QList<Delivery> deliveries;
    bool connectionSeen = false;
};

TEST_F(MetadataOutputTest, StreamsCodesToTheDelegateOnTheGuiThread)
{
    BarcodeArt::Scene scene;
    scene.frameSize = QSize(960, 540);
    scene.centre = QPointF(0.5, 0.25);
    const QImage symbol = BarcodeArt::renderSymbol(Symbology::Code128, vin, 3);
    // The bars in the frame's unit square: the symbol less its 10-module quiet zone, centred.
    const QSizeF barsSize((symbol.width() - 60) / 960.0, (symbol.height() - 60) / 540.0);
    const QRectF bars = QRectF(QPointF(0.5, 0.25) - QPointF(barsSize.width(), barsSize.height()) / 2, barsSize)
                            .adjusted(-0.005, -0.005, 0.005, 0.005);
    const std::shared_ptr<MetadataOutput> output = startSession(BarcodeArt::renderScene(symbol, scene), vinTypes);

    QTRY_VERIFY_WITH_TIMEOUT(deliveries.size() >= 3, 10000);
    for (const Delivery &delivery : std::as_const(deliveries)) {
        EXPECT_TRUE(delivery.onGuiThread);
        ASSERT_EQ(delivery.objects.size(), 1);
        const MetadataObject &object = delivery.objects[0];
        EXPECT_EQ(object.type, MetadataObject::typeCode128);
        EXPECT_EQ(object.stringValue, vin);
        EXPECT_EQ(object.frameSize, QSizeF(960, 540));
        // The rows the code was read on, across all of its bars.
        EXPECT_TRUE(bars.contains(object.bounds));
        EXPECT_NEAR(object.bounds.width(), bars.width(), 0.02);
        EXPECT_EQ(object.corners.size(), 4);
    }
    EXPECT_TRUE(connectionSeen);
    EXPECT_GE(output->framesRead(), quint64(deliveries.size()));
}

TEST_F(MetadataOutputTest, ReportsOnlyTheSelectedTypes)
{
    const QImage both = sideBySide(BarcodeArt::renderSymbol(Symbology::Code39, vin, 3),
                                 BarcodeArt::renderSymbol(Symbology::QRCode, QStringLiteral("claim 42"), 5));
    const std::shared_ptr<MetadataOutput> output = startSession(BarcodeArt::renderScene(both, {}), {});

    // Nothing is read while no type is wanted.
    QTest::qWait(300);
    EXPECT_EQ(output->framesRead(), 0u);
    EXPECT_EQ(output->availableMetadataObjectTypes(), BarcodeReader::knownTypes());

    output->setMetadataObjectTypes({MetadataObject::typeQRCode, QStringLiteral("org.example.Unknown")});
    EXPECT_EQ(output->metadataObjectTypes(), QStringList{MetadataObject::typeQRCode});
    QTRY_VERIFY_WITH_TIMEOUT(deliveries.size() >= 2, 10000);
    output->setMetadataObjectTypes(vinTypes);
    const qsizetype beforeSwitch = deliveries.size();
    QTRY_VERIFY_WITH_TIMEOUT(deliveries.size() >= beforeSwitch + 3, 10000);
    // Frames in flight at the switch may still carry the QR code; the last ones may not.
    for (const Delivery &delivery : deliveries.mid(beforeSwitch + 2)) {
        ASSERT_EQ(delivery.objects.size(), 1);
        EXPECT_EQ(delivery.objects[0].type, MetadataObject::typeCode39);
    }
    EXPECT_EQ(deliveries.first().objects[0].type, MetadataObject::typeQRCode);
}

// Every code of a frame is delivered: in reading order, or by the owner's ranking with reading
// order within a rank. With the capture screen's ranking the valid VIN comes first wherever it
// sits on the label, a VIN-shaped number next, other codes last.
TEST_F(MetadataOutputTest, DeliversEveryCodeOfAFrameByTheOwnersRanking)
{
    const auto delivered = [](const QImage &picture, const MetadataOutput::Ranking &ranking) {
        FrameFedOutput output;
        output.setMetadataObjectTypes(vinTypes);
        output.setMetadataObjectsRanking(ranking);
        QStringList deliveries; // the texts of each delivery, joined
        output.setMetadataObjectsDelegate(
            [&deliveries](const QList<MetadataObject> &objects, CaptureConnection *) {
                QStringList texts;
                for (const MetadataObject &object : objects)
                    texts.append(object.stringValue);
                deliveries.append(texts.join(" | "));
            },
            nullptr);
        output.videoFrameArrived(videoFrameFromImage(picture));
        EXPECT_TRUE(QTest::qWaitFor([&deliveries] { return !deliveries.isEmpty(); }, 10000));
        return deliveries.value(0).toStdString();
    };
    const MetadataOutput::Ranking vinFirst = [](const MetadataObject &object) { return VINPayload::rank(object.stringValue); };
    for (const LabelLayout &layout : labelLayouts()) {
        SCOPED_TRACE(layout.name);
        EXPECT_EQ(delivered(layout.frame, {}), layout.readingOrder.join(" | ").toStdString());
        EXPECT_EQ(delivered(layout.frame, vinFirst), layout.vinFirst.join(" | ").toStdString());
    }
}

TEST_F(MetadataOutputTest, NewestFrameWinsWhileTheWorkerIsBusy)
{
    FrameFedOutput output;
    output.setMetadataObjectTypes(vinTypes);
    QStringList texts;
    output.setMetadataObjectsDelegate(
        [&texts](const QList<MetadataObject> &objects, CaptureConnection *) { texts.append(objects[0].stringValue); },
        nullptr);
    // Ten frames in one turn of the event loop: the first goes to the worker, each later one
    // replaces the one waiting, and only the tenth is read after the first.
    for (int i = 0; i < 10; ++i)
        output.videoFrameArrived(videoFrameFromImage(labelFrame(Symbology::Code128, QStringLiteral("FRAME-%1").arg(i))));
    QTRY_COMPARE_WITH_TIMEOUT(output.framesRead(), 2u, 10000);
    QTest::qWait(100);
    EXPECT_EQ(output.framesRead(), 2u);
    EXPECT_EQ(output.framesDropped(), 8u);
    EXPECT_EQ(texts, QStringList({QStringLiteral("FRAME-0"), QStringLiteral("FRAME-9")}));
}

TEST_F(MetadataOutputTest, StopsCallingWhenTheContextGoesAndTearsDownWithAFrameInFlight)
{
    auto output = std::make_unique<FrameFedOutput>();
    output->setMetadataObjectTypes(vinTypes);
    int calls = 0;
    auto context = std::make_unique<QObject>();
    output->setMetadataObjectsDelegate([&calls](const QList<MetadataObject> &, CaptureConnection *) { ++calls; },
                                       context.get());
    const QVideoFrame frame = videoFrameFromImage(labelFrame(Symbology::DataMatrix, vin, 4, QSize(1920, 1080)));
    output->videoFrameArrived(frame);
    QTRY_COMPARE_WITH_TIMEOUT(calls, 1, 10000);

    context.reset();
    output->videoFrameArrived(frame);
    QTest::qWait(300);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(output->framesRead(), 1u); // no delegate left: the frame is not even read

    output->setMetadataObjectsDelegate([&calls](const QList<MetadataObject> &, CaptureConnection *) { ++calls; }, nullptr);
    output->videoFrameArrived(frame);
    output->videoFrameArrived(frame);
    output.reset(); // joins the worker in the middle of the frame
    QTest::qWait(200);
    EXPECT_EQ(calls, 1);
}

} // namespace

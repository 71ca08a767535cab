// Makes a sample clip: a printed VIN label (Code 39) in front of a camera that is still pulling
// focus, then holds it with a slightly unsteady hand: the label drifts and turns a little, with
// sensor noise and a little blur. Frames are encoded to VP8 in WebM by GStreamer.
//
//   zqt-make-sample-clip OUTPUT.webm [--vin VIN] [--size 1280x720] [--fps 15] [--seconds 4] [--quick]
//                        [--printed]
//
// --quick encodes at VP8's fastest setting (for benchmarks that make their clips on the fly).
// --printed films a door-frame sticker that carries the VIN in print only, no barcode.
#include "BarcodeArt.h"
#include "VinTextArt.h"
#include "platform/capture/VideoFrames_p.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QProcess>
#include <QTextStream>
#include <cmath>

namespace {

constexpr int modulePixels = 3;
constexpr int focusFrames = 10; // frames in which the blur falls from 6 to 0.8 pixels

bool writeFrame(QProcess &encoder, const QImage &picture)
{
    QVideoFrame frame = ZQTPlatform::videoFrameFromImage(picture);
    if (!frame.map(QVideoFrame::ReadOnly))
        return false;
    const int heights[3] = {frame.height(), frame.height() / 2, frame.height() / 2};
    const int widths[3] = {frame.width(), frame.width() / 2, frame.width() / 2};
    for (int plane = 0; plane < 3; ++plane) {
        for (int row = 0; row < heights[plane]; ++row) {
            const char *line = reinterpret_cast<const char *>(frame.bits(plane)) + qsizetype(row) * frame.bytesPerLine(plane);
            if (encoder.write(line, widths[plane]) != widths[plane])
                return false;
        }
    }
    frame.unmap();
    return encoder.waitForBytesWritten(-1) || encoder.bytesToWrite() == 0;
}

BarcodeArt::Scene sceneAt(int index, double fps, const QSize &size, const QString &vin)
{
    const double t = index / fps;
    BarcodeArt::Scene scene;
    scene.frameSize = size;
    scene.centre = QPointF(0.5 + 0.025 * std::sin(t * 1.7), 0.5 + 0.03 * std::sin(t * 1.1 + 0.6));
    scene.tiltDegrees = 2.0 * std::sin(t * 0.9);
    scene.blurRadius = index < focusFrames ? 6.0 - (6.0 - 0.8) * index / focusFrames : 0.8;
    scene.noiseSigma = 5.0;
    scene.seed = quint32(index + 1);
    scene.caption = QStringLiteral("VIN ") + vin;
    return scene;
}

// The printed sticker, pulling focus as the label does, then held by the same unsteady hand.
VinTextArt::Scene printedSceneAt(int index, double fps, const QSize &size, const QString &vin)
{
    VinTextArt::Scene scene;
    scene.vin = vin;
    scene.frameSize = size;
    scene.textHeight = std::min(size.width(), size.height()) * 0.035;
    scene.tiltDegrees = 1.5;
    scene.noiseSigma = 4.0;
    scene.seed = 3;
    scene = VinTextArt::momentOf(scene, index, fps);
    scene.blurRadius = index < focusFrames ? 5.0 - (5.0 - 0.6) * index / focusFrames : 0.6;
    return scene;
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("Makes a sample clip of a printed VIN label."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("output"), QStringLiteral("The WebM file to write."));
    parser.addOptions({{QStringLiteral("vin"), QStringLiteral("The VIN on the label."), QStringLiteral("VIN"),
                        QStringLiteral("1HGCM82633A004352")},
                       {QStringLiteral("size"), QStringLiteral("Frame size."), QStringLiteral("WxH"),
                        QStringLiteral("1280x720")},
                       {QStringLiteral("fps"), QStringLiteral("Frames per second."), QStringLiteral("N"),
                        QStringLiteral("15")},
                       {QStringLiteral("seconds"), QStringLiteral("Length."), QStringLiteral("N"),
                        QStringLiteral("4")},
                       {QStringLiteral("quick"), QStringLiteral("Encode fast rather than small.")},
                       {QStringLiteral("printed"), QStringLiteral("A sticker with the VIN in print, no barcode.")}});
    parser.process(app);
    QTextStream err(stderr);
    const QStringList positional = parser.positionalArguments();
    const QStringList sizeParts = parser.value(QStringLiteral("size")).split(QLatin1Char('x'));
    const int fps = parser.value(QStringLiteral("fps")).toInt();
    const int frames = fps * parser.value(QStringLiteral("seconds")).toInt();
    const QSize size = sizeParts.size() == 2 ? QSize(sizeParts[0].toInt(), sizeParts[1].toInt()) : QSize();
    if (positional.size() != 1 || size.isEmpty() || fps <= 0 || frames <= 0) {
        err << parser.helpText();
        return 2;
    }
    const QString vin = parser.value(QStringLiteral("vin"));
    const bool quick = parser.isSet(QStringLiteral("quick"));
    const bool printed = parser.isSet(QStringLiteral("printed"));
    const QImage symbol = BarcodeArt::renderSymbol(BarcodeArt::Symbology::Code39, vin, modulePixels);
    if (!printed && (symbol.isNull() || symbol.width() > size.width())) {
        err << "The VIN cannot be drawn as Code 39 in that frame size.\n";
        return 2;
    }

    QProcess encoder;
    encoder.setProcessChannelMode(QProcess::ForwardedChannels);
    encoder.start(QStringLiteral("gst-launch-1.0"),
                  {QStringLiteral("-q"), QStringLiteral("fdsrc"), QStringLiteral("fd=0"), QStringLiteral("!"),
                   QStringLiteral("rawvideoparse"), QStringLiteral("width=%1").arg(size.width()),
                   QStringLiteral("height=%1").arg(size.height()), QStringLiteral("format=i420"),
                   QStringLiteral("framerate=%1/1").arg(fps), QStringLiteral("!"), QStringLiteral("vp8enc"),
                   QStringLiteral("deadline=%1").arg(quick ? 1 : 0), QStringLiteral("cpu-used=%1").arg(quick ? 16 : 0),
                   QStringLiteral("target-bitrate=1500000"), QStringLiteral("keyframe-max-dist=%1").arg(fps * 2),
                   QStringLiteral("!"), QStringLiteral("webmmux"), QStringLiteral("!"), QStringLiteral("filesink"),
                   QStringLiteral("location=%1").arg(positional.first())});
    if (!encoder.waitForStarted()) {
        err << "gst-launch-1.0 could not be started (package gstreamer1.0-tools).\n";
        return 1;
    }
    for (int index = 0; index < frames; ++index) {
        const QImage picture = printed ? VinTextArt::renderScene(printedSceneAt(index, fps, size, vin))
                                       : BarcodeArt::renderScene(symbol, sceneAt(index, fps, size, vin));
        if (!writeFrame(encoder, picture)) {
            err << "The encoder stopped taking frames.\n";
            return 1;
        }
    }
    encoder.closeWriteChannel();
    encoder.waitForFinished(-1);
    if (encoder.exitStatus() != QProcess::NormalExit || encoder.exitCode() != 0) {
        err << "The encoder failed.\n";
        return 1;
    }
    QTextStream(stdout) << "Wrote " << frames << " frames of " << size.width() << "x" << size.height() << " to "
                        << positional.first() << "\n";
    return 0;
}

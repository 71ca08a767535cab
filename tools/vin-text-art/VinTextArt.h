// Synthetic camera frames of printed VINs without a barcode: a door-frame sticker with other
// lines around the VIN, a dark embossed plate seen through the windscreen, a form field on tinted
// paper; in several fonts, tilted, in perspective, blurred, noisy, with glare and JPEG loss. Used by
// the tests, the benchmarks and the sample-clip generator; not part of the component.
#pragma once

#include <QImage>
#include <QList>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QStringList>

namespace VinTextArt {

enum class Carrier { DoorSticker, EmbossedPlate, FormField };

struct Scene
{
    QString vin;
    Carrier carrier = Carrier::DoorSticker;
    QString fontFamily = QStringLiteral("OCR B");
    QSize frameSize{1280, 720};
    QPointF centre{0.5, 0.5}; // the VIN's centre in the frame's unit square
    double textHeight = 28;   // height of the VIN's capitals in frame pixels
    double tiltDegrees = 0;   // rotation in the picture plane
    double perspective = 0;   // 0 square on; 0.2: the right edge a fifth shorter than the left
    double blurRadius = 0;    // pixels
    double noiseSigma = 0;    // grey levels
    double glare = 0;         // 0 none, 1 a bright reflection washing out part of the carrier
    int jpegQuality = 0;      // 0 no compression, else the quality of one JPEG round trip
    quint32 seed = 1;         // noise and the sticker's other lines
};

// The fonts the scenes are printed in (OCR-B first), as installed by the project's packages.
QStringList fontFamilies();

// The frame (Format_RGB32).
QImage renderScene(const Scene &scene);

// A varied set of scenes, deterministic for its arguments: carriers, fonts and conditions taken
// in turn over the VINs given, count scenes in all.
QList<Scene> variedScenes(const QStringList &vins, int count, const QSize &frameSize);

// The same scene a moment later, as a hand-held camera sees it: drifted and turned a little, with
// fresh noise (frame counts from 0).
Scene momentOf(const Scene &scene, int frame, double fps);

} // namespace VinTextArt

// VIN labels as a phone sees them at a car: a set of scenes drawn from a fixed seed, each a label
// seen at an angle (keystone), turned, blurred by a moving hand or by focus, in low light with shot
// noise, with a glare spot and JPEG loss. Used by the benchmarks, the tests and the set generator;
// not part of the component.
#pragma once

#include "BarcodeArt.h"

#include <QByteArray>
#include <QImage>
#include <QPointF>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>

namespace cv {
class Mat;
}

namespace FieldConditions {

// One scene: everything that stays the same while the camera is held still.
struct FieldScene
{
    BarcodeArt::Symbology symbology = BarcodeArt::Symbology::Code39;
    QString vin;
    QSize frameSize{1280, 720};
    double modulePixels = 2;      // narrowest module width in the frame (at the label's far end)
    double keystone = 0;          // how much narrower the far end is than the near end (0..0.35)
    bool farEndRight = true;      // which end of the label is further from the camera
    double rotationDegrees = 0;   // turn of the label in the frame
    double motionModules = 0;     // motion blur length, in module widths
    double motionDegrees = 0;     // direction of the motion in the frame
    double defocusPixels = 0;     // Gaussian defocus sigma
    double whiteLevel = 1;        // the label's white as a fraction of full scale (0.25..1)
    double glare = 0;             // peak of the glare spot as a fraction of full scale (0: none)
    QPointF glareAt{0.5, 0.5};    // the spot's centre in the symbol's unit square
    int jpegQuality = 90;
    QPointF centre{0.5, 0.5};     // label centre in the frame's unit square
    quint32 seed = 1;
};

// Symbology names as the set's files and the benchmark tables show them.
QString symbologyName(BarcodeArt::Symbology symbology);

// The VINs of the set: the 17-character VINs marked valid in the real-VIN table (CSV, first
// column the VIN, second its label). Empty when the file cannot be read.
QStringList realVins(const QString &csvPath);

// Scene index of the set drawn from seed: symbologies in turn (Code 39, Code 128, Code 93,
// Data Matrix), frame sizes 1280x720 and 1920x1080 in turn per symbology, the VIN taken in turn
// from vins. The same index and seed give the same scene everywhere.
FieldScene sceneAt(int index, quint32 seed, const QStringList &vins);

// A camera held still in front of one scene: its frames differ in their shot noise and JPEG
// artefacts only. The optics (perspective, light, glare, blur) are worked out once.
class SteadyCamera
{
public:
    explicit SteadyCamera(const FieldScene &scene);
    ~SteadyCamera();
    SteadyCamera(const SteadyCamera &) = delete;
    SteadyCamera &operator=(const SteadyCamera &) = delete;

    // Frame frameIndex as the JPEG file the camera writes.
    QByteArray jpegFrame(int frameIndex) const;
    // The same frame decoded, grey (Format_Grayscale8).
    QImage frame(int frameIndex) const;

private:
    FieldScene m_scene;
    std::unique_ptr<cv::Mat> m_light; // the scene before noise, full scale 1
};

} // namespace FieldConditions

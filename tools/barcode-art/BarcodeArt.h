// Synthetic barcode pictures: a symbol rendered by ZXing-cpp's writer, and a camera-like scene of
// that symbol printed on a label (tilt, blur, sensor noise, low contrast). Used by the tests, the
// benchmarks and the sample-clip generator; not part of the component.
#pragma once

#include <QImage>
#include <QList>
#include <QPoint>
#include <QPointF>
#include <QSize>
#include <QString>

namespace BarcodeArt {

enum class Symbology { Code39, Code93, Code128, DataMatrix, QRCode };

// The symbol alone, black on white with its quiet zone (10 modules beside 1-D codes, 4 modules
// around 2-D codes); modulePixels pixels per module; barHeight is the height of the bars of 1-D
// codes in pixels (0: 40 modules, at least 40 pixels). Format_Grayscale8. A null image when the
// writer refuses the text (e.g. lower case in Code 39) or modulePixels < 1.
QImage renderSymbol(Symbology symbology, const QString &text, int modulePixels, int barHeight = 0);

// Several symbols on one white sheet, as on labels that carry a part number or a paint code beside
// the VIN: each symbol with its top left at the given pixel position; the sheet ends at the
// right and lower edges of the outermost symbols. Format_Grayscale8.
struct Placed {
    QImage symbol;
    QPoint topLeft;
};
QImage composeSymbols(const QList<Placed> &symbols);

struct Scene {
    QSize frameSize{1280, 720};
    QPointF centre{0.5, 0.5};   // label centre in the frame's unit square
    double tiltDegrees = 0;     // rotation of the label
    double blurRadius = 0;      // Gaussian-ish blur in pixels
    double noiseSigma = 0;      // sensor noise (grey levels)
    double contrast = 1.0;      // 1 black on white; 0.3 grey on light grey
    quint32 seed = 1;           // noise seed (deterministic)
    QString caption;            // printed under the symbol on the label ("VIN 1HGCM82633A004352"), empty for none
};

// A printed label card with the symbol (and caption) on a darker textured background (RGB32).
// The label's corners are not clipped by the frame as long as the symbol fits.
QImage renderScene(const QImage &symbol, const Scene &scene);

// The scene of a label with several symbols (see composeSymbols), placed so that the symbol at
// index anchor, rather than the label, has its centre at scene.centre. The caption is left out.
QImage renderLabelScene(const QList<Placed> &symbols, int anchor, Scene scene);

} // namespace BarcodeArt

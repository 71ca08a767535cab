// The barcode reader behind the metadata output: ZXing-cpp over the luminance of a camera frame,
// read straight from the mapped frame, with the decoding strategy cycled from frame to frame so
// that every frame without a code stays cheap while a steady stream still gets the expensive
// searches.
#pragma once

#include <QList>
#include <QPointF>
#include <QString>
#include <QStringList>

class QImage;
class QVideoFrame;

namespace ZQTPlatform {

// One code found in a frame.
struct DecodedBarcode
{
    QString type;           // the platform's type name, e.g. "org.iso.Code39Mod43"
    QString text;           // the whole payload, check characters included
    QList<QPointF> corners; // frame pixels, clockwise from the symbol's top left
};

// How one frame is searched by ZXing over the whole frame. The cycle, one entry per frame
// (frameNumber modulo its length):
//   0  fast:         local-average binarizer, a few rows for 1-D codes, no rotation
//   1  turned +6:    the middle half of the frame turned by 6 degrees (labels tilted clockwise
//                    by 3 to 9 degrees come out level), resampled at half size, thorough search
//   2  half size:    the thorough search on every second pixel of every second row (large-module
//                    Data Matrix, codes close to the lens, and blurred 2-pixel modules)
//   3  turned -6:    as 1, for labels tilted the other way
//   4  thorough:     every row, also turned by 90 degrees, the slow 2-D detectors
//   5  histogram:    the global-histogram binarizer (uneven light, glare), also turned by 90
//   6  upper half:   the fast search on the upper half of the frame
//   7  lower half:   the fast search on the lower half
// ZXing reads 1-D codes along straight rows, which miss the bars of a label tilted by more than a
// few degrees once it is blurred; the turned copies put such labels level. Its Data Matrix
// detector only finds symbols that cross the middle row of what it is given; the two halves
// move that row to a quarter and three quarters of the frame height.
// A strategy gives every 1-D code its rows cross (ZXing-cpp 1.4 is asked for one at a time, each
// code found painted out before the next read: asked for several at once, it aborts the process on
// frames that show one label twice) and up to four 2-D codes. A frame in which its strategy finds
// a code is then read with the rest of the cycle as well, so that it gives every code it holds.
// A frame in which its strategy finds nothing then goes to the region pass (BarcodeReader.cpp,
// CodeRegions_p.h, RegionViews_p.h): the places that look like codes are found from their
// gradients and read from level, cleaned-up copies, which is what reads labels seen at an angle,
// turned by up to 15 degrees, dark, glared or blurred by a moving hand (bench_field_conditions).
// It costs 5-10 ms per 1080p frame on top of the strategy, on every frame without a read.
// Cost per frame at 1920 x 1080 without a code, one core (bench_barcode_reader): fast 8 ms,
// turned 6-10, half size 8, thorough 20, histogram 8, each half 4; about 9 ms over the cycle. A
// frame with a code costs the whole cycle plus one vain search per strategy for a further 1-D code:
// 45-60 ms on a shared two-core machine, where one strategy took 4-10 ms; paid only while a code
// is in view.
struct ReadStrategy
{
    enum class Binarizer { LocalAverage, GlobalHistogram };

    Binarizer binarizer = Binarizer::LocalAverage;
    bool tryHarder = false;  // every row for 1-D codes, the slow detector for 2-D codes
    bool tryRotate = false;  // also look for codes turned by 90 degrees
    int subsampling = 1;     // read every n-th pixel of every n-th row
    double turnDegrees = 0;  // read a resampled copy of the rows, turned by this angle
    double top = 0;          // the rows read, as fractions of the frame height
    double height = 1;

    // The strategy of a frame.
    static ReadStrategy forFrame(quint64 frameNumber);
    // The length of the cycle.
    static int cycleLength();
};

// Reads the codes of the types it was made for. Immutable after construction: read() runs on any
// thread, concurrently too. It never throws, and tolerates any frame, garbage included.
class BarcodeReader
{
public:
    // Every type name the reader knows, in the platform's order.
    static QStringList knownTypes();

    // The reader of the given platform type names (unknown names are ignored). Code 39 symbols
    // whose last character is the mod 43 check character of the others are reported as Code 39
    // mod 43 when that type is wanted, otherwise as Code 39; either way the text stays whole.
    explicit BarcodeReader(const QStringList &types);

    QStringList types() const { return m_types; }

    // The codes in a frame, read with the frame's strategy (and the rest of the cycle when it finds
    // a code, the region pass when it finds none), in reading order (top to bottom, then left to right, by their centres); a text of
    // one type comes once. The frame is mapped read-only; the luminance plane of YUV frames (and
    // ZXing's own RGB handling for packed RGB) is read in place.
    QList<DecodedBarcode> read(const QVideoFrame &frame, quint64 frameNumber) const;
    // The same for a picture. Grey, RGB32 and 24-bit RGB pictures are read in place; transparent
    // pixels count as white paper.
    QList<DecodedBarcode> read(const QImage &image, quint64 frameNumber) const;

private:
    QStringList m_types;
    int m_formats = 0; // ZXing's format flags of m_types
};

} // namespace ZQTPlatform

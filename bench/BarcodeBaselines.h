// The readers the component's barcode reader is measured against, on the same luminance buffer:
// ZXing-cpp called directly (with one strategy's options, or with its own defaults) and zbar.
#pragma once

#include "platform/capture/BarcodeReader_p.h"
#include "platform/capture/TurnedLuminance_p.h"

#include <QStringList>
#include <QtGlobal>

#include <vector>

namespace zbar {
struct zbar_image_scanner_s;
}

namespace BarcodeBaselines {

// A grey picture in memory: a luminance plane as the component's reader describes one.
using Luminance = ZQTPlatform::PixelLayout;

// The symbologies of VIN labels, as the component's reader names them.
QStringList vinTypes();

// ZXing-cpp with exactly the options, rows and subsampling the component's reader uses for the
// strategy, looking for the symbologies of VIN labels (Code 39, Code 93, Code 128, Data Matrix).
// The rows are read as they are: a turned strategy's resampling is the reader's own work.
QStringList zxingWithStrategy(const Luminance &picture, const ZQTPlatform::ReadStrategy &strategy);

// ZXing-cpp as an application would call it: one ReadBarcode with the library's default options
// (try harder, try rotate, try downscale), the same symbologies.
QStringList zxingDefaults(const Luminance &picture);

// ZXing-cpp asked to try hard without its downscale (which aborts ZXing 1.4 on 1-D codes found at
// two scales): one ReadBarcode with try harder and try rotate, the same symbologies.
QStringList zxingTryHarder(const Luminance &picture);

// zbar's image scanner with Code 39, Code 93 and Code 128 enabled (it reads no Data Matrix).
class ZbarReader
{
public:
    ZbarReader();
    ~ZbarReader();
    ZbarReader(const ZbarReader &) = delete;
    ZbarReader &operator=(const ZbarReader &) = delete;

    // zbar wants rows without padding: pictures with a longer stride are copied first.
    QStringList read(const Luminance &picture);

private:
    zbar::zbar_image_scanner_s *m_scanner;
    std::vector<uchar> m_packed;
};

} // namespace BarcodeBaselines

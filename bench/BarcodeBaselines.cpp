#include "BarcodeBaselines.h"

#include "platform/capture/MetadataOutput.h"

// zbar first: ZXing's Error.h defines macros (UnsupportedError) that break zbar's C++ headers.
#include <zbar.h>

#include <ZXing/ReadBarcode.h>

#include <cstring>
#include <exception>

using namespace zbar; // its C interface, which the C++ header puts in the namespace

namespace BarcodeBaselines {

namespace {

const ZXing::BarcodeFormats linearFormats
    = ZXing::BarcodeFormat::Code39 | ZXing::BarcodeFormat::Code93 | ZXing::BarcodeFormat::Code128;
const ZXing::BarcodeFormats vinFormats = linearFormats | ZXing::BarcodeFormat::DataMatrix;

ZXing::ImageView view(const Luminance &picture)
{
    return {picture.data, picture.width, picture.height, ZXing::ImageFormat::Lum, picture.rowStride};
}

QStringList texts(const ZXing::Results &results)
{
    QStringList found;
    for (const ZXing::Result &result : results) {
        if (result.isValid())
            found.append(QString::fromStdString(result.text()));
    }
    return found;
}

} // namespace

QStringList vinTypes()
{
    using ZQTPlatform::MetadataObject;
    return {MetadataObject::typeCode39, MetadataObject::typeCode39Mod43, MetadataObject::typeCode93,
            MetadataObject::typeCode128, MetadataObject::typeDataMatrix};
}

QStringList zxingWithStrategy(const Luminance &picture, const ZQTPlatform::ReadStrategy &strategy)
{
    ZXing::DecodeHints hints;
    hints.setBinarizer(strategy.binarizer == ZQTPlatform::ReadStrategy::Binarizer::GlobalHistogram
                           ? ZXing::Binarizer::GlobalHistogram
                           : ZXing::Binarizer::LocalAverage)
        .setTryHarder(strategy.tryHarder)
        .setTryRotate(strategy.tryRotate)
        .setTryDownscale(false)
        .setTryCode39ExtendedMode(true);
    const ZXing::ImageView rows
        = view(picture).cropped(0, int(picture.height * strategy.top), picture.width, int(picture.height * strategy.height));
    const ZXing::ImageView pixels = strategy.subsampling > 1 ? rows.subsampled(strategy.subsampling) : rows;
    // As the reader does: one 1-D code, then up to four Data Matrix.
    try {
        QStringList found = texts(ZXing::ReadBarcodes(pixels, ZXing::DecodeHints(hints).setFormats(linearFormats).setMaxNumberOfSymbols(1)));
        found += texts(ZXing::ReadBarcodes(pixels, hints.setFormats(ZXing::BarcodeFormat::DataMatrix).setMaxNumberOfSymbols(4)));
        return found;
    } catch (const std::exception &) {
        return {};
    }
}

namespace {

// One ReadBarcode, as an application calls ZXing-cpp.
QStringList readOne(const Luminance &picture, const ZXing::DecodeHints &hints)
{
    try {
        return texts({ZXing::ReadBarcode(view(picture), hints)});
    } catch (const std::exception &) {
        return {};
    }
}

} // namespace

QStringList zxingDefaults(const Luminance &picture)
{
    return readOne(picture, ZXing::DecodeHints().setFormats(vinFormats));
}

QStringList zxingTryHarder(const Luminance &picture)
{
    return readOne(picture, ZXing::DecodeHints().setFormats(vinFormats).setTryHarder(true).setTryRotate(true).setTryDownscale(false));
}

ZbarReader::ZbarReader() : m_scanner(zbar_image_scanner_create())
{
    zbar_image_scanner_set_config(m_scanner, ZBAR_NONE, ZBAR_CFG_ENABLE, 0);
    for (const zbar_symbol_type_t type : {ZBAR_CODE39, ZBAR_CODE93, ZBAR_CODE128})
        zbar_image_scanner_set_config(m_scanner, type, ZBAR_CFG_ENABLE, 1);
}

ZbarReader::~ZbarReader()
{
    zbar_image_scanner_destroy(m_scanner);
}

QStringList ZbarReader::read(const Luminance &picture)
{
    const uchar *bits = picture.data;
    if (picture.rowStride != picture.width) {
        m_packed.resize(size_t(picture.width) * picture.height);
        for (int y = 0; y < picture.height; ++y)
            std::memcpy(m_packed.data() + size_t(y) * picture.width, picture.data + size_t(y) * picture.rowStride, picture.width);
        bits = m_packed.data();
    }
    zbar_image_t *image = zbar_image_create();
    zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
    zbar_image_set_size(image, unsigned(picture.width), unsigned(picture.height));
    zbar_image_set_data(image, bits, size_t(picture.width) * picture.height, nullptr);
    QStringList found;
    if (zbar_scan_image(m_scanner, image) > 0) {
        for (const zbar_symbol_t *symbol = zbar_image_first_symbol(image); symbol; symbol = zbar_symbol_next(symbol))
            found.append(QString::fromUtf8(zbar_symbol_get_data(symbol), int(zbar_symbol_get_data_length(symbol))));
    }
    zbar_image_destroy(image);
    return found;
}

} // namespace BarcodeBaselines

#include "platform/capture/LineReader_p.h"

#include <zbar.h>

namespace ZQTPlatform {

struct LineReader::Private
{
    zbar::zbar_image_scanner_t *scanner = zbar::zbar_image_scanner_create();
};

LineReader::LineReader() : d(new Private)
{
    zbar::zbar_image_scanner_set_config(d->scanner, zbar::ZBAR_NONE, zbar::ZBAR_CFG_ENABLE, 0);
    for (const zbar::zbar_symbol_type_t type : {zbar::ZBAR_CODE39, zbar::ZBAR_CODE93, zbar::ZBAR_CODE128})
        zbar::zbar_image_scanner_set_config(d->scanner, type, zbar::ZBAR_CFG_ENABLE, 1);
    // Rows only (a line is one row); no caching of results across images.
    zbar::zbar_image_scanner_set_config(d->scanner, zbar::ZBAR_NONE, zbar::ZBAR_CFG_X_DENSITY, 0);
    zbar::zbar_image_scanner_enable_cache(d->scanner, 0);
}

LineReader::~LineReader()
{
    zbar::zbar_image_scanner_destroy(d->scanner);
    delete d;
}

std::optional<LineCode> LineReader::read(const TurnedLuminance &line)
{
    if (line.width < 2 || line.height < 1)
        return std::nullopt;
    const int middle = line.height / 2;
    zbar::zbar_image_t *image = zbar::zbar_image_create();
    zbar::zbar_image_set_format(image, zbar_fourcc('Y', '8', '0', '0'));
    zbar::zbar_image_set_size(image, unsigned(line.width), 1);
    zbar::zbar_image_set_data(image, line.pixels.data() + size_t(middle) * line.width, size_t(line.width), nullptr);
    std::optional<LineCode> code;
    if (zbar::zbar_scan_image(d->scanner, image) > 0) {
        const zbar::zbar_symbol_t *symbol = zbar::zbar_image_first_symbol(image);
        const zbar::zbar_symbol_type_t type = zbar::zbar_symbol_get_type(symbol);
        const LineCode::Symbology symbology = type == zbar::ZBAR_CODE39 ? LineCode::Symbology::Code39
                                              : type == zbar::ZBAR_CODE93 ? LineCode::Symbology::Code93
                                                                          : LineCode::Symbology::Code128;
        code = LineCode{symbology,
                        QString::fromUtf8(zbar::zbar_symbol_get_data(symbol), int(zbar::zbar_symbol_get_data_length(symbol))),
                        0, double(line.width - 1)};
        const unsigned points = zbar::zbar_symbol_get_loc_size(symbol);
        if (points > 0) {
            code->from = zbar::zbar_symbol_get_loc_x(symbol, 0);
            code->to = zbar::zbar_symbol_get_loc_x(symbol, points - 1);
        }
    }
    zbar::zbar_image_destroy(image);
    return code;
}

} // namespace ZQTPlatform

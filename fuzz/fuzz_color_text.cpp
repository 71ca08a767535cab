// Colour text as configuration gives it: read as the platform's scanner reads a hexadecimal
// number. An empty text raises ZQTPlatform::Exception (documented); nothing else may go wrong.
#include "FuzzSupport.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Exception.h"

#include <QColor>

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    try {
        const QColor colour = ZQTVINScanComponentConstants::getColorWithHexString(Fuzz::textOf(data, size));
        if (!colour.isValid() || colour.alpha() != 255)
            std::abort(); // the colour is always a valid, opaque one
    } catch (const ZQTPlatform::Exception &) {
    }
    return 0;
}

// Phone-number layout by digit count, over any text a host or configuration may give.
#include "FuzzSupport.h"

#include "Model/ZQTVINScanComponentConstants.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    ZQTVINScanComponentConstants::getFormatedPhoneNumber(Fuzz::textOf(data, size));
    return 0;
}

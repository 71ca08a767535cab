// VIN text: the check-digit test, the character replacement of the manual path and the capture
// screen's VIN rule for barcode payloads (its candidates and ranking).
#include "FuzzSupport.h"

#include "Utils/VINUtility.h"
#include "ViewControllers/VINPayload_p.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    Fuzz::startApplication();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString text = Fuzz::textOf(data, size);
    VINUtility::checkVINValidity(text);
    VINUtility::checkVINValidity(VINUtility::replaceCharactersInVIN(text));
    // Every candidate the rule tries is checked the same way.
    for (const QString &candidate : VINPayload::candidates(text))
        VINUtility::checkVINValidity(candidate);
    const int rank = VINPayload::rank(text);
    if (rank < 0 || rank > 2)
        std::abort();
    return 0;
}

// What a host implements to learn the outcome of a capture screen: one call per completed VIN,
// scanned from a barcode or typed by hand. The screen holds its delegate by plain, non-owning
// pointer: the host keeps the delegate alive (or clears it) for as long as the screen exists.
#pragma once

#include "platform/foundation/Error.h"

#include <QString>

// The error of a completion report; the null error means none.
using ZQTError = ZQTPlatform::Error;

class VinScannerVCDelegate
{
public:
    virtual ~VinScannerVCDelegate() = default;

    // VIN: the VIN as reported (see ZQTVINCaptureVC::validateVIN); isVINScanned: true for a
    // barcode, false for typed entry; isVINValid: the check-digit result; error: the still
    // picture's failure on the barcode path, otherwise the null error. On the barcode path the
    // call comes from the thread that delivered the still picture, not necessarily the GUI thread;
    // the delegate may wait for the GUI thread there (a blocking queued call) and may delete the
    // screen, on the GUI thread, from its report.
    virtual void didCompleteScanning(const QString &VIN, bool isVINScanned, bool isVINValid,
                                     const ZQTError &error) = 0;
};

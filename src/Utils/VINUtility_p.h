// The VIN check of VINUtility without its log lines, with a middle answer for texts that look
// like a VIN but fail the check digit: for code that sorts many texts that are mostly not VINs.
#pragma once

#include <QString>

namespace VINCheck {

enum class Verdict {
    Valid,      // VINUtility::checkVINValidity is true
    VINShaped,  // 17 characters (hyphens dropped, upper-cased) of digits and letters other than
                // I, O and Q whose check digit does not agree (VINs from outside North America
                // often carry none)
    NotAVIN,    // anything else, a null text too
};

// Thread-safe; logs nothing.
Verdict verdict(const QString &vin);

} // namespace VINCheck

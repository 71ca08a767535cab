// How the capture screen reads a barcode payload as a VIN: the texts validateVIN tries, and how
// promising a payload is, which orders the codes of one camera frame so that the VIN comes first.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace VINPayload {

// The texts validateVIN checks, in its order: the payload less one leading "I" (case-sensitive),
// then for 18 or more characters its first and its last 17.
QStringList candidates(const QString &payload);

// The VIN validateVIN reports for the payload: its first candidate that isValid passes (tried in
// order, none after it), else its first candidate. Without isValid, the VIN rule's verdict, which
// is thread-safe and logs nothing.
QString vinOf(const QString &payload, const std::function<bool(const QString &)> &isValid = {});

// 0: a valid VIN under validateVIN's rule; 1: VIN-shaped (a candidate of 17 VIN characters whose
// check digit does not agree); 2: anything else (part numbers, paint codes, no text).
// Thread-safe; logs nothing.
int rank(const QString &payload);

} // namespace VINPayload

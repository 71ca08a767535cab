// The two VIN rules: the look-alike normaliser and the North-American check-digit test
// (17 characters, check digit in the ninth place), and the VIN result record.
#pragma once

#include "ZQTGlobal.h"

#include <QString>

// The VIN result record handed to the host; the producer sets both fields.
class ZQT_EXPORT ZQTVINDetails
{
public:
    QString VIN() const { return m_VIN; }
    void setVIN(const QString &VIN) { m_VIN = VIN; }
    bool isValid() const { return m_isValid; }
    void setIsValid(bool isValid) { m_isValid = isValid; }

private:
    QString m_VIN; // a null QString stands for an absent VIN
    bool m_isValid = false;
};

class ZQT_EXPORT VINUtility
{
public:
    VINUtility() = delete;

    // "i"/"I" become "1", then "o"/"O" become "0"; nothing else changes. Null stays null.
    static QString replaceCharactersInVIN(const QString &vin);
    // True when the text, without hyphens and upper-cased, is a 17-character VIN whose check
    // digit agrees. Logs the first illegal letter, illegal character or illegal check digit.
    static bool checkVINValidity(const QString &vin);
};

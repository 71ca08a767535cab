#include "Utils/VINUtility.h"
#include "Utils/VINUtility_p.h"

#include "platform/capture/VINTextCandidates_p.h"
#include "platform/foundation/Log.h"

namespace {

// Value of each letter A..Z; 0 marks the letters a VIN may not hold (I, O, Q).
constexpr int kLetterValues[26] = {1, 2, 3, 4, 5, 6, 7, 8, 0, 1, 2, 3, 4,
                                   5, 0, 7, 0, 9, 2, 3, 4, 5, 6, 7, 8, 9};
// Weight of each of the 17 positions; the check digit (ninth) weighs nothing.
constexpr int kPositionWeights[17] = {8, 7, 6, 5, 4, 3, 2, 10, 0, 9, 8, 7, 6, 5, 4, 3, 2};
constexpr int kVINLength = 17;
constexpr int kCheckDigitIndex = 8;

bool isDigit(QChar c) { return c.unicode() >= '0' && c.unicode() <= '9'; }
bool isUpperLatin(QChar c) { return c.unicode() >= 'A' && c.unicode() <= 'Z'; }

void logOffender(const char *what, QChar c)
{
    ZQTPlatform::log(QStringLiteral("METHOD CALL \"checkVINValidity\" found %1 %2")
                         .arg(QLatin1String(what), QString(c)));
}

// The outcome of the check, and the first character that broke a rule (offence names the rule).
struct Examination
{
    VINCheck::Verdict verdict = VINCheck::Verdict::NotAVIN;
    const char *offence = nullptr;
    QChar offender;
};

Examination examine(const QString &vin)
{
    using Verdict = VINCheck::Verdict;
    if (vin.isNull())
        return {};
    const QString v = QString(vin).remove(QLatin1Char('-')).toUpper();
    if (v.size() != kVINLength)
        return {};

    int sum = 0;
    for (int i = 0; i < kVINLength; ++i) {
        const QChar c = v.at(i);
        int value;
        if (isUpperLatin(c)) {
            value = kLetterValues[c.unicode() - 'A'];
            if (value == 0)
                return {Verdict::NotAVIN, "illegal letter character", c};
        } else if (!isDigit(c)) {
            return {Verdict::NotAVIN, "illegal character", c};
        } else {
            value = c.unicode() - '0';
        }
        sum += value * kPositionWeights[i];
    }

    const int remainder = sum % 11;
    const QChar checkDigit = v.at(kCheckDigitIndex);
    if (checkDigit == QLatin1Char('X'))
        return {remainder == 10 ? Verdict::Valid : Verdict::VINShaped, nullptr, QChar()};
    if (!isDigit(checkDigit))
        return {Verdict::VINShaped, "illegal check digit", checkDigit};
    return {remainder == checkDigit.unicode() - '0' ? Verdict::Valid : Verdict::VINShaped, nullptr, QChar()};
}

} // namespace

QString VINUtility::replaceCharactersInVIN(const QString &vin)
{
    if (vin.isNull())
        return QString();
    QString result = vin;
    result.replace(QLatin1Char('i'), QLatin1Char('1'));
    result.replace(QLatin1Char('I'), QLatin1Char('1'));
    result.replace(QLatin1Char('o'), QLatin1Char('0'));
    result.replace(QLatin1Char('O'), QLatin1Char('0'));
    return result;
}

bool VINUtility::checkVINValidity(const QString &vin)
{
    const Examination examination = examine(vin);
    if (examination.offence)
        logOffender(examination.offence, examination.offender);
    return examination.verdict == VINCheck::Verdict::Valid;
}

VINCheck::Verdict VINCheck::verdict(const QString &vin)
{
    return examine(vin).verdict;
}

namespace {

// The printed-VIN reader of the capture layer tests its candidates with this check digit.
const bool textReaderUsesTheVINCheck = [] {
    ZQTPlatform::setVINCheckDigitTest(
        [](const QString &vin) { return VINCheck::verdict(vin) == VINCheck::Verdict::Valid; });
    return true;
}();

} // namespace

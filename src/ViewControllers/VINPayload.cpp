#include "ViewControllers/VINPayload_p.h"

#include "Utils/VINUtility_p.h"


namespace VINPayload {

namespace {

constexpr int vinLength = 17;

} // namespace

QStringList candidates(const QString &payload)
{
    QString vin = payload;
    if (vin.startsWith(QLatin1Char('I')))
        vin.remove(0, 1);
    QStringList texts{vin};
    if (vin.size() > vinLength)
        texts << vin.left(vinLength) << vin.right(vinLength);
    return texts;
}

QString vinOf(const QString &payload, const std::function<bool(const QString &)> &isValid)
{
    const QStringList texts = candidates(payload);
    for (const QString &text : texts) {
        if (isValid ? isValid(text) : VINCheck::verdict(text) == VINCheck::Verdict::Valid)
            return text;
    }
    return texts.first();
}

int rank(const QString &payload)
{
    if (payload.isNull())
        return 2;
    int best = 2;
    for (const QString &text : candidates(payload)) {
        switch (VINCheck::verdict(text)) {
        case VINCheck::Verdict::Valid:
            return 0;
        case VINCheck::Verdict::VINShaped:
            best = 1;
            break;
        case VINCheck::Verdict::NotAVIN:
            break;
        }
    }
    return best;
}

} // namespace VINPayload

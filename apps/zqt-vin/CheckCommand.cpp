// zqt-vin check [--json] VIN...
#include "Commands.h"

#include "Utils/VINUtility.h"

#include <QJsonObject>

namespace ZqtVin {

namespace {
const char kUsage[] = "usage: zqt-vin check [--json] VIN...\n";
} // namespace

int runCheck(const QStringList &args, Streams io)
{
    const Arguments parsed = parseArguments(args, {}, {QStringLiteral("--json")});
    if (const std::optional<int> status = endEarly(args, parsed.problem, io, kUsage))
        return *status;
    if (parsed.operands.isEmpty())
        return usageError(io, QStringLiteral("no VIN given"), kUsage);
    const bool json = parsed.has("--json");
    bool allValid = true;
    for (const QString &vin : parsed.operands) {
        const bool valid = VINUtility::checkVINValidity(vin);
        allValid = allValid && valid;
        if (json) {
            printJson(QJsonObject{{"input", vin}, {"valid", valid}}, io.out);
        } else {
            io.out << escapedForLine(vin) << '\t' << (valid ? "valid" : "invalid") << "\n";
        }
    }
    return allValid ? Success : Negative;
}

} // namespace ZqtVin

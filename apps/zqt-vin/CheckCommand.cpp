// zqt-vin check [--json] VIN...
#include "Commands.h"

#include "Utils/VINUtility.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace ZqtVin {

int runCheck(const QStringList &args, Streams io)
{
    QStringList vins = args;
    const bool json = vins.removeAll(QStringLiteral("--json")) > 0;
    if (vins.isEmpty()) {
        io.err << "usage: zqt-vin check [--json] VIN...\n";
        return UsageError;
    }
    bool allValid = true;
    for (const QString &vin : vins) {
        const bool valid = VINUtility::checkVINValidity(vin);
        allValid = allValid && valid;
        if (json) {
            const QJsonObject line{{"input", vin}, {"valid", valid}};
            io.out << QJsonDocument(line).toJson(QJsonDocument::Compact) << "\n";
        } else {
            io.out << vin << '\t' << (valid ? "valid" : "invalid") << "\n";
        }
    }
    return allValid ? Success : Negative;
}

} // namespace ZqtVin

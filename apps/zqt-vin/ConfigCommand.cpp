// zqt-vin config get KEY [--as KIND] [--bundle DIR]
#include "Commands.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/foundation/Bundle.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ZqtVin {

namespace {

const char kUsage[] = "usage: zqt-vin config get KEY [--as string|color|float|bool|array|dictionary] [--bundle DIR]\n";

QString colorText(const QColor &color)
{
    return QString::asprintf("#%02X%02X%02X%02X", color.red(), color.green(), color.blue(), color.alpha());
}

// Prints the typed getter's answer for a key; false when the kind is unknown.
bool printValue(const QString &key, const QString &kind, QTextStream &out)
{
    using C = ZQTVINScanComponentConstants;
    if (kind == QLatin1String("string"))
        out << C::getConfigStringForKey(key);
    else if (kind == QLatin1String("color"))
        out << colorText(C::getGlobalColorForKey(key));
    else if (kind == QLatin1String("float"))
        out << QString::number(C::getGlobalFloatForKey(key));
    else if (kind == QLatin1String("bool"))
        out << (C::getGlobalBoolForKey(key) ? "true" : "false");
    else if (kind == QLatin1String("array"))
        out << QJsonDocument(QJsonArray::fromVariantList(C::getConfigArrayForKey(key))).toJson(QJsonDocument::Compact);
    else if (kind == QLatin1String("dictionary"))
        out << QJsonDocument(QJsonObject::fromVariantMap(C::getGlobalDictionaryForKey(key))).toJson(QJsonDocument::Compact);
    else
        return false;
    out << "\n";
    return true;
}

} // namespace

int runConfig(const QStringList &args, Streams io)
{
    const Arguments parsed = parseArguments(args.mid(1), {QStringLiteral("--as"), QStringLiteral("--bundle")});
    QString problem = parsed.problem;
    if (args.value(0) != QLatin1String("get"))
        problem = args.isEmpty() ? QStringLiteral("no action given") : QStringLiteral("unknown action \"%1\"").arg(args.first());
    if (const std::optional<int> status = endEarly(args, problem, io, kUsage))
        return *status;
    if (parsed.operands.size() != 1)
        return usageError(io, parsed.operands.isEmpty() ? QStringLiteral("no KEY given") : QStringLiteral("more than one KEY"),
                          kUsage);
    const QString key = parsed.operands.first();
    const QString kind = parsed.has("--as") ? parsed.value("--as") : QStringLiteral("string");
    const QString bundleDir = parsed.value("--bundle");
    if (!bundleDir.isEmpty()) {
        if (!QDir(bundleDir).exists())
            return usageError(io, QStringLiteral("no such folder: ") + bundleDir, kUsage);
        ZQTPlatform::Bundle::setMainBundlePath(QDir(bundleDir).absolutePath());
    }
    if (!printValue(key, kind, io.out))
        return usageError(io, QStringLiteral("unknown kind \"%1\"").arg(kind), kUsage);
    return Success;
}

} // namespace ZqtVin

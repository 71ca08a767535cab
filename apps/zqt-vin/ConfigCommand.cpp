// zqt-vin config get KEY [--as KIND] [--bundle DIR]
#include "Commands.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "platform/Bundle.h"

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
    QString key;
    QString kind = QStringLiteral("string");
    QString bundleDir;
    if (args.value(0) != QLatin1String("get")) {
        io.err << kUsage;
        return UsageError;
    }
    for (int i = 1; i < args.size(); ++i) {
        const QString &arg = args.at(i);
        if ((arg == QLatin1String("--as") || arg == QLatin1String("--bundle")) && i + 1 < args.size())
            (arg == QLatin1String("--as") ? kind : bundleDir) = args.at(++i);
        else if (!arg.startsWith(QLatin1String("--")) && key.isEmpty())
            key = arg;
        else {
            io.err << kUsage;
            return UsageError;
        }
    }
    if (key.isEmpty()) {
        io.err << kUsage;
        return UsageError;
    }
    if (!bundleDir.isEmpty()) {
        if (!QDir(bundleDir).exists()) {
            io.err << "zqt-vin: no such folder: " << bundleDir << "\n";
            return UsageError;
        }
        ZQTPlatform::Bundle::setMainBundlePath(QDir(bundleDir).absolutePath());
    }
    if (!printValue(key, kind, io.out)) {
        io.err << "zqt-vin: unknown kind \"" << kind << "\"\n" << kUsage;
        return UsageError;
    }
    return Success;
}

} // namespace ZqtVin

// The claim photo store's small helpers: byte counts as text, the overlay JSON, the permission
// test and the built-in slot list.
#include "Utils/ZQTVINScanUtils.h"

#include "Model/ZQTVINPhotoCaptureEntity.h"
#include "Utils/ZQTDeviceUtils.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Exception.h"
#include "platform/foundation/Log.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <iterator>
#include <optional>

namespace {

// JSON for a value made only of what JSON can carry; otherwise the reason it cannot be written.
std::optional<QJsonValue> toJson(const QVariant &value, QString *reason)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return QJsonValue(QJsonValue::Null);
    case QMetaType::Bool:
        return QJsonValue(value.toBool());
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::Long: case QMetaType::ULong:
    case QMetaType::LongLong: case QMetaType::ULongLong: case QMetaType::Short: case QMetaType::UShort:
        return QJsonValue::fromVariant(value);
    case QMetaType::Float:
    case QMetaType::Double: {
        const double number = value.toDouble();
        if (std::isfinite(number))
            return QJsonValue(number);
        *reason = std::isnan(number) ? QStringLiteral("Invalid number value (NaN) in JSON write")
                                     : QStringLiteral("Invalid number value (infinite) in JSON write");
        return std::nullopt;
    }
    case QMetaType::QString:
        return QJsonValue(value.toString());
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        QJsonArray array;
        for (const QVariant &element : value.toList()) {
            const std::optional<QJsonValue> json = toJson(element, reason);
            if (!json)
                return std::nullopt;
            array.append(*json);
        }
        return QJsonValue(array);
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        QJsonObject object;
        const QVariantMap map = value.toMap();
        for (auto it = map.cbegin(); it != map.cend(); ++it) {
            const std::optional<QJsonValue> json = toJson(it.value(), reason);
            if (!json)
                return std::nullopt;
            object.insert(it.key(), *json);
        }
        return QJsonValue(object);
    }
    default:
        *reason = QStringLiteral("Invalid type in JSON write (%1)").arg(QLatin1String(value.typeName()));
        return std::nullopt;
    }
}

} // namespace

QString ZQTVINScanUtils::transformedValue(const QVariant &value)
{
    static const char *const units[] = {"bytes", "KB", "MB", "GB", "TB"};
    constexpr qsizetype unitCount = qsizetype(std::size(units));
    double amount = value.toDouble();
    qsizetype unit = 0;
    while (amount > 1024.0) {
        amount *= 1.0 / 1024.0;
        ++unit;
    }
    if (unit >= unitCount)
        throw ZQTPlatform::Exception(QStringLiteral("NSRangeException"),
                                     QStringLiteral("*** -[__NSArrayI objectAtIndex:]: index %1 beyond bounds [0 .. %2]")
                                         .arg(unit)
                                         .arg(unitCount - 1));
    return QString::asprintf("%4.2f ", amount) + QLatin1String(units[unit]);
}

QString ZQTVINScanUtils::createJSONStringFromData(const QVariant &data)
{
    QString reason;
    const std::optional<QJsonValue> overlays = toJson(data, &reason);
    if (!overlays) {
        ZQTPlatform::log(QStringLiteral("Got an error: %1").arg(reason));
        return QString();
    }
    const QJsonObject wrapped{{QStringLiteral("overlays"), *overlays}};
    return QString::fromUtf8(QJsonDocument(wrapped).toJson(QJsonDocument::Compact));
}

bool ZQTVINScanUtils::hasCameraAndLocationPermissions()
{
    const bool camera = ZQTDeviceUtils::isCameraUsePermitted();
    const bool location = ZQTDeviceUtils::isLocationUsePermitted();
    return camera && location;
}

QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> ZQTVINScanUtils::builtinZQTPhotoCaptureEntitis()
{
    return {};
}

void ZQTVINScanUtils::builtinThumbnailPreviewItemsWithCompletion(
    std::function<void(const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> &, const ZQTPlatform::Error &)> completion)
{
    ZQTPlatform::Dispatch::globalAsync([completion = std::move(completion)] {
        if (completion)
            completion(builtinZQTPhotoCaptureEntitis(), ZQTPlatform::Error());
    });
}

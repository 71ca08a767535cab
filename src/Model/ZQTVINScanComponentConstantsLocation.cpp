// The location side of ZQTVINScanComponentConstants: one position request at a time through the
// location manager, the stamp text and the stamp drawn on a photo.
#include "Model/ZQTVINScanComponentConstants.h"
#include "Model/ZQTVINScanComponentConstantsLocation_p.h"

#include "platform/foundation/Dispatch.h"
#include "platform/ui/Font.h"
#include "platform/ui/ImageContext.h"

#include <QFontMetricsF>
#include <QGeoPositionInfo>
#include <QLocale>
#include <QPointer>

#include <cmath>

using ZQTPlatform::Image;
using ZQTPlatform::LocationManager;

namespace {

// The singleton's request: the manager it runs on and the completion still to be called.
// GUI thread only.
struct LocationRequest
{
    QPointer<LocationManager> manager;
    ZQTVINScanComponentConstants::LatLongDateCompletion requestGetLatLong;
};

LocationRequest &request()
{
    static LocationRequest state;
    return state;
}

// Replaces the request's manager with a new one reporting to the singleton.
LocationManager *replaceManager(ZQTVINScanComponentConstants *delegate)
{
    LocationRequest &state = request();
    if (state.manager)
        state.manager->dispose();
    state.manager = new LocationManager;
    state.manager->setDelegate(delegate);
    return state.manager;
}

void startUpdating(LocationManager *manager)
{
    manager->requestWhenInUseAuthorization();
    manager->startUpdatingLocation();
}

// Stops the manager and, when it is the current one, hands over the pending completion (which
// is then answered; a request is answered once).
ZQTVINScanComponentConstants::LatLongDateCompletion finish(LocationManager *manager)
{
    manager->stopUpdatingLocation();
    LocationRequest &state = request();
    if (manager != state.manager)
        return {};
    return std::exchange(state.requestGetLatLong, {});
}

QSizeF textSize(const QFont &font, const QString &text)
{
    return QFontMetricsF(font).size(0, text);
}

// The platform's integral rectangle: the smallest one of whole points that holds the rectangle.
QRectF roundedOutward(const QRectF &rect)
{
    const qreal left = std::floor(rect.left());
    const qreal top = std::floor(rect.top());
    return QRectF(left, top, std::ceil(rect.right()) - left, std::ceil(rect.bottom()) - top);
}

} // namespace

namespace ZQTLocationStampPrivate {

QString stampText(const QDateTime &at, const QTimeZone &zone, float latitude, float longitude)
{
    const QDateTime local = at.toTimeZone(zone);
    const QString date = QLocale(QStringLiteral("en_US")).toString(local, QStringLiteral("MMM dd, yyyy  HH:mm:ss"));
    // QString::asprintf formats numbers the same in every locale.
    return QString::asprintf("%ls %ls\nLat: %.10g  Long: %.10g", qUtf16Printable(date),
                             qUtf16Printable(zone.abbreviation(local)), double(latitude), double(longitude));
}

QFont stampFont(qreal size)
{
    if (std::optional<QFont> font = ZQTPlatform::Font::fontWithName(ZQTVINScanComponentConstants::getGlobalFontBold(), size))
        return *font;
    QFont font = ZQTPlatform::Font::systemFontOfSize(size);
    font.setBold(true);
    return font;
}

qreal stampFontSize(const QString &text, qreal imageWidth)
{
    const float limit = float(0.33 * imageWidth);
    qreal size = 9.0;
    qreal width = textSize(stampFont(size), text).width();
    while (width <= limit && width > 0) {
        size += 2.0;
        width = textSize(stampFont(size), text).width();
    }
    return size;
}

} // namespace ZQTLocationStampPrivate

LocationManager *ZQTVINScanComponentConstants::locationManager() const
{
    return request().manager;
}

ZQTVINScanComponentConstants::LatLongDateCompletion ZQTVINScanComponentConstants::requestGetLatLong() const
{
    return request().requestGetLatLong;
}

void ZQTVINScanComponentConstants::setRequestGetLatLong(const LatLongDateCompletion &requestGetLatLong)
{
    request().requestGetLatLong = requestGetLatLong;
}

void ZQTVINScanComponentConstants::enableLocationServices()
{
    startUpdating(replaceManager(this));
}

void ZQTVINScanComponentConstants::getTextOverlayWithLatLongDate(const LatLongDateCompletion &completion)
{
    setRequestGetLatLong(completion);
    LocationManager *manager = replaceManager(this);
    manager->setDistanceFilter(LocationManager::kCLDistanceFilterNone);
    manager->setDesiredAccuracy(LocationManager::kCLLocationAccuracyHundredMeters);
    startUpdating(manager);
}

QString ZQTVINScanComponentConstants::getTextOverlayWithLatitude(float latitude, float longitude)
{
    return ZQTLocationStampPrivate::stampText(QDateTime::currentDateTime(), QTimeZone::systemTimeZone(), latitude,
                                              longitude);
}

Image ZQTVINScanComponentConstants::getSuperImposedImage(const Image &image, const QString &text)
{
    const QSizeF size = image.size();
    ZQTPlatform::ImageContext context(size, false, 1.0);
    if (!context.isValid())
        return image;
    context.drawImage(image, QRectF(QPointF(0, 0), size));

    const QFont font = ZQTLocationStampPrivate::stampFont(ZQTLocationStampPrivate::stampFontSize(text, size.width()));
    const QSizeF textBox = textSize(font, text);
    const qreal x = size.width() - 1.05 * textBox.width();
    QPainter &painter = context.painter();
    painter.fillRect(QRectF(x, 0, 1.05 * textBox.width(), 1.1 * textBox.height()), Qt::black);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(roundedOutward(QRectF(x + 0.02 * textBox.width(), 0, textBox.width(), textBox.height())),
                     Qt::AlignRight | Qt::AlignTop, text);
    return context.takeImage();
}

void ZQTVINScanComponentConstants::getSuperImposedImage(const Image &image, const OutputImageCompletion &outputImage)
{
    getTextOverlayWithLatLongDate([image, outputImage](bool success, const QString &text) {
        if (!success) {
            outputImage(image);
            return;
        }
        // Drawing a camera-sized photo takes tens of milliseconds: off the GUI thread.
        ZQTPlatform::Dispatch::globalAsync([image, text, outputImage] {
            const Image stamped = getSuperImposedImage(image, text);
            ZQTPlatform::Dispatch::mainAsync([stamped, outputImage] { outputImage(stamped); });
        });
    });
}

void ZQTVINScanComponentConstants::locationManager(LocationManager *manager, const QList<QGeoPositionInfo> &)
{
    const QGeoCoordinate position = manager->location().coordinate();
    const float latitude = float(position.latitude());
    const float longitude = float(position.longitude());
    if (const LatLongDateCompletion completion = finish(manager))
        completion(true, getTextOverlayWithLatitude(latitude, longitude));
}

void ZQTVINScanComponentConstants::locationManager(LocationManager *manager, const ZQTPlatform::Error &)
{
    if (const LatLongDateCompletion completion = finish(manager))
        completion(false, QString());
}

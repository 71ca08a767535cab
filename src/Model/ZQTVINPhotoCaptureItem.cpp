#include "Model/ZQTVINPhotoCaptureItem.h"

using ZQTPlatform::Image;

QString ZQTVINPhotoCaptureItem::claimId() const { return m_claimId; }
void ZQTVINPhotoCaptureItem::setClaimId(const QString &claimId) { m_claimId = claimId; }
QString ZQTVINPhotoCaptureItem::photoTitle() const { return m_photoTitle; }
void ZQTVINPhotoCaptureItem::setPhotoTitle(const QString &photoTitle) { m_photoTitle = photoTitle; }
Image ZQTVINPhotoCaptureItem::photo() const { return m_photo; }
void ZQTVINPhotoCaptureItem::setPhoto(const Image &photo) { m_photo = photo; }
QDateTime ZQTVINPhotoCaptureItem::imageCreatedDate() const { return m_imageCreatedDate; }
void ZQTVINPhotoCaptureItem::setImageCreatedDate(const QDateTime &imageCreatedDate) { m_imageCreatedDate = imageCreatedDate; }
QString ZQTVINPhotoCaptureItem::imagePath() const { return m_imagePath; }
void ZQTVINPhotoCaptureItem::setImagePath(const QString &imagePath) { m_imagePath = imagePath; }
double ZQTVINPhotoCaptureItem::latitude() const { return m_latitude; }
void ZQTVINPhotoCaptureItem::setLatitude(double latitude) { m_latitude = latitude; }
double ZQTVINPhotoCaptureItem::longitude() const { return m_longitude; }
void ZQTVINPhotoCaptureItem::setLongitude(double longitude) { m_longitude = longitude; }

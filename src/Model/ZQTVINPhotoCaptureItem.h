// One photo of a claim, taken or still expected: which claim and title it is, the picture when
// there is one, when the record was made, where its JPEG file lives and the position it was
// taken at. Records are plain values made by the claim photo store on request.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QDateTime>
#include <QString>

class ZQT_EXPORT ZQTVINPhotoCaptureItem
{
public:
    QString claimId() const;
    void setClaimId(const QString &claimId);
    // The photo title: the base name of its file.
    QString photoTitle() const;
    void setPhotoTitle(const QString &photoTitle);
    // The picture; the null image when the photo has not been taken.
    ZQTPlatform::Image photo() const;
    void setPhoto(const ZQTPlatform::Image &photo);
    // When the record was made; invalid (unset) for a photo that is only expected.
    QDateTime imageCreatedDate() const;
    void setImageCreatedDate(const QDateTime &imageCreatedDate);
    // Full path of the photo's JPEG file.
    QString imagePath() const;
    void setImagePath(const QString &imagePath);
    // Degrees; 0 when unknown.
    double latitude() const;
    void setLatitude(double latitude);
    double longitude() const;
    void setLongitude(double longitude);

private:
    QString m_claimId;
    QString m_photoTitle;
    ZQTPlatform::Image m_photo;
    QDateTime m_imageCreatedDate;
    QString m_imagePath;
    double m_latitude = 0.0;
    double m_longitude = 0.0;
};

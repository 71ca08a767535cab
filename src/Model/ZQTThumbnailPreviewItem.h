// A light description of a carousel slot for hosts: texts and the names or paths of its pictures
// rather than the pictures themselves (only the thumbnail may be given as an image).
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QString>

class ZQT_EXPORT ZQTThumbnailPreviewItem
{
public:
    QString title() const;
    void setTitle(const QString &title);
    QString displayTitle() const;
    void setDisplayTitle(const QString &displayTitle);
    ZQTPlatform::Image thumbnailImage() const;
    void setThumbnailImage(const ZQTPlatform::Image &thumbnailImage);
    QString thumbnailImageName() const;
    void setThumbnailImageName(const QString &thumbnailImageName);
    QString thumbnailImagePath() const;
    void setThumbnailImagePath(const QString &thumbnailImagePath);
    QString overlayImageName() const;
    void setOverlayImageName(const QString &overlayImageName);
    QString overlayImagePath() const;
    void setOverlayImagePath(const QString &overlayImagePath);
    QString overlayHeader() const;
    void setOverlayHeader(const QString &overlayHeader);
    QString overlayTitle() const;
    void setOverlayTitle(const QString &overlayTitle);
    QString overlayDesc() const;
    void setOverlayDesc(const QString &overlayDesc);

private:
    QString m_title;
    QString m_displayTitle;
    ZQTPlatform::Image m_thumbnailImage;
    QString m_thumbnailImageName;
    QString m_thumbnailImagePath;
    QString m_overlayImageName;
    QString m_overlayImagePath;
    QString m_overlayHeader;
    QString m_overlayTitle;
    QString m_overlayDesc;
};

// A photo slot of a claim: what to photograph, its carousel label and thumbnail, the title its
// photo is saved under, the help overlay that explains the shot (texts, a picture or animation
// frames, whether it shows by itself the first time) and the outline laid over the live camera.
// Slots are shared between the screen and its help overlay, so they are handed around by
// std::shared_ptr.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QList>
#include <QString>
#include <memory>

class ZQT_EXPORT ZQTVINPhotoCaptureEntity
{
public:
    // A slot with the given texts and pictures; no save title, frames or camera overlay.
    static std::shared_ptr<ZQTVINPhotoCaptureEntity>
    createWithTitle(const QString &title, const ZQTPlatform::Image &thumbnail, const QString &overlayHeader,
                    const QString &overlayTitle, const QString &overlayDesc, const ZQTPlatform::Image &overlayImage,
                    bool overlayAutoDisplay);
    // As above; the help overlay never shows by itself.
    static std::shared_ptr<ZQTVINPhotoCaptureEntity>
    createWithTitle(const QString &title, const ZQTPlatform::Image &thumbnail, const QString &overlayHeader,
                    const QString &overlayTitle, const QString &overlayDesc, const ZQTPlatform::Image &overlayImage);
    // Texts only: both pictures are null, so the slot is not usable until they are set.
    static std::shared_ptr<ZQTVINPhotoCaptureEntity> createWithTitle(const QString &title, const QString &overlayHeader,
                                                                     const QString &overlayTitle,
                                                                     const QString &overlayDesc,
                                                                     bool overlayAutoDisplay);
    // The thumbnail and the overlay picture are read by name from "<bundleName>.bundle" in the
    // host's main bundle; both are null when the main bundle has no such bundle.
    static std::shared_ptr<ZQTVINPhotoCaptureEntity>
    createWithTitle(const QString &title, const QString &bundleName, const QString &thumbnailName,
                    const QString &overlayHeader, const QString &overlayTitle, const QString &overlayDesc,
                    const QString &overlayImageName, bool overlayAutoDisplay);

    // A usable slot has an overlay picture, a header, a thumbnail and a title.
    bool isValidModel() const;
    // Sets the overlay picture to the image `name` of "<name>.bundle" in the main bundle, when there
    // is one. The bundle is named by the first argument too; the second is accepted and not used.
    ZQTVINPhotoCaptureEntity &setOverlayWithName(const QString &name, const QString &bunldeName);
    // Sets the overlay picture from an image file, when it can be read.
    ZQTVINPhotoCaptureEntity &setOverlayWithPath(const QString &path);

    // Carousel label and display title.
    QString title() const;
    void setTitle(const QString &title);
    // Base name under which the slot's photo is stored.
    QString saveTitle() const;
    void setSaveTitle(const QString &saveTitle);
    ZQTPlatform::Image thumbnailImage() const;
    void setThumbnailImage(const ZQTPlatform::Image &thumbnailImage);
    QString overlayHeader() const;
    void setOverlayHeader(const QString &overlayHeader);
    QString overlayTitle() const;
    void setOverlayTitle(const QString &overlayTitle);
    QString overlayDesc() const;
    void setOverlayDesc(const QString &overlayDesc);
    // The help overlay's picture; for an animated overlay its first frame.
    ZQTPlatform::Image overlayImage() const;
    void setOverlayImage(const ZQTPlatform::Image &overlayImage);
    // Frames of an animated help overlay; empty for a still one.
    QList<ZQTPlatform::Image> animationOverlayImages() const;
    void setAnimationOverlayImages(const QList<ZQTPlatform::Image> &animationOverlayImages);
    // Outline laid over the live camera while this slot is shot.
    ZQTPlatform::Image cameraOverlayImage() const;
    void setCameraOverlayImage(const ZQTPlatform::Image &cameraOverlayImage);
    // Show the help overlay by itself the first time the slot is selected.
    bool autoDisplayFirstTime() const;
    void setAutoDisplayFirstTime(bool autoDisplayFirstTime);
    // Set once the help overlay has been shown for this slot.
    bool hasBeenDisplayed() const;
    void setHasBeenDisplayed(bool hasBeenDisplayed);

private:
    QString m_title;
    QString m_saveTitle;
    ZQTPlatform::Image m_thumbnailImage;
    QString m_overlayHeader;
    QString m_overlayTitle;
    QString m_overlayDesc;
    ZQTPlatform::Image m_overlayImage;
    QList<ZQTPlatform::Image> m_animationOverlayImages;
    ZQTPlatform::Image m_cameraOverlayImage;
    bool m_autoDisplayFirstTime = false;
    bool m_hasBeenDisplayed = false;
};

#include "Model/ZQTVINPhotoCaptureEntity.h"

#include "lib/Categories/Bundle+MYBundle.h"
#include "platform/foundation/Bundle.h"

using ZQTPlatform::Bundle;
using ZQTPlatform::Image;

namespace {

// "<name>.bundle" of the host's main bundle, or the null bundle.
Bundle hostResourceBundle(const QString &name)
{
    const QString path = Bundle::mainBundle().pathForResource(name, QStringLiteral("bundle"));
    return path.isEmpty() ? Bundle() : Bundle::bundleWithPath(path);
}

// An image of a bundle of the host; nothing at all when there is no such bundle (the media
// bundle and main-bundle fallbacks of imageWithBundle do not stand in for a missing bundle).
Image imageInBundle(const Bundle &bundle, const QString &imageName)
{
    return bundle.isNull() ? Image() : MYBundle::imageWithBundle(bundle, imageName);
}

} // namespace

std::shared_ptr<ZQTVINPhotoCaptureEntity>
ZQTVINPhotoCaptureEntity::createWithTitle(const QString &title, const Image &thumbnail, const QString &overlayHeader,
                                          const QString &overlayTitle, const QString &overlayDesc,
                                          const Image &overlayImage, bool overlayAutoDisplay)
{
    auto entity = std::make_shared<ZQTVINPhotoCaptureEntity>();
    entity->m_title = title;
    entity->m_thumbnailImage = thumbnail;
    entity->m_overlayHeader = overlayHeader;
    entity->m_overlayTitle = overlayTitle;
    entity->m_overlayDesc = overlayDesc;
    entity->m_overlayImage = overlayImage;
    entity->m_autoDisplayFirstTime = overlayAutoDisplay;
    return entity;
}

std::shared_ptr<ZQTVINPhotoCaptureEntity>
ZQTVINPhotoCaptureEntity::createWithTitle(const QString &title, const Image &thumbnail, const QString &overlayHeader,
                                          const QString &overlayTitle, const QString &overlayDesc,
                                          const Image &overlayImage)
{
    return createWithTitle(title, thumbnail, overlayHeader, overlayTitle, overlayDesc, overlayImage, false);
}

std::shared_ptr<ZQTVINPhotoCaptureEntity>
ZQTVINPhotoCaptureEntity::createWithTitle(const QString &title, const QString &overlayHeader,
                                          const QString &overlayTitle, const QString &overlayDesc,
                                          bool overlayAutoDisplay)
{
    return createWithTitle(title, Image(), overlayHeader, overlayTitle, overlayDesc, Image(), overlayAutoDisplay);
}

std::shared_ptr<ZQTVINPhotoCaptureEntity>
ZQTVINPhotoCaptureEntity::createWithTitle(const QString &title, const QString &bundleName,
                                          const QString &thumbnailName, const QString &overlayHeader,
                                          const QString &overlayTitle, const QString &overlayDesc,
                                          const QString &overlayImageName, bool overlayAutoDisplay)
{
    const Bundle bundle = hostResourceBundle(bundleName);
    return createWithTitle(title, imageInBundle(bundle, thumbnailName), overlayHeader, overlayTitle, overlayDesc,
                           imageInBundle(bundle, overlayImageName), overlayAutoDisplay);
}

bool ZQTVINPhotoCaptureEntity::isValidModel() const
{
    return !m_overlayImage.isNull() && !m_overlayHeader.isEmpty() && !m_thumbnailImage.isNull()
        && !m_title.isEmpty();
}

ZQTVINPhotoCaptureEntity &ZQTVINPhotoCaptureEntity::setOverlayWithName(const QString &name, const QString &bunldeName)
{
    // Hosts rely on the bundle being named by `name`; bunldeName stays part of the call only.
    Q_UNUSED(bunldeName);
    const Image image = imageInBundle(hostResourceBundle(name), name);
    if (!image.isNull())
        m_overlayImage = image;
    return *this;
}

ZQTVINPhotoCaptureEntity &ZQTVINPhotoCaptureEntity::setOverlayWithPath(const QString &path)
{
    const Image image = Image::imageWithContentsOfFile(path);
    if (!image.isNull())
        m_overlayImage = image;
    return *this;
}

QString ZQTVINPhotoCaptureEntity::title() const { return m_title; }
void ZQTVINPhotoCaptureEntity::setTitle(const QString &title) { m_title = title; }
QString ZQTVINPhotoCaptureEntity::saveTitle() const { return m_saveTitle; }
void ZQTVINPhotoCaptureEntity::setSaveTitle(const QString &saveTitle) { m_saveTitle = saveTitle; }
Image ZQTVINPhotoCaptureEntity::thumbnailImage() const { return m_thumbnailImage; }
void ZQTVINPhotoCaptureEntity::setThumbnailImage(const Image &thumbnailImage) { m_thumbnailImage = thumbnailImage; }
QString ZQTVINPhotoCaptureEntity::overlayHeader() const { return m_overlayHeader; }
void ZQTVINPhotoCaptureEntity::setOverlayHeader(const QString &overlayHeader) { m_overlayHeader = overlayHeader; }
QString ZQTVINPhotoCaptureEntity::overlayTitle() const { return m_overlayTitle; }
void ZQTVINPhotoCaptureEntity::setOverlayTitle(const QString &overlayTitle) { m_overlayTitle = overlayTitle; }
QString ZQTVINPhotoCaptureEntity::overlayDesc() const { return m_overlayDesc; }
void ZQTVINPhotoCaptureEntity::setOverlayDesc(const QString &overlayDesc) { m_overlayDesc = overlayDesc; }
Image ZQTVINPhotoCaptureEntity::overlayImage() const { return m_overlayImage; }
void ZQTVINPhotoCaptureEntity::setOverlayImage(const Image &overlayImage) { m_overlayImage = overlayImage; }
QList<Image> ZQTVINPhotoCaptureEntity::animationOverlayImages() const { return m_animationOverlayImages; }
void ZQTVINPhotoCaptureEntity::setAnimationOverlayImages(const QList<Image> &animationOverlayImages) { m_animationOverlayImages = animationOverlayImages; }
Image ZQTVINPhotoCaptureEntity::cameraOverlayImage() const { return m_cameraOverlayImage; }
void ZQTVINPhotoCaptureEntity::setCameraOverlayImage(const Image &cameraOverlayImage) { m_cameraOverlayImage = cameraOverlayImage; }
bool ZQTVINPhotoCaptureEntity::autoDisplayFirstTime() const { return m_autoDisplayFirstTime; }
void ZQTVINPhotoCaptureEntity::setAutoDisplayFirstTime(bool autoDisplayFirstTime) { m_autoDisplayFirstTime = autoDisplayFirstTime; }
bool ZQTVINPhotoCaptureEntity::hasBeenDisplayed() const { return m_hasBeenDisplayed; }
void ZQTVINPhotoCaptureEntity::setHasBeenDisplayed(bool hasBeenDisplayed) { m_hasBeenDisplayed = hasBeenDisplayed; }

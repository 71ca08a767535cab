// The capture screen's photo slots: the built-in VIN slot made from configuration and pictures,
// the frames of its animated help, and the list of the host's further slots.
#include "ViewControllers/ZQTVINCaptureVC.h"

#include "Model/ZQTVINScanComponentConstants.h"
#include "ViewControllers/ZQTVINCaptureVC_p.h"
#include "platform/foundation/Dispatch.h"
#include "platform/foundation/Exception.h"
#include "platform/foundation/Log.h"
#include "platform/foundation/StringScanner_p.h"

#include <QMutexLocker>

using namespace ZQTPlatform;
using Constants = ZQTVINScanComponentConstants;

namespace {

constexpr qint32 vinSlotIndex = 0;

// A picture by name: the host application's own first, then the component's.
Image namedImage(const QString &name)
{
    const Image hostImage = Image::imageNamed(name);
    return hostImage.isNull() ? Image::imageNamed(name, Bundle::frameworkBundle()) : hostImage;
}

// A frame of an animated help overlay. A frame list may only name existing pictures: a missing
// one is a mistake in the configuration and ends the program like other configuration errors.
Image requiredFrame(const QString &name)
{
    const Image frame = namedImage(name);
    if (frame.isNull()) {
        const QString reason = QStringLiteral("help picture \"%1\" was not found").arg(name);
        log(QStringLiteral("Configuration error: ") + reason);
        throw Exception(QStringLiteral("NSInvalidArgumentException"), reason);
    }
    return frame;
}

QString helpPageText(const QString &key)
{
    return Constants::getConfigHelpOverlayValueForKey(key, vinSlotIndex).toString();
}

} // namespace

void ZQTVINCaptureVC::setVINPhotoCaptureEntity()
{
    logStep("setVINPhotoCaptureEntity");
    auto slot = std::make_shared<ZQTVINPhotoCaptureEntity>();
    slot->setThumbnailImage(namedImage(QStringLiteral("carousel_VIN")));
    // A missing or empty label list leaves the slot without a title, so it is dropped below.
    slot->setTitle(Constants::getConfigArrayForKey(QStringLiteral("TextCarouselPreviewArray")).value(0).toString());
    slot->setSaveTitle(Constants::getConfigStringForKey(QStringLiteral("TextVINImageSaveTitle")));

    // A single picture name stands for the still help picture, whatever it says; a list names
    // the frames of an animation.
    const QVariant imageName = Constants::getConfigHelpOverlayValueForKey(QStringLiteral("imageName"), vinSlotIndex);
    if (imageName.typeId() == QMetaType::QString)
        slot->setOverlayImage(namedImage(QStringLiteral("help_info_vin")));
    else
        slot->setOverlayImage(getAnimationImages(vinSlotIndex, *slot));

    slot->setCameraOverlayImage(namedImage(QStringLiteral("cam_info_vin")));
    slot->setOverlayHeader(helpPageText(QStringLiteral("header")));
    slot->setOverlayTitle(helpPageText(QStringLiteral("title")));
    slot->setOverlayDesc(helpPageText(QStringLiteral("descr")));
    slot->setAutoDisplayFirstTime(
        ZQTPlatform::StringScanner::boolValue(
            Constants::getConfigHelpOverlayValueForKey(QStringLiteral("autoDisplayFirstTime"), vinSlotIndex))
            .value_or(false));

    if (!slot->isValidModel())
        return;
    // Every appearance builds the slot again; its help counts as shown once for the whole screen.
    if (d->vinScanItem)
        slot->setHasBeenDisplayed(d->vinScanItem->hasBeenDisplayed());
    const QMutexLocker lock(&d->photoStateLock);
    d->vinScanItem = slot;
}

Image ZQTVINCaptureVC::getAnimationImages(qint32 index, ZQTVINPhotoCaptureEntity &forPhotoCaptureEntity)
{
    const QStringList names =
        Constants::getConfigHelpOverlayValueForKey(QStringLiteral("imageName"), index).toStringList();
    QList<Image> frames;
    frames.reserve(2 * names.size());
    for (const QString &name : names)
        frames.append(requiredFrame(name));
    // Played forward and back: the last picture twice in the middle, the first at both ends.
    for (qsizetype i = names.size() - 1; i >= 0; --i)
        frames.append(frames.at(i));
    forPhotoCaptureEntity.setAnimationOverlayImages(frames);
    return frames.isEmpty() ? Image() : frames.last();
}

QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> ZQTVINCaptureVC::builtinZQTPhotoCaptureEntitis() const
{
    return d->thumbnailItems;
}

void ZQTVINCaptureVC::builtinThumbnailPreviewItemsWithCompletion(const PhotoCaptureEntitiesCompletion &completion)
{
    // The list is taken here, on the caller's thread, so the pool thread never reads the screen.
    const QList<std::shared_ptr<ZQTVINPhotoCaptureEntity>> entities = builtinZQTPhotoCaptureEntitis();
    Dispatch::globalAsync([entities, completion] { completion(entities, Error()); });
}

#include "lib/Categories/Bundle+MYBundle.h"

#include "platform/foundation/DeviceProfile.h"

#include <exception>

namespace MYBundle {

ZQTPlatform::Bundle MYBundle()
{
    const QString path = ZQTPlatform::Bundle::mainBundle().pathForResource(QStringLiteral("ZQTMedia"),
                                                                            QStringLiteral("bundle"));
    return path.isEmpty() ? ZQTPlatform::Bundle() : ZQTPlatform::Bundle::bundleWithPath(path);
}

ZQTPlatform::Image imageWithBundle(const ZQTPlatform::Bundle &bundle, const QString &imageName)
{
    using ZQTPlatform::Image;
    // Systems up to 8.0 could not look images up in a framework's bundle; those read the
    // media bundle through the application's image lookup instead.
    Image image = ZQTPlatform::DeviceProfile::current().systemVersionValue() > 8.0f
        ? Image::imageNamed(imageName, bundle)
        : Image::imageNamed(QStringLiteral("ZQTMedia.bundle/%1").arg(imageName));
    if (image.isNull()) {
        try {
            const ZQTPlatform::Bundle media = MYBundle();
            if (!media.isNull())
                image = Image::imageWithContentsOfFile(media.resourcePath() + QLatin1Char('/') + imageName);
        } catch (const std::exception &) {
            // A failure on the media bundle's path only means this way found nothing.
        }
    }
    if (image.isNull())
        image = Image::imageNamed(imageName);
    return image;
}

} // namespace MYBundle

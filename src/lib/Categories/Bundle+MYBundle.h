// The media bundle "ZQTMedia.bundle" of the host's main bundle and image lookup in a bundle.
#pragma once

#include "ZQTGlobal.h"
#include "platform/foundation/Bundle.h"
#include "platform/ui/Image.h"

namespace MYBundle {

// The media bundle, or the null bundle when the main bundle has none.
ZQT_EXPORT ZQTPlatform::Bundle MYBundle();
// The named image from the bundle (or, on systems of version 8.0 and older, from
// "ZQTMedia.bundle/<name>" of the main bundle), then from the media bundle's folder, then from
// the main bundle by bare name. Null when none has it.
ZQT_EXPORT ZQTPlatform::Image imageWithBundle(const ZQTPlatform::Bundle &bundle, const QString &imageName);

} // namespace MYBundle

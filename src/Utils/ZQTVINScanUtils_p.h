// Rules and image steps of the claim photo store, apart from the folders they act on.
#pragma once

#include "ZQTGlobal.h"
#include "platform/ui/Image.h"

#include <QByteArray>
#include <QImage>
#include <QSizeF>
#include <QString>

namespace ZQTVINScanUtilsPrivate {

// The name of the store's root folder in the documents folder.
inline constexpr char photoRootName[] = "ZQTPhotos";

// The extended attribute that marks a file as excluded from backup, and its value.
inline constexpr char backupExclusionAttribute[] = "user.xdg.robots.backup";
inline constexpr char backupExclusionValue[] = "false";

// True when the text can be used as one path component: not empty, not "." or "..", and
// without "/" or NUL.
ZQT_EXPORT bool isPathComponent(const QString &text);
// isPathComponent, logging the refusal of a text that is not one; `kind` names it in the line
// ("claim id", "photo title").
bool acceptsPathComponent(const QString &text, const char *kind);

// False, with a log line, when the path is a symbolic link: the store never follows one for a
// claim folder or a photo, since the link would carry its writes and deletions elsewhere. `kind`
// names the entry in the line ("claim folder", "photo").
bool acceptsStoreEntry(const QString &path, const char *kind);

// The stored size for an image of this size in points: when a side is above 800, the long side
// becomes 800 and the short one is scaled in proportion (a square becomes 800 x 800); otherwise
// the size is kept. Computed in 32-bit floats, as the stored sizes are defined by them.
ZQT_EXPORT QSizeF compressedSize(const QSizeF &points);

// The bitmap made smaller by a whole factor (2 to 16): each output pixel is the average of a
// factor x factor block. Rows and columns left over at the right and bottom edges are dropped.
// 32-bit RGB and premultiplied ARGB bitmaps keep their format; other formats are converted to
// one of these first.
ZQT_EXPORT QImage boxReduced(const QImage &bitmap, int factor);

// The largest whole factor (at most 16) by which a bitmap can be box-reduced and still have at
// least `target` pixels on both sides; 1 when it cannot be halved.
ZQT_EXPORT int boxReductionFactor(const QSize &bitmap, const QSizeF &target);

// The first step of compressImage: the image drawn upright into a scale-1 bitmap of
// compressedSize(image.size()) pixels. Null for a null image.
ZQT_EXPORT QImage drawnForStorage(const ZQTPlatform::Image &image);

// The bitmap encoded as JPEG at a quality from 0.0 to 1.0; empty when encoding fails.
ZQT_EXPORT QByteArray jpegData(const QImage &bitmap, float quality);

} // namespace ZQTVINScanUtilsPrivate

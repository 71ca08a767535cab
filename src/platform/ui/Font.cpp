#include "platform/ui/Font.h"

#include <QFontDatabase>

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

namespace {

void applySize(QFont &font, qreal size)
{
    font.setPixelSize(std::max(1, int(std::lround(size))));
}

QString stringOf(FcPattern *pattern, const char *object)
{
    FcChar8 *value = nullptr;
    if (FcPatternGetString(pattern, object, 0, &value) != FcResultMatch || !value)
        return QString();
    return QString::fromUtf8(reinterpret_cast<const char *>(value));
}

// The installed face whose property (PostScript name or full name) is exactly the name.
// FcFontList only returns faces that match every element of the pattern, unlike FcFontMatch,
// which always returns its best guess.
std::optional<QFont> listFace(const char *property, const QByteArray &name)
{
    FcPattern *pattern = FcPatternCreate();
    FcPatternAddString(pattern, property, reinterpret_cast<const FcChar8 *>(name.constData()));
    FcObjectSet *objects = FcObjectSetBuild(FC_FAMILY, FC_STYLE, FC_WEIGHT, FC_SLANT, nullptr);
    FcFontSet *faces = FcFontList(nullptr, pattern, objects);
    FcObjectSetDestroy(objects);
    FcPatternDestroy(pattern);

    std::optional<QFont> result;
    if (faces && faces->nfont > 0) {
        FcPattern *face = faces->fonts[0];
        QFont font(stringOf(face, FC_FAMILY));
        const QString style = stringOf(face, FC_STYLE);
        if (!style.isEmpty())
            font.setStyleName(style);
        int weight = 0;
        if (FcPatternGetInteger(face, FC_WEIGHT, 0, &weight) == FcResultMatch)
            font.setWeight(QFont::Weight(std::clamp(FcWeightToOpenType(weight), 1, 1000)));
        int slant = 0;
        if (FcPatternGetInteger(face, FC_SLANT, 0, &slant) == FcResultMatch)
            font.setStyle(slant == FC_SLANT_ITALIC ? QFont::StyleItalic
                          : slant == FC_SLANT_OBLIQUE ? QFont::StyleOblique : QFont::StyleNormal);
        result = font;
    }
    if (faces)
        FcFontSetDestroy(faces);
    return result;
}

} // namespace

std::optional<QFont> Font::fontWithName(const QString &name, qreal size)
{
    if (name.trimmed().isEmpty())
        return std::nullopt;
    const QByteArray utf8 = name.toUtf8();
    std::optional<QFont> font = listFace(FC_POSTSCRIPT_NAME, utf8);
    if (!font)
        font = listFace(FC_FULLNAME, utf8);
    if (font)
        applySize(*font, size);
    return font;
}

QFont Font::systemFontOfSize(qreal size)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    applySize(font, size);
    return font;
}

QFont Font::labelFontWithName(const QString &name, const QFont &current)
{
    // Fonts made here carry their points as a pixel size; others may carry a Qt point size.
    const qreal size = current.pixelSize() > 0 ? current.pixelSize() : current.pointSizeF();
    return fontWithName(name, size).value_or(systemFontOfSize(17.0));
}

} // namespace ZQTPlatform

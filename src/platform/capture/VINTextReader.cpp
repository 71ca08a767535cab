#include "platform/capture/VINTextReader_p.h"

#include "platform/capture/VINTextPicture_p.h"

#include <algorithm>
#include <cmath>

namespace ZQTPlatform {

namespace {

// Lines lower than this hold no characters the engine can read.
constexpr int smallestLineHeight = 8;
// A line that can hold 17 characters is at least this many times as wide as it is high (the
// narrowest capitals and digits are about half as wide as high).
constexpr int leastLineAspect = 7;
// Below this slant (radians, about 1.5 degrees) the engine reads lines as they are.
constexpr double levelEnough = 0.026;

// The lines that could hold 17 characters.
QList<QRect> vinSizedLines(QList<QRect> lines)
{
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const QRect &line) {
                                   return line.height() < smallestLineHeight
                                       || line.width() < leastLineAspect * line.height();
                               }),
                lines.end());
    return lines;
}

} // namespace

QList<VINTextCandidate> VINTextReader::read(const QImage &picture)
{
    if (!isReady() || picture.isNull())
        return {};
    const double scale = std::min(1.0, double(longestSide) / std::max(picture.width(), picture.height()));
    const QImage evened = evenedForReading(strokeDepth(smoothGrey(picture, scale)));
    QList<VINTextCandidate> candidates = readLevelled(evened);
    for (VINTextCandidate &candidate : candidates) {
        const QRectF box = candidate.box;
        candidate.box = QRectF(box.topLeft() / scale, box.size() / scale).toAlignedRect();
    }
    return candidates;
}

// A label held at a slant is turned level first: the engine's layout splits slanted lines into
// pieces, and a VIN in pieces gives no run of 17.
QList<VINTextCandidate> VINTextReader::readLevelled(const QImage &evened)
{
    const double skew = skewOf(evened);
    if (std::abs(skew) < levelEnough)
        return readLines(m_engine.findLines(withoutRuledLines(evened)));
    // Turned about the middle.
    const QPointF middle(evened.width() / 2.0, evened.height() / 2.0);
    QTransform turn;
    turn.translate(middle.x(), middle.y());
    turn.rotateRadians(-skew);
    turn.translate(-middle.x(), -middle.y());
    QList<VINTextCandidate> candidates = readLines(m_engine.findLines(withoutRuledLines(turned(evened, turn))));
    const QTransform back = turn.inverted();
    for (VINTextCandidate &candidate : candidates)
        candidate.box = back.mapRect(QRectF(candidate.box)).toAlignedRect();
    return candidates;
}

QList<VINTextCandidate> VINTextReader::readLines(const QList<QRect> &found)
{
    QList<QRect> lines = vinSizedLines(found);
    // The tallest lines first: a VIN is rarely the smallest print around, and a low line costs
    // the engine most (it scales every line to one height before reading).
    std::stable_sort(lines.begin(), lines.end(), [](const QRect &a, const QRect &b) { return a.height() > b.height(); });
    QList<VINTextCandidate> candidates;
    for (qsizetype i = 0; i < std::min<qsizetype>(lines.size(), maxLines); ++i) {
        // A margin of a third of the line's height: the layout's boxes hug the characters.
        const int margin = lines[i].height() / 3;
        candidates += vinCandidates(m_engine.readLine(lines[i].adjusted(-margin, -margin, margin, margin)),
                                    [this](const QRect &glyph) { return m_engine.readGlyph(glyph); });
        // One line with a VIN that passes its check digit is the read of this picture: the rest
        // would only cost time.
        if (std::any_of(candidates.begin(), candidates.end(), [](const VINTextCandidate &c) { return c.checkDigitValid; }))
            break;
    }
    return candidates;
}

} // namespace ZQTPlatform

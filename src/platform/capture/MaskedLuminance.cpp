#include "platform/capture/MaskedLuminance_p.h"

#include <QPolygon>

#include <algorithm>

namespace ZQTPlatform {

namespace {

// Pixels added around a code's area: blurred edges of its outer bars.
constexpr int blurMargin = 3;
// Fewer edges than this on the line a code was read on: no bars to follow (every 1-D code has more).
constexpr int fewestEdges = 8;

// The lines of a grey picture that run along a code: rows for a code read along rows, columns for
// one read along columns. A line is addressed by its place across the code ("over"), its samples
// by their place along it.
class CodeLines
{
public:
    CodeLines(const std::vector<uchar> &pixels, int width, int height, bool alongRows)
        : m_pixels(pixels), m_width(width), m_height(height), m_alongRows(alongRows)
    {
    }

    int lineCount() const { return m_alongRows ? m_height : m_width; }

    // The samples from..to of a line, dark (true) where darker than threshold.
    std::vector<bool> dark(int over, int from, int to, int threshold) const
    {
        std::vector<bool> line;
        line.reserve(size_t(to - from + 1));
        for (int along = from; along <= to; ++along)
            line.push_back(at(over, along) < threshold);
        return line;
    }

    // Halfway between the darkest and the lightest sample of a line.
    int midLevel(int over, int from, int to) const
    {
        int low = 255;
        int high = 0;
        for (int along = from; along <= to; ++along) {
            low = std::min(low, at(over, along));
            high = std::max(high, at(over, along));
        }
        return (low + high + 1) / 2;
    }

private:
    int at(int over, int along) const
    {
        return m_alongRows ? m_pixels[size_t(over) * m_width + along] : m_pixels[size_t(along) * m_width + over];
    }

    const std::vector<uchar> &m_pixels;
    int m_width;
    int m_height;
    bool m_alongRows;
};

int edgeCount(const std::vector<bool> &line)
{
    int edges = 0;
    for (size_t i = 1; i < line.size(); ++i)
        edges += line[i] != line[i - 1];
    return edges;
}

size_t differenceCount(const std::vector<bool> &a, const std::vector<bool> &b)
{
    size_t differences = 0;
    for (size_t i = 0; i < a.size(); ++i)
        differences += a[i] != b[i];
    return differences;
}

// The last line, walking from start by step, that still crosses the bars of the line at start:
// each line must keep at least half of the start line's edges and differ from the line before it
// in at most a quarter of its samples (a slanted code's bars move a little from line to line; the
// paper, the caption or another code beyond the bars differ at once).
int lastLineOfBars(const CodeLines &lines, int start, int step, int from, int to, int threshold)
{
    std::vector<bool> previous = lines.dark(start, from, to, threshold);
    const int edges = edgeCount(previous);
    int last = start;
    if (edges < fewestEdges)
        return last;
    for (int over = start + step; over >= 0 && over < lines.lineCount(); over += step) {
        std::vector<bool> line = lines.dark(over, from, to, threshold);
        if (2 * edgeCount(line) < edges || 4 * differenceCount(previous, line) > line.size())
            break;
        last = over;
        previous = std::move(line);
    }
    return last;
}

} // namespace

void MaskedLuminance::copy(const PixelLayout &picture)
{
    m_width = std::max(0, picture.width);
    m_height = std::max(0, picture.height);
    m_pixels.resize(size_t(m_width) * m_height);
    if (!m_pixels.empty())
        copyLuminance(picture, m_pixels.data(), m_width);
}

PixelLayout MaskedLuminance::layout() const
{
    return {m_pixels.data(), m_width, m_height, m_width, 1, 0, 0, 0};
}

QRect MaskedLuminance::linearCodeArea(const QList<QPoint> &corners) const
{
    const QRect picture(0, 0, m_width, m_height);
    const QRect lines = QPolygon(corners).boundingRect() & picture;
    if (lines.isEmpty())
        return {};
    // A code read along rows spans more columns than rows, and the other way round.
    const bool alongRows = lines.width() >= lines.height();
    const CodeLines codeLines(m_pixels, m_width, m_height, alongRows);
    const int from = alongRows ? lines.left() : lines.top();
    const int to = alongRows ? lines.right() : lines.bottom();
    const int middle = alongRows ? lines.center().y() : lines.center().x();
    const int threshold = codeLines.midLevel(middle, from, to);
    const int first = lastLineOfBars(codeLines, middle, -1, from, to, threshold);
    const int last = lastLineOfBars(codeLines, middle, 1, from, to, threshold);
    const QRect bars = alongRows ? QRect(QPoint(from, first), QPoint(to, last))
                                 : QRect(QPoint(first, from), QPoint(last, to));
    return bars.united(lines).adjusted(-blurMargin, -blurMargin, blurMargin, blurMargin) & picture;
}

void MaskedLuminance::paintOut(const QRect &area)
{
    const QRect painted = area & QRect(0, 0, m_width, m_height);
    for (int y = painted.top(); y <= painted.bottom() && !painted.isEmpty(); ++y)
        std::fill_n(m_pixels.begin() + qsizetype(y) * m_width + painted.left(), painted.width(), uchar(255));
}

} // namespace ZQTPlatform

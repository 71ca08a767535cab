// A second decoder for the single lines the region pass makes of a 1-D code: zbar, whose 1-D
// decoders accept bars whose widths drift along the code (a label seen at an angle) and edges
// moved by blur that ZXing-cpp's reject, while checking the same check characters.
#pragma once

#include "platform/capture/TurnedLuminance_p.h"

#include <QString>

#include <optional>

namespace ZQTPlatform {

struct LineCode
{
    enum class Symbology { Code39, Code93, Code128 };
    Symbology symbology;
    QString text;
    double from = 0; // where the code starts and ends along the line, in line pixels
    double to = 0;
};

// Reads lines with zbar's Code 39, Code 93 and Code 128 decoders (Code 93 and Code 128 with their
// check characters verified; Code 39 carries none). One reader per thread: zbar's scanner keeps
// state. Cost: a few microseconds per line.
class LineReader
{
public:
    LineReader();
    ~LineReader();
    LineReader(const LineReader &) = delete;
    LineReader &operator=(const LineReader &) = delete;

    // The first code on the middle row of the picture, if any.
    std::optional<LineCode> read(const TurnedLuminance &line);

private:
    struct Private;
    Private *d;
};

} // namespace ZQTPlatform

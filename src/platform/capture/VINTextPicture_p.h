// The picture work of the VIN text reader: a camera picture turned into what the text engine
// reads best (dark strokes on white paper), and the slant of its lines. All of it runs on the
// calling thread: Qt's own scaling, format changes and transformed drawing share large pictures
// out to the application's thread pool, where the GUI thread's painting would then wait behind
// them.
#pragma once

#include <QImage>
#include <QTransform>

namespace ZQTPlatform {

// The picture (any format) in grey, scaled by scale (at most 1) and lightly blurred: sensor noise
// is finer than any stroke. Format_Grayscale8.
QImage smoothGrey(const QImage &picture, double scale);

// How far each pixel of a grey picture is a stroke: how much darker it is than the picture with
// every dark feature narrower than a stroke filled in, or, where the print is lighter than its
// ground (characters stamped in a dark plate), how much lighter. Paper, plates, glare, shadows
// and the edges of a sticker are all 0; only strokes (and thin ruled lines) stand out.
// Format_Grayscale8.
QImage strokeDepth(const QImage &grey);

// The slant of the text lines of an evened picture (radians, clockwise positive as on screen),
// within 12 degrees of level.
double skewOf(const QImage &evened);

// The evened picture drawn through turn (a rotation about its middle) onto white paper of the
// same size. Format_Grayscale8.
QImage turned(const QImage &evened, const QTransform &turn);

// A level evened picture without its ruled lines (the borders of form fields and boxes, longer
// than any character): the engine's layout takes a field's border for a picture and drops the
// VIN inside it. Format_Grayscale8.
QImage withoutRuledLines(const QImage &level);

// The picture as the engine reads it best: dark strokes on white paper, their depth stretched to
// full contrast, the paper's grain gone. Format_Grayscale8.
QImage evenedForReading(const QImage &depth);

} // namespace ZQTPlatform

// The text engine behind the VIN text reader: Tesseract 5's LSTM recogniser restricted to the
// characters a VIN may hold, with its alternative choices for every character. Tesseract stays
// inside VINTextEngine.cpp; nothing else of the library sees its headers.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <memory>

namespace ZQTPlatform {

// One character the engine read, with the choices it weighed (best first, confidences 0..100).
struct ReadCharacter
{
    struct Choice
    {
        QChar character;
        float confidence = 0;
    };
    QList<Choice> choices; // never empty
    QRect box;             // pixels of the picture read
    bool startsWord = false;

    QChar best() const { return choices.first().character; }
    float confidence() const { return choices.first().confidence; }
};

// Not thread-safe: one engine per thread. Building one loads the model (about 100 ms).
class VINTextEngine
{
public:
    // The digits and the letters other than I, O and Q.
    static const char *alphabet();

    VINTextEngine();
    ~VINTextEngine();
    VINTextEngine(const VINTextEngine &) = delete;
    VINTextEngine &operator=(const VINTextEngine &) = delete;

    // False when the model could not be loaded (the package is missing); nothing is read then.
    bool isReady() const;

    // The boxes of the text lines in a grey picture (Format_Grayscale8), found by the engine's
    // layout analysis without recognising anything; the picture is kept for readLine.
    QList<QRect> findLines(const QImage &grey);
    // The characters of one line of the picture given to findLines, in reading order.
    QList<ReadCharacter> readLine(const QRect &line);
    // The choices for one glyph of that picture read on its own (box: the glyph's, as readLine
    // gave it), best first; empty when nothing of the alphabet is read there.
    QList<ReadCharacter::Choice> readGlyph(const QRect &box);

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace ZQTPlatform

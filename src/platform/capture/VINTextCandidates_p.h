// The VIN candidates of one text line as the engine read it: runs of 17 characters turned into
// VINs with what a VIN guarantees (its alphabet, its check digit, the places of a few
// characters), and the consensus over frames that decides when a candidate is a read.
#pragma once

#include "platform/capture/VINTextEngine_p.h"

#include <QList>
#include <QRect>
#include <QString>
#include <deque>
#include <functional>
#include <optional>

namespace ZQTPlatform {

struct VINTextCandidate
{
    QString vin;
    // The North-American check digit agrees (after the look-alike choice below, if any).
    bool checkDigitValid = false;
    // The lowest confidence (0..100) among the 17 characters as read.
    float confidence = 0;
    QRect box; // pixels of the picture read
    // Another reading that passes the check digit as well, with a character the engine weighed
    // that the check digit cannot tell from the one chosen (A, J or 1) and that a second look at
    // the glyph did not settle; empty when there is none.
    QString sameValueRival;
};

// The North-American check-digit test the candidates use. The VIN rules belong to the component's
// VIN utilities, which install their test when the library loads; until then no candidate passes.
using VINCheckDigitTest = bool (*)(const QString &vin);
void setVINCheckDigitTest(VINCheckDigitTest test);

// The candidates of one line, at most one per run of 17 characters. A run is taken from whole
// words only: it starts where a word starts and ends where a word ends, words joined across the
// gaps (a VIN printed in groups, "WVWZZZ 1JZ 3W 386752"), or it is the end of a longer word whose
// start is the label "VIN" glued on ("VIN:1HG..."). A window cut from any other longer word would
// give a shifted reading, which passes the check digit one time in eleven by chance.
//
// Where the engine weighed, beside a character of a reading that passes the check digit, another
// that passes it too (A, J and 1 have the same value; so have B, K, S and 2), the check digit
// cannot choose: readGlyph, when given, reads that one glyph on its own (the line's context is
// what makes the engine take a bold 1 for an A), and settles the place when it reads one of the
// two surely and the other not at all. Otherwise the candidate keeps the other reading as its
// sameValueRival.
using GlyphReader = std::function<QList<ReadCharacter::Choice>(const QRect &box)>;
QList<VINTextCandidate> vinCandidates(const QList<ReadCharacter> &line, const GlyphReader &readGlyph = {});

// The VIN the check digit picks among the look-alikes of a run of 17 characters, when exactly one
// reading with the fewest changes (at most maxChanges) has a valid check digit; the run's own
// reading when it is valid itself.
std::optional<QString> resolveByCheckDigit(const QList<ReadCharacter> &run);

// Decides, frame after frame, when a candidate is read. Keeps the candidates of the last few
// attempts only, so that rare misreadings never add up over a long scan.
class VINTextConsensus
{
public:
    // Check-digit VINs: three frames. A misreading that still passes the check digit (one in
    // eleven of the wrong ones) would have to come out the same three times. Two are not enough:
    // the engine misreads some glyphs the same way in frame after frame (a dotted zero as 8, G and
    // 6 at once, which passed the check digit in two frames running).
    static constexpr int validFrames = 3;
    // VINs without a North-American check digit (many European makers): nothing can tell a
    // misreading, so three identical frames, each read with every character confidently.
    static constexpr int shapedFrames = 3;
    static constexpr float shapedConfidence = 80;
    // How many of the latest attempts count towards a read.
    static constexpr int window = 6;
    // Readings that differ in at most this many places are taken as readings of the same line.
    static constexpr int maxDifferencesOfOneLine = 5;
    // How many attempts a reading that passes the check digit holds back a rival reading.
    static constexpr int rivalWindow = 20;

    // The candidates of one attempt; returns the VIN when it is now read.
    std::optional<VINTextCandidate> add(const QList<VINTextCandidate> &frame);
    void clear();

private:
    // Whether at every place the VIN has the character that more than half of the readings of
    // its line in the remembered attempts have there. Agreeing frames alone are not enough: a
    // font whose glyph the engine reads three ways (a zero with a dot: 0, 8 or 9) gives now and
    // then a reading that passes the check digit, and sometimes twice; the other readings of the
    // same line then outvote it, even when they disagree among themselves.
    bool isMostReadAtEveryPlace(const QString &vin) const;
    // Whether the last rivalWindow attempts hold another reading of the VIN's line that passes
    // the check digit too, read or weighed. Then the engine misreads the line in a way the check
    // digit misses (a 3, a 5 and a 0 read as B, S and D, all three at once, frame after frame,
    // between frames read right; a 1 read as A), and neither reading is a read until the other
    // is that long gone.
    bool hasRivalReading(const QString &vin) const;

    using Attempts = std::deque<QList<VINTextCandidate>>;
    // The last window attempts, the oldest first.
    Attempts recentAttempts() const;

    Attempts m_attempts; // the last rivalWindow attempts, the oldest first
};

} // namespace ZQTPlatform

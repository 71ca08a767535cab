// The VIN text reader: finds the text lines of a camera picture, reads them with the text engine
// restricted to the VIN alphabet, and turns them into VIN candidates. One attempt per picture;
// the consensus over attempts is the caller's (VINTextConsensus).
#pragma once

#include "platform/capture/VINTextCandidates_p.h"
#include "platform/capture/VINTextEngine_p.h"

#include <QImage>
#include <QList>

namespace ZQTPlatform {

// Not thread-safe (it owns an engine): one reader per worker thread.
class VINTextReader
{
public:
    // Pictures are read at most this long on their long side (larger ones are scaled down first).
    static constexpr int longestSide = 1280;
    // How many of a picture's lines are read, the tallest first.
    static constexpr int maxLines = 4;

    bool isReady() const { return m_engine.isReady(); }
    // The candidates of one picture (any format), boxes in its pixels.
    QList<VINTextCandidate> read(const QImage &picture);

private:
    QList<VINTextCandidate> readLevelled(const QImage &evened);
    // Reads the lines of the picture the engine laid out last.
    QList<VINTextCandidate> readLines(const QList<QRect> &lines);

    VINTextEngine m_engine;
};

} // namespace ZQTPlatform

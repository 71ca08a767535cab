#include "platform/capture/VINTextCandidates_p.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <vector>

namespace ZQTPlatform {

namespace {

constexpr int vinLength = 17;
constexpr int checkDigitIndex = 8;
constexpr int modelYearIndex = 9;
// The last four characters of every VIN are digits (ISO 3779, and 49 CFR 565 in North America).
constexpr int firstSerialDigitIndex = 13;
// More changes than this and the check digit no longer tells a reading from chance: each wrong
// combination passes it one time in eleven.
constexpr int maxChanges = 2;
// A character read at least this confidently keeps its shape: its look-alikes are not tried.
constexpr float sureConfidence = 90;
// Another choice the engine weighed at least this confidently is a rival reading of its place;
// below it, the engine's other choices are noise (mostly 0).
constexpr float rivalChoiceConfidence = 10;

// The look-alike pairs within the VIN alphabet. Their other halves (O and Q for 0 and D, I for
// 1 and L) cannot occur: the engine reads nothing outside the alphabet.
QString lookAlikes(QChar c)
{
    switch (c.unicode()) {
    case '0': return QStringLiteral("D");
    case 'D': return QStringLiteral("0");
    case '1': return QStringLiteral("L");
    case 'L': return QStringLiteral("1");
    case '5': return QStringLiteral("S");
    case 'S': return QStringLiteral("5");
    case '8': return QStringLiteral("B");
    case 'B': return QStringLiteral("8");
    case '2': return QStringLiteral("Z");
    case 'Z': return QStringLiteral("2");
    case '6': return QStringLiteral("G");
    case 'G': return QStringLiteral("6");
    default: return {};
    }
}

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// Where a character may stand in a VIN that carries the North-American check digit: the check
// digit is a digit or X, the model year is never U, Z or 0 (49 CFR 565), and the serial ends in
// four digits. All are certain for such VINs, so a reading that breaks them is wrong there.
bool fitsPlace(QChar c, int index)
{
    if (index >= firstSerialDigitIndex)
        return isDigit(c);
    if (index == checkDigitIndex)
        return isDigit(c) || c == QLatin1Char('X');
    if (index == modelYearIndex)
        return c != QLatin1Char('U') && c != QLatin1Char('Z') && c != QLatin1Char('0');
    return true;
}

// The other characters a place may hold: the engine's own alternatives, and the look-alikes of a
// character it was not sure of or that cannot stand there.
QString alternativesAt(const ReadCharacter &character, int index)
{
    QString options;
    for (qsizetype i = 1; i < character.choices.size(); ++i)
        options.append(character.choices[i].character);
    if (character.confidence() < sureConfidence || !fitsPlace(character.best(), index))
        options.append(lookAlikes(character.best()));
    return options;
}

std::atomic<VINCheckDigitTest> &installedTest()
{
    static std::atomic<VINCheckDigitTest> test{nullptr};
    return test;
}

bool isValid(const QString &vin)
{
    const VINCheckDigitTest test = installedTest().load();
    return test && test(vin);
}

// Every reading with exactly `changes` places changed, from place `from` on, that passes the
// check digit.
void search(QString &reading, const QList<QString> &options, int from, int changes, QStringList &found)
{
    if (changes == 0) {
        if (isValid(reading) && !found.contains(reading))
            found.append(reading);
        return;
    }
    for (int index = from; index < vinLength; ++index) {
        const QChar original = reading.at(index);
        for (const QChar option : options[index]) {
            if (!fitsPlace(option, index))
                continue;
            reading[index] = option;
            search(reading, options, index + 1, changes - 1, found);
        }
        reading[index] = original;
    }
}

// Whether every place at which two readings differ holds a look-alike pair.
bool onlyLookAlikesChanged(const QString &reading, const QString &other)
{
    for (int index = 0; index < vinLength; ++index) {
        if (reading.at(index) != other.at(index) && !lookAlikes(reading.at(index)).contains(other.at(index)))
            return false;
    }
    return true;
}

QString bestReading(const QList<ReadCharacter> &run)
{
    QString text;
    for (const ReadCharacter &character : run)
        text.append(character.best());
    return text;
}

// The run with letters in the last four places read as the digits they look like; nothing when
// one of them has no digit look-alike (then the run is no VIN: a line of words, say).
std::optional<QList<ReadCharacter>> withDigitSerial(QList<ReadCharacter> run)
{
    for (int index = firstSerialDigitIndex; index < vinLength; ++index) {
        ReadCharacter &character = run[index];
        if (isDigit(character.best()))
            continue;
        const QString digit = lookAlikes(character.best());
        if (digit.isEmpty() || !isDigit(digit.front()))
            return std::nullopt;
        character.choices.front().character = digit.front();
    }
    return run;
}

// Whether characters glued before a run of 17 are the label "VIN" as the alphabet lets the engine
// read it: the I, which the alphabet lacks, read as a look-alike or not at all. Anything else
// glued on is more likely a character the engine split in two or found in a speck: the run
// would then be the VIN shifted by one place, which passes the check digit one time in eleven,
// and the same way in every frame.
bool isLabel(const QList<ReadCharacter> &prefix)
{
    static const QStringList readings{QStringLiteral("VN"), QStringLiteral("V1N"), QStringLiteral("VLN"),
                                      QStringLiteral("VJN"), QStringLiteral("VTN")};
    return readings.contains(bestReading(prefix));
}

// Which of two characters the glyph read on its own is: the one it reads surely while not
// weighing the other at all; nothing when it does not settle between them.
std::optional<QChar> settledAlone(const QList<ReadCharacter::Choice> &alone, QChar one, QChar other)
{
    if (alone.isEmpty() || alone.first().confidence < sureConfidence)
        return std::nullopt;
    const QChar read = alone.first().character;
    if (read != one && read != other)
        return std::nullopt;
    const QChar beaten = read == one ? other : one;
    const bool weighed = std::any_of(alone.begin(), alone.end(), [beaten](const ReadCharacter::Choice &choice) {
        return choice.character == beaten && choice.confidence >= rivalChoiceConfidence;
    });
    return weighed ? std::nullopt : std::optional<QChar>(read);
}

// The glyph's box cut to the band the run's glyphs stand in. The engine's box for a glyph
// sometimes reaches far above or below the line (to a rule of the form, or print beside it), and
// a glyph read with all that in its box is read as another. The quarter of the run's boxes that
// are least tall hold their glyphs alone; the band runs from the median of their tops to the
// median of their bottoms. A box no taller than one and a half bands is left as it is.
QRect withinBand(const QRect &glyph, const QList<ReadCharacter> &run)
{
    std::vector<QRect> boxes;
    for (const ReadCharacter &character : run)
        boxes.push_back(character.box);
    std::sort(boxes.begin(), boxes.end(), [](const QRect &a, const QRect &b) { return a.height() < b.height(); });
    boxes.resize(std::max<size_t>(1, boxes.size() / 4));
    std::vector<int> tops;
    std::vector<int> bottoms;
    for (const QRect &box : boxes) {
        tops.push_back(box.top());
        bottoms.push_back(box.bottom());
    }
    const size_t middle = tops.size() / 2;
    std::nth_element(tops.begin(), tops.begin() + middle, tops.end());
    std::nth_element(bottoms.begin(), bottoms.begin() + middle, bottoms.end());
    const QRect band(QPoint(glyph.left(), tops[middle]), QPoint(glyph.right(), bottoms[middle]));
    return band.intersects(glyph) && glyph.height() > 3 * band.height() / 2 ? band : glyph;
}

// Settles the places of a candidate that passes the check digit where the engine weighed another
// character that passes it too (see vinCandidates); keeps the first unsettled one as the rival.
void settleSameValueTies(VINTextCandidate &candidate, const QList<ReadCharacter> &run, const GlyphReader &readGlyph)
{
    for (int index = 0; index < vinLength; ++index) {
        for (const ReadCharacter::Choice &choice : run[index].choices) {
            const QChar chosen = candidate.vin.at(index);
            if (choice.character == chosen || choice.confidence < rivalChoiceConfidence || !fitsPlace(choice.character, index))
                continue;
            QString rival = candidate.vin;
            rival[index] = choice.character;
            if (!isValid(rival))
                continue;
            const std::optional<QChar> settled =
                readGlyph ? settledAlone(readGlyph(withinBand(run[index].box, run)), chosen, choice.character)
                          : std::nullopt;
            if (!settled) {
                candidate.sameValueRival = rival;
                return;
            }
            candidate.vin[index] = *settled;
        }
    }
}

// The places at which two readings of 17 characters differ.
int differences(const QString &a, const QString &b)
{
    int count = 0;
    for (int index = 0; index < vinLength; ++index)
        count += a.at(index) != b.at(index);
    return count;
}

VINTextCandidate candidateOf(const QList<ReadCharacter> &run, const GlyphReader &readGlyph)
{
    VINTextCandidate candidate;
    candidate.confidence = 100;
    for (const ReadCharacter &character : run) {
        candidate.confidence = std::min(candidate.confidence, character.confidence());
        candidate.box |= character.box;
    }
    if (const std::optional<QString> resolved = resolveByCheckDigit(run)) {
        candidate.vin = *resolved;
        candidate.checkDigitValid = true;
        settleSameValueTies(candidate, run, readGlyph);
    } else {
        candidate.vin = bestReading(run);
    }
    return candidate;
}

} // namespace

void setVINCheckDigitTest(VINCheckDigitTest test)
{
    installedTest().store(test);
}

std::optional<QString> resolveByCheckDigit(const QList<ReadCharacter> &run)
{
    if (run.size() != vinLength)
        return std::nullopt;
    QString reading = bestReading(run);
    QList<QString> options;
    for (int index = 0; index < vinLength; ++index)
        options.append(alternativesAt(run[index], index));
    for (int changes = 0; changes <= maxChanges; ++changes) {
        QStringList found;
        search(reading, options, 0, changes, found);
        if (found.isEmpty())
            continue;
        // Several readings pass: the check digit alone cannot choose. The engine gives its other
        // guesses mostly at no confidence at all, so a reading whose every change is a look-alike
        // pair (5 for S, G for 6) is far likelier than one that takes such a guess; when exactly
        // one reading is of that kind, it is the one.
        if (found.size() > 1) {
            found.erase(std::remove_if(found.begin(), found.end(),
                                       [&reading](const QString &other) { return !onlyLookAlikesChanged(reading, other); }),
                        found.end());
        }
        return found.size() == 1 ? std::optional<QString>(found.first()) : std::nullopt;
    }
    return std::nullopt;
}

QList<VINTextCandidate> vinCandidates(const QList<ReadCharacter> &line, const GlyphReader &readGlyph)
{
    QList<VINTextCandidate> candidates;
    QList<qsizetype> wordStarts;
    for (qsizetype i = 0; i < line.size(); ++i) {
        if (i == 0 || line[i].startsWord)
            wordStarts.append(i);
    }
    wordStarts.append(line.size());
    for (qsizetype w = 0; w + 1 < wordStarts.size(); ++w) {
        const qsizetype start = wordStarts[w];
        const qsizetype wordLength = wordStarts[w + 1] - start;
        qsizetype runStart = -1;
        if (wordLength > vinLength) {
            if (isLabel(line.mid(start, wordLength - vinLength)))
                runStart = wordStarts[w + 1] - vinLength;
        } else {
            // Whole words from this one on that make exactly 17 characters.
            for (qsizetype end = w + 1; end < wordStarts.size() && wordStarts[end] - start <= vinLength; ++end) {
                if (wordStarts[end] - start == vinLength)
                    runStart = start;
            }
        }
        if (runStart < 0)
            continue;
        if (const auto run = withDigitSerial(line.mid(runStart, vinLength)))
            candidates.append(candidateOf(*run, readGlyph));
    }
    return candidates;
}

std::optional<VINTextCandidate> VINTextConsensus::add(const QList<VINTextCandidate> &frame)
{
    QList<VINTextCandidate> distinct;
    for (const VINTextCandidate &candidate : frame) {
        const bool known = std::any_of(distinct.begin(), distinct.end(), [&candidate](const VINTextCandidate &other) {
            return other.vin == candidate.vin && other.checkDigitValid == candidate.checkDigitValid;
        });
        if (!known)
            distinct.append(candidate);
    }
    m_attempts.push_back(distinct);
    if (int(m_attempts.size()) > rivalWindow)
        m_attempts.pop_front();

    // A VIN without the check digit counts only when read confidently, and never when it starts
    // with 1 to 5: those VINs are assigned in North America, where every VIN carries the check
    // digit, so such a reading is a misreading of one.
    const auto counts = [](const VINTextCandidate &candidate) {
        if (candidate.checkDigitValid)
            return true;
        const QChar region = candidate.vin.front();
        return candidate.confidence >= shapedConfidence && !(region >= QLatin1Char('1') && region <= QLatin1Char('5'));
    };
    // Check-digit VINs first: their agreement is the stronger evidence.
    std::stable_sort(distinct.begin(), distinct.end(),
                     [](const VINTextCandidate &a, const VINTextCandidate &b) { return a.checkDigitValid > b.checkDigitValid; });
    for (const VINTextCandidate &candidate : std::as_const(distinct)) {
        if (!counts(candidate))
            continue;
        int frames = 0;
        for (const QList<VINTextCandidate> &attempt : recentAttempts()) {
            frames += std::any_of(attempt.begin(), attempt.end(), [&](const VINTextCandidate &other) {
                return other.vin == candidate.vin && other.checkDigitValid == candidate.checkDigitValid && counts(other);
            });
        }
        if (frames >= (candidate.checkDigitValid ? validFrames : shapedFrames) && isMostReadAtEveryPlace(candidate.vin)
            && !hasRivalReading(candidate.vin)) {
            m_attempts.clear();
            return candidate;
        }
    }
    return std::nullopt;
}

bool VINTextConsensus::isMostReadAtEveryPlace(const QString &vin) const
{
    int readings = 0;
    std::array<int, vinLength> agreeing{};
    for (const QList<VINTextCandidate> &attempt : recentAttempts()) {
        for (const VINTextCandidate &other : attempt) {
            if (differences(other.vin, vin) > maxDifferencesOfOneLine)
                continue;
            ++readings;
            for (int index = 0; index < vinLength; ++index)
                agreeing[size_t(index)] += other.vin.at(index) == vin.at(index);
        }
    }
    return std::all_of(agreeing.begin(), agreeing.end(), [readings](int agree) { return 2 * agree > readings; });
}

bool VINTextConsensus::hasRivalReading(const QString &vin) const
{
    const auto isRival = [&vin](const QString &other) {
        return !other.isEmpty() && other != vin && differences(other, vin) <= maxDifferencesOfOneLine;
    };
    return std::any_of(m_attempts.begin(), m_attempts.end(), [&](const QList<VINTextCandidate> &attempt) {
        return std::any_of(attempt.begin(), attempt.end(), [&](const VINTextCandidate &other) {
            return (other.checkDigitValid && isRival(other.vin)) || isRival(other.sameValueRival);
        });
    });
}

VINTextConsensus::Attempts VINTextConsensus::recentAttempts() const
{
    return {m_attempts.end() - std::min<qsizetype>(window, qsizetype(m_attempts.size())), m_attempts.end()};
}

void VINTextConsensus::clear()
{
    m_attempts.clear();
}

} // namespace ZQTPlatform

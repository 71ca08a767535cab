// The printed-VIN reader: reads of generated camera frames, the look-alike choice by the check
// digit, the runs taken from a line, and the consensus over frames that keeps misreadings out.
#include "VinTextArt.h"
#include "platform/capture/VINTextCandidates_p.h"
#include "platform/capture/VINTextReader_p.h"

#include <gtest/gtest.h>

#include <optional>

using namespace ZQTPlatform;

namespace {

const QString hondaVin = QStringLiteral("1HGCM82633A004352");

// A line as the engine gives it: each character its own choice at the confidence given, the
// listed alternatives after it; a space starts a new word.
QList<ReadCharacter> line(const QString &text, float confidence = 95,
                          const QList<std::pair<int, QChar>> &alternatives = {})
{
    QList<ReadCharacter> characters;
    bool wordStart = true;
    for (const QChar c : text) {
        if (c == QLatin1Char(' ')) {
            wordStart = true;
            continue;
        }
        ReadCharacter character;
        character.choices.append({c, confidence});
        character.startsWord = wordStart;
        character.box = QRect(int(characters.size()) * 10, 0, 9, 14);
        wordStart = false;
        characters.append(character);
    }
    for (const auto &[index, alternative] : alternatives)
        characters[index].choices.append({alternative, confidence - 20});
    return characters;
}

VINTextCandidate candidate(const QString &vin, bool valid, float confidence = 95)
{
    return {vin, valid, confidence, QRect(), QString()};
}

} // namespace

// --- Reads of generated frames: a handful, Tesseract takes a few hundred ms per frame.

struct FrameCase
{
    const char *name;
    VinTextArt::Carrier carrier;
    const char *font;
    double tilt, perspective, blur, glare;
    int jpeg;
    double noise = 4;
    double textHeight = 28;
};

class PrintedVinFrames : public ::testing::TestWithParam<FrameCase>
{
protected:
    static void SetUpTestSuite() { reader = new VINTextReader; }
    static void TearDownTestSuite() { delete reader; }
    static VINTextReader *reader;
};
VINTextReader *PrintedVinFrames::reader = nullptr;

TEST_P(PrintedVinFrames, AreReadWithinFiveFrames)
{
    ASSERT_TRUE(reader->isReady()) << "the tesseract-ocr-eng model is missing";
    const FrameCase &c = GetParam();
    VinTextArt::Scene scene;
    scene.vin = hondaVin;
    scene.carrier = c.carrier;
    scene.fontFamily = QString::fromLatin1(c.font);
    scene.tiltDegrees = c.tilt;
    scene.perspective = c.perspective;
    scene.blurRadius = c.blur;
    scene.glare = c.glare;
    scene.jpegQuality = c.jpeg;
    scene.noiseSigma = c.noise;
    scene.textHeight = c.textHeight;
    VINTextConsensus consensus;
    std::optional<VINTextCandidate> read;
    for (int frame = 0; frame < 5 && !read; ++frame)
        read = consensus.add(reader->read(VinTextArt::renderScene(VinTextArt::momentOf(scene, frame, 15))));
    ASSERT_TRUE(read) << c.name;
    EXPECT_EQ(read->vin, hondaVin);
    EXPECT_TRUE(read->checkDigitValid);
}

INSTANTIATE_TEST_SUITE_P(
    Carriers, PrintedVinFrames,
    ::testing::Values(FrameCase{"StickerOcrB", VinTextArt::Carrier::DoorSticker, "OCR B", 0, 0, 0.4, 0, 85},
                      FrameCase{"PlateBehindGlass", VinTextArt::Carrier::EmbossedPlate, "OCR B", -3, 0.05, 0.8, 0.4, 70},
                      FrameCase{"FormField", VinTextArt::Carrier::FormField, "Liberation Mono", 4, 0.1, 0.4, 0, 60},
                      FrameCase{"StickerTiltedWithGlare", VinTextArt::Carrier::DoorSticker, "DejaVu Sans Mono", -4, 0.1, 0.4, 0.4, 60},
                      FrameCase{"PlateSansSerif", VinTextArt::Carrier::EmbossedPlate, "Liberation Sans", -1, 0.1, 0, 0, 85},
                      // Small print in grainy light: the grain must not hide the line from the layout.
                      FrameCase{"SmallGrainyPlate", VinTextArt::Carrier::EmbossedPlate, "DejaVu Sans", -1.2, 0.15, 1.2, 0, 55, 9, 21}),
    [](const ::testing::TestParamInfo<FrameCase> &info) { return std::string(info.param.name); });

// Pictures too small or too thin to hold a line give no candidates (and no OpenCV error from a
// copy scaled to nothing).
TEST_F(PrintedVinFrames, SliversAndTinyPicturesGiveNothing)
{
    for (const QSize size : {QSize(1, 1), QSize(3, 2), QSize(2000, 1), QSize(1, 900), QSize(100000, 8)}) {
        QImage picture(size, QImage::Format_RGB32);
        picture.fill(Qt::white);
        EXPECT_TRUE(reader->read(picture).isEmpty()) << size.width() << "x" << size.height();
    }
}

TEST(PrintedVinLookAlikes, AreResolvedByTheCheckDigit)
{
    // read: as the engine read it; expected: nullopt when no VIN passes.
    const struct { const char *name; QString read; float confidence; QList<std::pair<int, QChar>> alternatives;
                   std::optional<QString> expected; } cases[] = {
        {"ValidAsRead", hondaVin, 95, {}, hondaVin},
        // The engine's second choice at the place is the right one.
        {"EnginesAlternative", "1HGCM8Z633A004352", 60, {{6, '2'}}, hondaVin},
        // Unsure characters are tried as their look-alikes: B for 8, G for 6.
        {"UnsureLookAlike", "1HGCMB2633A004352", 70, {}, hondaVin},
        // An S read as surely as the rest, with 5 among the engine's guesses, and a K for the R:
        // both pass the check digit, only the first is a look-alike (a reading of a real label).
        {"LookAlikeBeforeGuess", "3CZRUSH35GM739695", 98, {{3, 'K'}, {5, '5'}}, QStringLiteral("3CZRU5H35GM739695")},
        // Two unsure places where more than one pair of look-alikes passes: no guess.
        {"TwoLookAlikesAmbiguous", "1HGCMB2G33A004352", 70, {}, std::nullopt},
        // The check digit is a digit: an S there can only be a 5, however sure the engine was.
        {"CheckDigitPlace", "1N4BL3APSDN508203", 97, {}, QStringLiteral("1N4BL3AP5DN508203")},
        // A character read with confidence keeps its shape: nothing passes.
        {"SureMisreading", "1HGCMB2633A004352", 97, {}, std::nullopt},
        // Too many places wrong for the check digit to tell.
        {"ThreeWrong", "1HGCMBZG33A004352", 70, {}, std::nullopt},
    };
    for (const auto &c : cases)
        EXPECT_EQ(resolveByCheckDigit(line(c.read, c.confidence, c.alternatives)), c.expected) << c.name;
}

TEST(PrintedVinLineRuns, AreTakenFromWholeWords)
{
    const struct { const char *name; QString line; QStringList expected; } cases[] = {
        {"LabelBeforeTheVin", "VN " + hondaVin, {hondaVin}},
        {"GlueLabel", "VN" + hondaVin, {hondaVin}},
        // One glyph read as two characters: the last 17 ("9VDE2ZE5XEE644230") would pass the
        // check digit, shifted by one place.
        {"SplitGlyph", "19VDE2ZE5XEE644230", {}},
        {"Groups", "WVWZZZ 1JZ 3W 386752", {"WVWZZZ1JZ3W386752"}},
        // Letters in the last four places read as their digits.
        {"SerialLookAlikes", "1HGCM82633A0043S2", {hondaVin}},
        {"WordsWithoutSerial", "SAFETY STANDARDS N", {}},
        {"NoRunOfSeventeen", "GVWR 2155 KG 4751 LB", {}},
    };
    for (const auto &c : cases) {
        QStringList vins;
        for (const VINTextCandidate &candidate : vinCandidates(line(c.line)))
            vins.append(candidate.vin);
        EXPECT_EQ(vins, c.expected) << c.name;
    }

    // A 1 read as A with the 1 weighed: A and 1 have the same value, so both pass the check
    // digit. The glyph read on its own settles the place when it is sure of one and does not
    // weigh the other; otherwise the weighed reading is the candidate's rival.
    const QString readAsA = QStringLiteral("AHGCM82633A004352");
    const QList<ReadCharacter> tied = line(readAsA, 95, {{0, '1'}});
    // alone: what the glyph read on its own gives, empty for no second look.
    const struct { const char *name; QList<ReadCharacter::Choice> alone; QString vin, rival; } ties[] = {
        {"NoSecondLook", {}, readAsA, hondaVin},
        {"AloneReadsTheOne", {{'1', 99}, {'L', 40}}, hondaVin, QString()},
        {"AloneReadsTheA", {{'A', 97}}, readAsA, QString()},
        {"AloneUnsure", {{'1', 80}}, readAsA, hondaVin},
        {"AloneWeighsBoth", {{'1', 98}, {'A', 30}}, readAsA, hondaVin},
    };
    for (const auto &t : ties) {
        const GlyphReader readGlyph = t.alone.isEmpty() ? GlyphReader() : [&](const QRect &box) {
            EXPECT_EQ(box, tied[0].box) << t.name;
            return t.alone;
        };
        const VINTextCandidate candidate = vinCandidates(tied, readGlyph).value(0);
        EXPECT_EQ(candidate.vin, t.vin) << t.name;
        EXPECT_EQ(candidate.sameValueRival, t.rival) << t.name;
    }
    // The second look is cut to the line's band when the engine's box reaches far out of it (to a
    // rule of the form); a box a little taller than the others is looked at as it is.
    const struct { QRect box, looked; } boxes[] = {
        {QRect(0, -30, 9, 60), QRect(0, 0, 9, 14)},
        {QRect(0, -2, 9, 18), QRect(0, -2, 9, 18)},
    };
    for (const auto &b : boxes) {
        QList<ReadCharacter> outOfLine = tied;
        outOfLine[0].box = b.box;
        QRect looked;
        const GlyphReader readGlyph = [&](const QRect &box) {
            looked = box;
            return QList<ReadCharacter::Choice>{{'1', 99}};
        };
        EXPECT_EQ(vinCandidates(outOfLine, readGlyph).value(0).vin, hondaVin);
        EXPECT_EQ(looked, b.looked);
    }
    // Weighed too faintly, the other character is noise.
    QList<ReadCharacter> faint = line(readAsA, 95, {{0, '1'}});
    faint[0].choices[1].confidence = 5;
    EXPECT_TRUE(vinCandidates(faint).value(0).sameValueRival.isEmpty());
}

TEST(PrintedVinConsensus, DecidesWhenAVinIsRead)
{
    const VINTextCandidate honda = candidate(hondaVin, true);
    const VINTextCandidate wrongButValid = candidate(QStringLiteral("1HGCM82633A004318"), true);
    // The same line read with one place otherwise; fails the check digit.
    const VINTextCandidate hondaMisread = candidate(QStringLiteral("1HGCM82638A004352"), false);
    const VINTextCandidate hondaMisread92 = candidate(QStringLiteral("1HGCM82638A004352"), false, 92);
    const VINTextCandidate toyotaNoCheck = candidate(QStringLiteral("JTMW53FV60D023016"), false, 92);
    const VINTextCandidate toyotaUnsure = candidate(QStringLiteral("JTMW53FV60D023016"), false, 60);
    VINTextCandidate hondaReadAsA = candidate(QStringLiteral("AHGCM82633A004352"), true);
    hondaReadAsA.sameValueRival = hondaVin;
    // expected: what the last frame makes read.
    const struct { const char *name; QList<QList<VINTextCandidate>> frames; std::optional<QString> expected; } cases[] = {
        {"ValidTwice", {{honda}, {honda}}, std::nullopt},
        {"ValidThrice", {{honda}, {honda}, {honda}}, hondaVin},
        {"ValidOnceAmongOthers", {{wrongButValid}, {}, {honda}}, std::nullopt},
        // Another reading of the line that passes the check digit holds the read until it has
        // left the window.
        {"RivalReadingHolds", {{wrongButValid}, {honda}, {honda}, {honda}}, std::nullopt},
        // A reading the check digit cannot tell from one the engine weighed is held the same way.
        {"WeighedRivalHolds", {{hondaReadAsA}, {hondaReadAsA}, {hondaReadAsA}}, std::nullopt},
        {"RivalReadingLongGone", {{wrongButValid}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {honda}, {honda}, {honda}}, hondaVin},
        {"NoCheckDigitTwice", {{toyotaNoCheck}, {toyotaNoCheck}}, std::nullopt},
        {"NoCheckDigitThrice", {{toyotaNoCheck}, {toyotaNoCheck}, {toyotaNoCheck}}, QStringLiteral("JTMW53FV60D023016")},
        // A North-American VIN always carries the check digit: without it, it is a misreading.
        {"NorthAmericanWithoutCheckDigit", {{hondaMisread92}, {hondaMisread92}, {hondaMisread92}}, std::nullopt},
        {"NoCheckDigitUnsure", {{toyotaUnsure}, {toyotaUnsure}, {toyotaUnsure}}, std::nullopt},
        // Twice in one frame (two lines) is one frame.
        {"OneFrameTwoLines", {{honda, honda}}, std::nullopt},
        // Read valid twice, but the line mostly reads otherwise at one place (a glyph the engine
        // takes for either of two characters): not yet a read.
        {"OutvotedAtOnePlace", {{honda}, {hondaMisread}, {hondaMisread}, {honda}, {hondaMisread}, {honda}}, std::nullopt},
        {"MostReadAtEveryPlace", {{honda}, {hondaMisread}, {honda}, {honda}}, hondaVin},
        // Reads further apart than the window are not counted together.
        {"OutsideTheWindow", {{honda}, {honda}, {}, {}, {}, {}, {}, {honda}}, std::nullopt},
    };
    for (const auto &c : cases) {
        VINTextConsensus consensus;
        std::optional<VINTextCandidate> read;
        for (const QList<VINTextCandidate> &frame : c.frames) {
            EXPECT_FALSE(read) << c.name << ": read before the last frame";
            read = consensus.add(frame);
        }
        EXPECT_EQ(read ? std::optional<QString>(read->vin) : std::nullopt, c.expected) << c.name;
    }
}

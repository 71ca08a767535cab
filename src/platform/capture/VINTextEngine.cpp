// Tesseract is used through its C++ API with the English LSTM model of the Debian package
// (tesseract-ocr-eng), found where the library was built to look (or TESSDATA_PREFIX); nothing is
// downloaded. The dictionaries are not loaded: a VIN is no word, and the word lists pull readings
// towards English spellings ("SAB" for "5A8").
#include "platform/capture/VINTextEngine_p.h"

#include <tesseract/baseapi.h>
#include <tesseract/ocrclass.h>
#include <tesseract/resultiterator.h>
#include <leptonica/allheaders.h>

#include <QByteArray>

#ifdef _OPENMP
#include <omp.h>
#endif

#include <algorithm>
#include <vector>

namespace ZQTPlatform {

namespace {

// Below this the engine's own estimate from the picture; stated so it does not warn per call.
constexpr int sourceResolution = 150;

// The characters of a symbol's text that the alphabet holds; the engine gives UTF-8 text.
QChar vinCharacter(const char *text)
{
    if (!text || !text[0] || text[1])
        return {};
    const QChar c = QLatin1Char(text[0]);
    return QByteArray(VINTextEngine::alphabet()).contains(text[0]) ? c : QChar();
}

// The choices for the symbol at the iterator: the engine's best first, then its alternatives
// within the alphabet, each once. Empty when the best is outside the alphabet.
QList<ReadCharacter::Choice> choicesAt(const tesseract::ResultIterator &it)
{
    QList<ReadCharacter::Choice> choices;
    std::unique_ptr<char[]> text(it.GetUTF8Text(tesseract::RIL_SYMBOL));
    const QChar best = vinCharacter(text.get());
    if (best.isNull())
        return choices;
    choices.append({best, it.Confidence(tesseract::RIL_SYMBOL)});
    tesseract::ChoiceIterator choice(it);
    do {
        const QChar alternative = vinCharacter(choice.GetUTF8Text());
        const bool known = std::any_of(choices.begin(), choices.end(),
                                       [alternative](const ReadCharacter::Choice &c) { return c.character == alternative; });
        if (!alternative.isNull() && !known)
            choices.append({alternative, choice.Confidence()});
    } while (choice.Next());
    return choices;
}

} // namespace

struct VINTextEngine::Private
{
    tesseract::TessBaseAPI api;
    bool ready = false;
    QImage picture; // the grey picture the engine's image points into
};

const char *VINTextEngine::alphabet()
{
    return "0123456789ABCDEFGHJKLMNPRSTUVWXYZ";
}

VINTextEngine::VINTextEngine() : d(std::make_unique<Private>())
{
#ifdef _OPENMP
    // Tesseract as packaged runs parts of its recogniser on OpenMP threads, one per core, which
    // spin while they wait. Here it shares the cores with the barcode reader and the GUI thread:
    // its parallel regions run on the calling thread alone (no nesting level may be active).
    omp_set_max_active_levels(0);
#endif
    // Leptonica reports boxes it clips at the picture's edge on standard error; they are normal
    // with camera frames.
    setMsgSeverity(L_SEVERITY_NONE);
    // Options that only take effect while the model loads.
    std::vector<std::string> names{"load_system_dawg", "load_freq_dawg", "debug_file"};
    std::vector<std::string> values{"0", "0", "/dev/null"};
    d->ready = d->api.Init(nullptr, "eng", tesseract::OEM_LSTM_ONLY, nullptr, 0, &names, &values, false) == 0;
    if (!d->ready)
        return;
    d->api.SetVariable("tessedit_char_whitelist", alphabet());
    // Mode 2: the recogniser's alternatives for every character (ChoiceIterator), which the
    // check digit later chooses among.
    d->api.SetVariable("lstm_choice_mode", "2");
}

VINTextEngine::~VINTextEngine()
{
    d->api.End();
}

bool VINTextEngine::isReady() const
{
    return d->ready;
}

QList<QRect> VINTextEngine::findLines(const QImage &grey)
{
    QList<QRect> lines;
    if (!d->ready || grey.isNull())
        return lines;
    d->picture = grey.convertToFormat(QImage::Format_Grayscale8);
    d->api.SetPageSegMode(tesseract::PSM_AUTO);
    d->api.SetImage(d->picture.constBits(), d->picture.width(), d->picture.height(), 1,
                    int(d->picture.bytesPerLine()));
    d->api.SetSourceResolution(sourceResolution);
    std::unique_ptr<tesseract::PageIterator> it(d->api.AnalyseLayout());
    if (!it)
        return lines;
    do {
        int left, top, right, bottom;
        if (it->BoundingBox(tesseract::RIL_TEXTLINE, &left, &top, &right, &bottom))
            lines.append(QRect(QPoint(left, top), QPoint(right - 1, bottom - 1)));
    } while (it->Next(tesseract::RIL_TEXTLINE));
    return lines;
}

QList<ReadCharacter::Choice> VINTextEngine::readGlyph(const QRect &box)
{
    // A margin of a quarter of the glyph's height: the engine reads a glyph cut at its edge as
    // another one.
    const int margin = box.height() / 4;
    const QRect area = box.adjusted(-margin, -margin, margin, margin).intersected(d->picture.rect());
    if (!d->ready || area.isEmpty())
        return {};
    d->api.SetPageSegMode(tesseract::PSM_SINGLE_CHAR);
    d->api.SetRectangle(area.x(), area.y(), area.width(), area.height());
    if (d->api.Recognize(nullptr) != 0)
        return {};
    std::unique_ptr<tesseract::ResultIterator> it(d->api.GetIterator());
    // The choices are only there for a symbol the engine placed in a word.
    if (!it || it->Empty(tesseract::RIL_SYMBOL))
        return {};
    return choicesAt(*it);
}

QList<ReadCharacter> VINTextEngine::readLine(const QRect &line)
{
    QList<ReadCharacter> characters;
    const QRect area = line.intersected(d->picture.rect());
    if (!d->ready || area.isEmpty())
        return characters;
    d->api.SetPageSegMode(tesseract::PSM_SINGLE_LINE);
    d->api.SetRectangle(area.x(), area.y(), area.width(), area.height());
    if (d->api.Recognize(nullptr) != 0)
        return characters;
    std::unique_ptr<tesseract::ResultIterator> it(d->api.GetIterator());
    if (!it)
        return characters;
    do {
        ReadCharacter character;
        character.choices = choicesAt(*it);
        if (character.choices.isEmpty())
            continue;
        int left, top, right, bottom;
        it->BoundingBox(tesseract::RIL_SYMBOL, &left, &top, &right, &bottom);
        character.box = QRect(QPoint(left, top), QPoint(right - 1, bottom - 1));
        character.startsWord = it->IsAtBeginningOf(tesseract::RIL_WORD);
        characters.append(character);
    } while (it->Next(tesseract::RIL_SYMBOL));
    return characters;
}

} // namespace ZQTPlatform

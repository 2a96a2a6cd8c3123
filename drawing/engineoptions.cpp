#include "engineoptions.h"

#include "errors.h"

#include <algorithm>

namespace {

/// How many letters must be inserted, removed or changed to get from one word to the other.
int editDistance(const QString& a, const QString& b) {
    QList<int> row(b.size() + 1);
    for (int j = 0; j < row.size(); ++j)
        row[j] = j;
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.last();
}

QString nearestKey(const QString& word) {
    const auto& options = engineOptions();
    return std::min_element(options.begin(), options.end(),
                            [&](const EngineOption& a, const EngineOption& b) {
                                return editDistance(word, a.key) < editDistance(word, b.key);
                            })
        ->key;
}

} // namespace

const QList<EngineOption>& engineOptions() {
    static const QList<EngineOption> options{
        {"monochrome", "", 0, 0, 1, "1: turn the image to black and white first (--mode bw)"},
        {"usebrightness", "", 0, 0, 1,
         "1: what is lighter than the threshold turns white; 0: everything black"},
        {"brightnessthreshold", "threshold", 200, -1, 255,
         "the lightness that a white pixel must exceed, in black and white"},
        {"usealpha", "", 0, 0, 1, "no effect"},
        {"alphathreshold", "", 200, 0, 255, "no effect"},
        {"numberofcolors", "colors", 16, 1, 65536, "how many colours the result has at most"},
        {"colorsampling", "", 1, 0, 1,
         "1: pick the colours from the image; 0: start from a regular grid"},
        {"blurradius", "blur", 1, 0, 5,
         "pixels to smooth over before colours are reduced; 0: none"},
        {"blurdelta", "", 2000, 0, 1e6,
         "pixels that smoothing would change by more keep their colour"},
        {"colorquantcycles", "cycles", 3, 0, 1000, "how often the colours are refined, plus one"},
        {"mincolorratio", "", 0.02, 0, 1,
         "a colour with a smaller share of the pixels is replaced by a random one"},
        {"pathomit", "min-path", 8, 0, 1e9,
         "leave out outlines with fewer corners on the pixel grid"},
        {"ltres", "line-tolerance", 1, -1e6, 1e6,
         "the square of the distance by which a straight piece may miss the pixel edges"},
        {"qtres", "curve-tolerance", 1, -1e6, 1e6, "the same for a curve"},
    };
    return options;
}

double checkedValue(const EngineOption& option, const QString& name, const QString& text) {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber)
        throw UsageError(QString("\"%1\" takes a number, not \"%2\"").arg(name, text));
    if (!(value >= option.low && value <= option.high))
        throw UsageError(QString("\"%1\" takes a number from %2 to %3, not %4")
                             .arg(name, QString::number(option.low, 'g', 10),
                                  QString::number(option.high, 'g', 10), text));
    return value;
}

const EngineOption& findEngineOption(const QString& key) {
    for (const EngineOption& option : engineOptions()) {
        if (key == option.key)
            return option;
    }
    throw UsageError(QString("unknown option \"%1\" (did you mean \"%2\"?)")
                         .arg(key, nearestKey(key.toLower())));
}

const QList<Preset>& presets() {
    static const QList<Preset> all{
        {"photo",
         false,
         {{"numberofcolors", 32},
          {"mincolorratio", 0},
          {"blurradius", 2},
          {"colorquantcycles", 5},
          {"pathomit", 6}},
         "photographs: 32 colours, smoothed"},
        {"logo",
         false,
         {{"numberofcolors", 16},
          {"mincolorratio", 0},
          {"blurradius", 0},
          {"colorquantcycles", 8},
          {"pathomit", 12}},
         "logos and clip art of few, flat colours"},
        {"lineart",
         true,
         {{"brightnessthreshold", 128},
          {"numberofcolors", 2},
          {"mincolorratio", 0},
          {"blurradius", 0},
          {"pathomit", 8}},
         "clean drawings in ink"},
        {"scan",
         true,
         {{"brightnessthreshold", 150},
          {"numberofcolors", 2},
          {"mincolorratio", 0},
          {"blurradius", 0},
          {"pathomit", 9}},
         "scanned pages and drawings: specks left out"},
        {"pixelart",
         false,
         {{"numberofcolors", 64},
          {"mincolorratio", 0},
          {"blurradius", 0},
          {"colorquantcycles", 8},
          {"pathomit", 0},
          {"ltres", 0.01},
          {"qtres", 0.01}},
         "pixel graphics: every pixel counts"},
    };
    return all;
}

#include "settingrows.h"

// The options of the tracer of outlines, in the order of the stages that read them.

namespace {

constexpr double Most = 1e6;

Setting option(Setting setting) {
    setting.group = SettingGroup::Tracing;
    setting.isTracerOption = true;
    setting.methods = {Method::Outlines};
    return setting;
}

QList<Setting> blackAndWhiteRows() {
    return {
        option({.key = "monochrome",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 0.0,
                .label = "Black and white first",
                .meaning = "1: turn the image to black and white first, as mode bw does"}),
        option({.key = "usebrightness",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 0.0,
                .label = "White by lightness",
                .meaning = "1: what is lighter than the threshold turns white; 0: all turns black",
                .modes = {Mode::Bw, Mode::Raw}}),
        option({.key = "brightnessthreshold",
                .type = SettingType::Number,
                .low = -1,
                .high = 255,
                .usual = 200.0,
                .label = "Lightness threshold",
                .meaning = "The lightness that a white pixel must exceed, in black and white",
                .rank = SettingRank::Common,
                .modes = {Mode::Bw, Mode::Raw}}),
        option({.key = "usealpha",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 0.0,
                .label = "Use alpha",
                .meaning = "No effect"}),
        option({.key = "alphathreshold",
                .type = SettingType::Number,
                .high = 255,
                .usual = 200.0,
                .label = "Alpha threshold",
                .meaning = "No effect"}),
    };
}

QList<Setting> colorRows() {
    return {
        option({.key = "numberofcolors",
                .flag = "colors",
                .type = SettingType::Number,
                .low = 1,
                .high = 65536,
                .usual = 16.0,
                .label = "Colours",
                .meaning = "How many colours the result has at most",
                .rank = SettingRank::Common,
                .without = "palette"}),
        option({.key = "colorsampling",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 1.0,
                .label = "Colours from the image",
                .meaning = "1: pick the colours from the image; 0: start from a regular grid",
                .without = "palette"}),
        option({.key = "blurradius",
                .flag = "blur",
                .type = SettingType::Number,
                .high = 5,
                .unit = "px",
                .usual = 1.0,
                .label = "Smoothing",
                .meaning = "Pixels to smooth over before colours are reduced; 0: none",
                .rank = SettingRank::Common}),
        option({.key = "blurdelta",
                .type = SettingType::Number,
                .high = Most,
                .usual = 2000.0,
                .label = "Smoothing limit",
                .meaning = "Pixels that smoothing would change by more keep their colour"}),
        option({.key = "colorquantcycles",
                .flag = "cycles",
                .type = SettingType::Number,
                .high = 1000,
                .usual = 3.0,
                .label = "Colour cycles",
                .meaning = "How often pixels are given to colours, which move in between"}),
        option({.key = "mincolorratio",
                .type = SettingType::Number,
                .high = 1,
                .usual = 0.02,
                .label = "Smallest share",
                .meaning = "A colour with a smaller share of the pixels is replaced by a random "
                           "one"}),
    };
}

QList<Setting> pathRows() {
    return {
        option({.key = "pathomit",
                .flag = "min-path",
                .type = SettingType::Number,
                .high = 1e9,
                .usual = 8.0,
                .label = "Specks",
                .meaning = "Leave out outlines with fewer corners on the pixel grid",
                .rank = SettingRank::Common}),
        option({.key = "ltres",
                .flag = "line-tolerance",
                .type = SettingType::Number,
                .low = -Most,
                .high = Most,
                .unit = "px²",
                .usual = 1.0,
                .label = "Line tolerance",
                .meaning = "The square of the distance by which a straight piece may miss the "
                           "pixel edges",
                .rank = SettingRank::Common}),
        option({.key = "qtres",
                .flag = "curve-tolerance",
                .type = SettingType::Number,
                .low = -Most,
                .high = Most,
                .unit = "px²",
                .usual = 1.0,
                .label = "Curve tolerance",
                .meaning = "The square of the distance by which a curve may miss the pixel edges",
                .rank = SettingRank::Common}),
    };
}

} // namespace

QList<Setting> outlineRows() {
    return blackAndWhiteRows() + colorRows() + pathRows();
}

#include "settingrows.h"

#include "choices.h"
#include "presets.h"
#include "writers/formats.h"

QList<Setting> methodRows() {
    return {
        {.key = "method",
         .flag = "method",
         .type = SettingType::Choice,
         .words = wordsOf(methodChoices()),
         .usual = "outlines",
         .label = "Method",
         .meaning = "What the image is turned into",
         .group = SettingGroup::Method,
         .rank = SettingRank::Common},
        {.key = "preset",
         .flag = "preset",
         .type = SettingType::Choice,
         .words = presetNames(),
         .label = "Preset",
         .meaning = "Settings for a kind of picture",
         .group = SettingGroup::Method,
         .rank = SettingRank::Common},
        {.key = "mode",
         .flag = "mode",
         .type = SettingType::Choice,
         .words = wordsOf(modeChoices()),
         .usual = "color",
         .label = "Mode",
         .meaning = "color, bw (black and white by lightness) or raw (the engine's own defaults "
                    "and the image as read)",
         .group = SettingGroup::Method,
         .rank = SettingRank::Common,
         .methods = {Method::Outlines}},
        {.key = "palette",
         .flag = "palette",
         .type = SettingType::Colors,
         .label = "Palette",
         .meaning = "The colours to start from, instead of those found in the image",
         .group = SettingGroup::Method,
         .methods = {Method::Outlines, Method::Regions}},
    };
}

QList<Setting> inputRows() {
    return {
        {.key = "page",
         .flag = "page",
         .type = SettingType::Whole,
         .low = 1,
         .high = 1e6,
         .usual = 1.0,
         .label = "Page",
         .meaning = "The page or frame of the file to trace",
         .group = SettingGroup::Input,
         .rank = SettingRank::Common},
        {.key = "crop",
         .flag = "crop",
         .type = SettingType::Rectangle,
         .unit = "px",
         .label = "Crop",
         .meaning = "Trace a part of the image alone: its left and upper edge, width and height",
         .group = SettingGroup::Input},
        {.key = "background",
         .flag = "background",
         .type = SettingType::Color,
         .label = "Background",
         .meaning = "Put transparent images on this colour first",
         .group = SettingGroup::Input},
        {.key = "max-pixels",
         .flag = "max-pixels",
         .type = SettingType::Whole,
         .low = 1,
         .high = 1e12,
         .usual = 4e8,
         .label = "Largest image",
         .meaning = "Refuse images of more pixels",
         .group = SettingGroup::Input},
    };
}

QList<Setting> sizeRows() {
    const QStringList sized{"svg", "dxf", "pdf", "png", "geojson"};
    return {
        {.key = "dpi",
         .flag = "dpi",
         .type = SettingType::Number,
         .low = 1,
         .high = 100000,
         .words = {"auto"},
         .unit = "pixels an inch",
         .label = "Resolution",
         .meaning = "How many pixels of the image an inch has; auto: as its file says",
         .group = SettingGroup::Size,
         .rank = SettingRank::Common,
         .formats = sized},
        {.key = "width",
         .flag = "width",
         .type = SettingType::Length,
         .label = "Width",
         .meaning = "Make the drawing so wide",
         .group = SettingGroup::Size,
         .rank = SettingRank::Common,
         .formats = sized},
        {.key = "height",
         .flag = "height",
         .type = SettingType::Length,
         .label = "Height",
         .meaning = "Make the drawing so high; with a width, fit it into both",
         .group = SettingGroup::Size,
         .rank = SettingRank::Common,
         .formats = sized},
        {.key = "units",
         .flag = "units",
         .type = SettingType::Choice,
         .words = wordsOf(unitChoices()),
         .label = "Units",
         .meaning = "The unit of coordinates; millimetres when the size is known, else pixels",
         .group = SettingGroup::Size,
         .rank = SettingRank::Common,
         .formats = {"dxf", "geojson"}},
    };
}

namespace {

QList<Setting> svgRows() {
    return {
        {.key = "outline",
         .flag = "outline",
         .label = "Strokes",
         .meaning = "Stroke the outlines instead of filling them",
         .group = SettingGroup::Output,
         .rank = SettingRank::Common,
         .formats = {"svg"}},
        {.key = "close-seams",
         .flag = "close-seams",
         .label = "Close seams",
         .meaning = "Stroke fills in their own colour, to hide seams between them",
         .group = SettingGroup::Output,
         .formats = {"svg"},
         .without = "outline"},
        {.key = "precision",
         .flag = "precision",
         .type = SettingType::Whole,
         .high = 15,
         .label = "Digits",
         .meaning = "Digits after the decimal point; without it all that count",
         .group = SettingGroup::Output,
         .formats = {"svg", "geojson"}},
    };
}

QList<Setting> dxfRows() {
    return {
        {.key = "dxf-version",
         .flag = "dxf-version",
         .type = SettingType::Choice,
         .words = wordsOf(dxfVersionChoices()),
         .usual = "R2010",
         .label = "DXF version",
         .meaning = "The version of the format; R12 is read by everything and has no splines",
         .group = SettingGroup::Output,
         .rank = SettingRank::Common,
         .formats = {"dxf"}},
        {.key = "dxf-curves",
         .flag = "dxf-curves",
         .type = SettingType::Choice,
         .words = wordsOf(dxfCurvesChoices()),
         .usual = "arcs",
         .label = "DXF curves",
         .meaning = "Curves as arcs or lines within the deviation, as one spline an outline, or as "
                    "quadratic splines (both exact)",
         .group = SettingGroup::Output,
         .rank = SettingRank::Common,
         .formats = {"dxf"}},
        {.key = "deviation",
         .flag = "deviation",
         .type = SettingType::Number,
         .low = 1e-6,
         .high = 1000,
         .unit = "px",
         .usual = 0.05,
         .label = "Deviation",
         .meaning = "How far arcs and straight pieces may be off the curves",
         .group = SettingGroup::Output,
         .formats = {"dxf", "geojson"},
         .needs = "dxf-curves",
         .needed = {"arcs", "lines"}},
    };
}

QList<Setting> pngRows() {
    return {
        {.key = "scale",
         .flag = "scale",
         .type = SettingType::Number,
         .low = 0.001,
         .high = 1000,
         .usual = 1.0,
         .label = "Picture scale",
         .meaning = "Pixels of the picture for each of the image",
         .group = SettingGroup::Output,
         .rank = SettingRank::Common,
         .formats = {"png"}},
        {.key = "overlay",
         .flag = "overlay",
         .label = "Overlay",
         .meaning = "Draw the outlines and their nodes over the faded image",
         .group = SettingGroup::Output,
         .formats = {"png"}},
    };
}

} // namespace

QList<Setting> outputRows() {
    const QList<Setting> format{{.key = "format",
                                 .flag = "format",
                                 .type = SettingType::Choice,
                                 .words = formatNames(),
                                 .usual = formatNames().first(),
                                 .label = "Format",
                                 .meaning =
                                     "The format of the result; without it the ending of the "
                                     "output file decides",
                                 .group = SettingGroup::Output,
                                 .rank = SettingRank::Common}};
    return format + svgRows() + dxfRows() + pngRows();
}

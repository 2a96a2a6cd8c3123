#include "settingrows.h"

// The options of the tracers of regions and of centre lines.

namespace {

Setting option(Method method, Setting setting) {
    setting.group = SettingGroup::Tracing;
    setting.isTracerOption = true;
    setting.methods = {method};
    return setting;
}

} // namespace

QList<Setting> regionRows() {
    const auto region = [](Setting setting) { return option(Method::Regions, std::move(setting)); };
    return {
        region({.key = "colors",
                .flag = "colors",
                .type = SettingType::Whole,
                .low = 1,
                .high = 4096,
                .usual = 64.0,
                .label = "Colours",
                .meaning = "How many colours the map has at most",
                .rank = SettingRank::Common,
                .without = "palette"}),
        region({.key = "tolerance",
                .flag = "tolerance",
                .type = SettingType::Number,
                .high = 100,
                .unit = "px",
                .usual = 0.03,
                .label = "Tolerance",
                .meaning = "How far a boundary may be off the one that the pixels tell; more gives "
                           "fewer pieces",
                .rank = SettingRank::Common}),
        region({.key = "speck",
                .flag = "speck",
                .type = SettingType::Number,
                .low = -1,
                .high = 1e9,
                .unit = "px²",
                .usual = -1.0,
                .label = "Specks",
                .meaning = "Merge smaller regions into their neighbours; -1: by the kind of image",
                .rank = SettingRank::Common}),
        region({.key = "fit",
                .flag = "fit",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 1.0,
                .label = "Smooth boundaries",
                .meaning = "1: fit lines, arcs and curves; 0: keep the edges of the pixels"}),
        region({.key = "cubics",
                .type = SettingType::Whole,
                .high = 1,
                .usual = 1.0,
                .label = "Cubic curves",
                .meaning = "1: cubic curves where arcs need many pieces; 0: arcs alone"}),
        region({.key = "light",
                .type = SettingType::Whole,
                .high = 2,
                .usual = 0.0,
                .label = "Mixed pixels",
                .meaning = "Means of stored levels, as in drawings (1), or of light, as in scaled "
                           "photographs (2); 0: told from the image"}),
    };
}

QList<Setting> centerlineRows() {
    const auto line = [](Setting setting) {
        return option(Method::Centerlines, std::move(setting));
    };
    return {
        line({.key = "inkthreshold",
              .flag = "ink-threshold",
              .type = SettingType::Number,
              .low = 0.05,
              .high = 0.95,
              .usual = 0.45,
              .label = "Ink threshold",
              .meaning = "The level from paper (0) to full ink (1) from which a pixel is ink",
              .rank = SettingRank::Common}),
        line({.key = "speckarea",
              .flag = "speck-area",
              .type = SettingType::Number,
              .high = 1e6,
              .unit = "px",
              .usual = 1.0,
              .label = "Specks of dirt",
              .meaning = "Leave out spots of ink of no more pixels",
              .rank = SettingRank::Common}),
        line({.key = "textsize",
              .flag = "text-size",
              .type = SettingType::Number,
              .high = 1000,
              .usual = 18.0,
              .label = "Text size",
              .meaning = "The largest character, in widths of the usual stroke; 0: no text",
              .rank = SettingRank::Common}),
    };
}

#include "presets.h"

const QList<Preset>& presets() {
    static const QList<Preset> all{
        {"photo",
         {{"mode", "color"},
          {"numberofcolors", 32.0},
          {"mincolorratio", 0.0},
          {"blurradius", 2.0},
          {"colorquantcycles", 5.0},
          {"pathomit", 6.0}},
         "photographs: 32 colours, smoothed"},
        {"logo",
         {{"mode", "color"},
          {"numberofcolors", 16.0},
          {"mincolorratio", 0.0},
          {"blurradius", 0.0},
          {"colorquantcycles", 8.0},
          {"pathomit", 12.0}},
         "logos and clip art of few, flat colours"},
        {"lineart",
         {{"mode", "bw"},
          {"brightnessthreshold", 128.0},
          {"numberofcolors", 2.0},
          {"mincolorratio", 0.0},
          {"blurradius", 0.0},
          {"pathomit", 8.0}},
         "clean drawings in ink"},
        {"scan",
         {{"mode", "bw"},
          {"brightnessthreshold", 150.0},
          {"numberofcolors", 2.0},
          {"mincolorratio", 0.0},
          {"blurradius", 0.0},
          {"pathomit", 9.0}},
         "scanned pages and drawings: specks left out"},
        {"pixelart",
         {{"mode", "color"},
          {"numberofcolors", 64.0},
          {"mincolorratio", 0.0},
          {"blurradius", 0.0},
          {"colorquantcycles", 8.0},
          {"pathomit", 0.0},
          {"ltres", 0.01},
          {"qtres", 0.01}},
         "pixel graphics: every pixel counts"},
    };
    return all;
}

QStringList presetNames() {
    QStringList names;
    for (const Preset& preset : presets())
        names.append(preset.name);
    return names;
}

const Preset* findPreset(const QString& name) {
    for (const Preset& preset : presets()) {
        if (name == preset.name)
            return &preset;
    }
    return nullptr;
}

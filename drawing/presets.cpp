#include "presets.h"

const QList<Preset>& presets() {
    static const QList<Preset> all{
        {"logo",
         {{"method", "regions"}, {"colors", 32.0}, {"speck", 3.0}},
         "logos and clip art of few, flat colours"},
        {"drawing",
         {{"method", "regions"}, {"colors", 8.0}, {"speck", 4.0}},
         "clean drawings in ink, as filled areas"},
        {"plan",
         {{"method", "centerlines"}},
         "plans, schematics and technical drawings, as centre lines with their widths"},
        {"scan",
         {{"method", "regions"}, {"threshold", "local"}, {"speck", 9.0}},
         "scanned or photographed pages and sketches: black and white, shadows and specks left "
         "out"},
        {"map",
         {{"method", "regions"}, {"colors", 256.0}, {"speck", 4.0}},
         "maps and charts: areas that share their boundaries"},
        {"pixelart",
         {{"method", "regions"}, {"colors", 4096.0}, {"fit", 0.0}, {"speck", 0.0}},
         "pixel graphics: every pixel counts"},
        {"photo",
         {{"method", "regions"}, {"colors", 32.0}, {"tolerance", 0.3}, {"speck", 20.0}},
         "photographs: 32 colours, specks left out"},
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

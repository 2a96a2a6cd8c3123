#include "options.h"

namespace ovtrace {

OptionMap defaultOptions() {
    return {
        {QString(option::Monochrome), 1.0},       {QString(option::NumberOfColors), 16.0},
        {QString(option::MinColorRatio), 0.02},   {QString(option::ColorQuantCycles), 3.0},
        {QString(option::ColorSampling), 1.0},    {QString(option::BlurRadius), 1.0},
        {QString(option::BlurDelta), 2000.0},     {QString(option::PathOmit), 8.0},
        {QString(option::LineTolerance), 1.0},    {QString(option::CurveTolerance), 1.0},
        {QString(option::AlphaThreshold), 200.0}, {QString(option::BrightnessThreshold), 200.0},
    };
}

} // namespace ovtrace

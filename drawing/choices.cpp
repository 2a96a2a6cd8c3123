#include "choices.h"

const Choices<Method>& methodChoices() {
    static const Choices<Method> choices{{"outlines", Method::Outlines},
                                         {"regions", Method::Regions},
                                         {"centerlines", Method::Centerlines}};
    return choices;
}

const Choices<Mode>& modeChoices() {
    static const Choices<Mode> choices{
        {"color", Mode::Color}, {"bw", Mode::Bw}, {"raw", Mode::Raw}};
    return choices;
}

const Choices<Unit>& unitChoices() {
    static const Choices<Unit> choices{
        {"mm", Unit::Millimetre}, {"cm", Unit::Centimetre}, {"m", Unit::Metre}, {"in", Unit::Inch},
        {"ft", Unit::Foot},       {"pt", Unit::Point},      {"px", Unit::Pixel}};
    return choices;
}

const Choices<DxfVersion>& dxfVersionChoices() {
    static const Choices<DxfVersion> choices{
        {"R12", DxfVersion::R12}, {"R2000", DxfVersion::R2000}, {"R2010", DxfVersion::R2010}};
    return choices;
}

const Choices<DxfCurves>& dxfCurvesChoices() {
    static const Choices<DxfCurves> choices{{"arcs", DxfCurves::Arcs},
                                            {"lines", DxfCurves::Lines},
                                            {"spline", DxfCurves::Spline},
                                            {"quadratic", DxfCurves::Quadratic}};
    return choices;
}

const Choices<DxfEdges>& dxfEdgesChoices() {
    static const Choices<DxfEdges> choices{{"rings", DxfEdges::Rings},
                                           {"shared", DxfEdges::Shared}};
    return choices;
}

const Choices<StatisticsForm>& statisticsChoices() {
    static const Choices<StatisticsForm> choices{{"table", StatisticsForm::Table},
                                                 {"json", StatisticsForm::Json}};
    return choices;
}

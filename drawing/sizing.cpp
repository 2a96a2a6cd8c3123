#include "sizing.h"

#include "errors.h"
#include "settingtable.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double MillimetresPerInch = 25.4;

/// How much the resolutions across and down may differ before pixels are not square.
constexpr double SquareTolerance = 0.01;

double statedResolution(const QString& fileName, const FileResolution& stated) {
    if (!(stated.across > 0.0))
        throw FileError(QString("%1: does not say how large it is; give a number to %2")
                            .arg(fileName, settingName("dpi")));
    if (std::abs(stated.across - stated.down) > SquareTolerance * stated.across)
        throw FileError(QString("%1: says %2 pixels an inch across and %3 down; give a number to "
                                "%4")
                            .arg(fileName)
                            .arg(stated.across)
                            .arg(stated.down)
                            .arg(settingName("dpi")));
    return stated.across;
}

/// The side of a pixel with which the image fits into a width, a height or both.
std::optional<double> fittingPixel(QSize size, const SizeRequest& request) {
    std::optional<double> pixel;
    if (request.widthMillimetres)
        pixel = *request.widthMillimetres / size.width();
    if (request.heightMillimetres) {
        const double byHeight = *request.heightMillimetres / size.height();
        pixel = std::min(pixel.value_or(byHeight), byHeight);
    }
    return pixel;
}

} // namespace

void setSize(Drawing& drawing, const QString& fileName, const ImagePlace& place,
             const SizeRequest& request) {
    if (place.resolution.across > 0.0)
        drawing.filePixelMillimetres = MillimetresPerInch / place.resolution.across;
    drawing.pixelMillimetres = fittingPixel(drawing.size, request);
    if (request.dotsPerInch)
        drawing.pixelMillimetres = MillimetresPerInch / *request.dotsPerInch;
    else if (request.dotsFromFile)
        drawing.pixelMillimetres =
            MillimetresPerInch / statedResolution(fileName, place.resolution);
    drawing.unit = request.unit.value_or(drawing.pixelMillimetres ? Unit::Millimetre : Unit::Pixel);
    drawing.modelScale = request.modelScale;
    // A size that was asked for comes before a world file that happens to be there.
    if (!drawing.pixelMillimetres)
        drawing.world = place.world;
    drawing.crs = request.crs;
    if (!drawing.world && !drawing.crs.isEmpty())
        throw FileError(QString("%1: has no world file, whose coordinates %2 would name")
                            .arg(fileName, settingName("crs")));
}

// Any image must give strokes that keep the promises of OvCenterlines.

#include "tracecenterlines.h"

#include <QImage>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void require(bool kept, const char* promise) {
    if (kept)
        return;
    std::fprintf(stderr, "broken: %s\n", promise);
    std::abort();
}

/// Blur and rounding put places up to a pixel outside.
bool isInside(OvCenterlinePoint p, const OvCenterlines& drawing) {
    return std::isfinite(p.x) && std::isfinite(p.y) && p.x >= -1.0 && p.y >= -1.0 &&
           p.x <= drawing.width + 1.0 && p.y <= drawing.height + 1.0;
}

void checkEnd(OvCenterlinePoint end, int node, const OvCenterlines& drawing) {
    require(isInside(end, drawing), "ends lie in the image");
    if (node < 0)
        return;
    require(node < drawing.nodes.size(), "ends name nodes that exist");
    require(end == drawing.nodes[node], "ends equal their nodes");
}

void check(const OvCenterlines& drawing) {
    for (const OvCenterlineStroke& stroke : drawing.strokes) {
        require(stroke.width > 0.0 && std::isfinite(stroke.width), "strokes have a width");
        if (stroke.shape == OvCenterlineStroke::Shape::Circle) {
            require(stroke.radius > 0.0 && isInside(stroke.center, drawing), "circles are there");
            continue;
        }
        if (stroke.shape == OvCenterlineStroke::Shape::Ellipse) {
            require(isInside(stroke.center, drawing), "ellipses are there");
            require(stroke.minorRadius > 0.0 && stroke.radius >= stroke.minorRadius,
                    "ellipses have radii");
            continue;
        }
        checkEnd(stroke.start, stroke.startNode, drawing);
        checkEnd(stroke.end, stroke.endNode, drawing);
        require(!(stroke.start == stroke.end), "strokes have a length");
        require(std::isfinite(stroke.bulge), "bulges are numbers");
    }
    for (const OvCenterlineArea& area : drawing.areas)
        for (const QList<OvCenterlinePoint>& ring : area.rings) {
            require(ring.size() >= 3, "rings have three points");
            for (const OvCenterlinePoint& p : ring)
                require(isInside(p, drawing), "rings lie in the image");
        }
}

/// An image of levels: the first byte is the width, the second says how the rest is spread.
QImage imageOf(const std::uint8_t* data, std::size_t size) {
    const int width = data[0] % 64 + 1;
    const bool bits = data[1] & 1;
    const std::size_t pixels = (size - 2) * (bits ? 8 : 1);
    const int height =
        static_cast<int>(std::min<std::size_t>(pixels / static_cast<std::size_t>(width), 64));
    QImage image(width, height, QImage::Format_Grayscale8);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const auto i = static_cast<std::size_t>(y * width + x);
            image.scanLine(y)[x] =
                bits ? ((data[2 + i / 8] >> (i % 8)) & 1 ? 0 : 255) : data[2 + i];
        }
    return image;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3)
        return 0;
    check(OvTraceCenterlines().trace(imageOf(data, size)));
    return 0;
}

#pragma once

#include <QPointF>

#include <cstddef>
#include <span>
#include <vector>

/// Contours of straight edges in a picture: pixels from its upper left corner, y down.
class RasterPath {
public:
    /// Forgets all contours and keeps their memory.
    void clear() {
        corners.clear();
        firsts.clear();
    }
    /// Begins a contour.
    void moveTo(QPointF point) {
        firsts.push_back(corners.size());
        corners.push_back(point);
    }
    void lineTo(QPointF point) {
        corners.push_back(point);
    }
    /// Adds a contour, unless it has no corners.
    void append(std::span<const QPointF> contour) {
        if (contour.empty())
            return;
        firsts.push_back(corners.size());
        corners.insert(corners.end(), contour.begin(), contour.end());
    }

    std::size_t countContours() const {
        return firsts.size();
    }
    /// The corners of a contour, at least one.
    std::span<const QPointF> contour(std::size_t index) const {
        const std::size_t end = index + 1 < firsts.size() ? firsts[index + 1] : corners.size();
        return {corners.data() + firsts[index], end - firsts[index]};
    }

private:
    std::vector<QPointF> corners;
    std::vector<std::size_t> firsts; ///< of the contours, indices into `corners`
};

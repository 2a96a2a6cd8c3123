#pragma once

#include "../drawing.h"
#include "edgegrid.h"

/// What to paint so that a map of regions shows no seams.
///
/// Two smooth edges in one place let through what lies below them, however exactly they meet. So
/// larger regions come first and reach a little under the smaller ones beside and within them, and
/// each boundary is drawn by one region alone: the upper one. They never reach where a lower region
/// or nothing at all is to be seen.
class Underlay {
public:
    /// Of all shapes of the drawing, which must outlive it. Shapes that are no regions keep their
    /// place and form.
    explicit Underlay(const Drawing& drawing);

    /// Indices of the shapes in the order in which they are painted.
    const QList<qsizetype>& order() const {
        return shapeOrder;
    }

    /// The closed rings to fill for a shape, by the nonzero rule.
    std::vector<std::vector<PathPiece>> rings(qsizetype shape) const;

private:
    struct Sides {
        qsizetype left = -1;
        qsizetype right = -1;
    };

    void findSides();
    void sortShapes();
    void findOpenHoles();
    void fillGrid();

    /// The place of a shape in the order; -1 for what must not be painted over: nothing at all and
    /// what can be seen through.
    int rankOf(qsizetype shape) const;
    qsizetype neighbour(const PathUse& use) const {
        return use.backwards ? sides[use.path].left : sides[use.path].right;
    }
    std::vector<PathPiece> reachingRing(const Ring& ring, int rank) const;

    const Drawing& drawing;
    QList<Sides> sides; ///< of the paths: the shapes beside them
    QList<qsizetype> shapeOrder;
    QList<int> ranks; ///< of the shapes
    /// Of the rings that are holes: whether something in them must not be painted over.
    QList<bool> openHoles;
    EdgeGrid grid;
};

#include "pathscan.h"

#include "kernels/cornerbits.h"
#include "nodetypes.h"
#include "pathtables.h"

#include <kernels/prefetch.h>
#include <pagearray.h>

#include <array>
#include <bit>
#include <vector>

namespace ovtrace {
namespace {

/// Marks of a node: which of the outlines' corners there a walk has passed. Only corners that may
/// start a walk, or that share their node with another corner of the colour, are marked.
enum Mark : std::uint8_t {
    ConvexLowerRight = 1,  ///< of the lower right cell, unlike its three neighbours
    ConcaveLowerRight = 2, ///< of the colour around the lower right cell
    SaddleUpperLeft = 4,   ///< around the upper left cell, at a node of type 10
    SaddleLowerLeft = 8,   ///< around the lower left cell, at a node of type 5
    /// Around the upper right cell, at a node of type 5. There the lower right cell is like the
    /// upper left one, so that the bit cannot mean the other.
    SaddleUpperRight = ConvexLowerRight,
};

/// The marks of all nodes, two to a byte.
class MarkGrid {
public:
    explicit MarkGrid(std::size_t nodes) : pairs(nodes / 2 + 1) {
    }
    unsigned at(std::size_t node) const {
        return static_cast<unsigned>(pairs[node / 2]) >> shiftOf(node);
    }
    void add(std::size_t node, std::uint8_t mark) {
        pairs[node / 2] = static_cast<std::uint8_t>(pairs[node / 2] | mark << shiftOf(node));
    }

private:
    static unsigned shiftOf(std::size_t node) {
        return node % 2 * 4;
    }

    PageArray<std::uint8_t> pairs;
};

/// Which hand of the walker the colour is on: right along outer boundaries, left along holes.
enum Side : int { Outer = 0, Hole = 1 };

/// What a walk does at a node, by the two cells ahead of it (those behind are known).
struct Turn {
    std::int8_t nodeType = 0;
    std::int8_t direction = 0;
    std::uint8_t mark = 0;      ///< the mark to set
    std::uint8_t otherMark = 0; ///< the mark of the saddle's other corner
    std::int8_t otherType = 0;  ///< the saddle's type when the other corner has been passed
};

/// The cells around a node as a walker sees them, by direction of arrival.
struct Ahead {
    int left;
    int right;
    int behindRight;
    int behindLeft;
};
constexpr std::array<Ahead, 4> AheadBits{{
    {UpperRight, LowerRight, LowerLeft, UpperLeft},
    {UpperLeft, UpperRight, LowerRight, LowerLeft},
    {LowerLeft, UpperLeft, UpperRight, LowerRight},
    {LowerRight, LowerLeft, UpperLeft, UpperRight},
}};

constexpr int Saddle5 = UpperLeft | LowerRight;
constexpr int Saddle10 = UpperRight | LowerLeft;

/// The turn at a saddle. What the node keeps lacks only the cell around which the second walk
/// will turn; this one turns around the cell opposite.
constexpr Turn saddleTurn(int type, const PathStep& step) {
    const auto found = static_cast<std::int8_t>(type);
    switch (step.nodeType) {
    case 15 - UpperRight:
        return {found, step.direction, SaddleLowerLeft, SaddleUpperRight, 15 - LowerLeft};
    case 15 - LowerLeft:
        return {found, step.direction, SaddleUpperRight, SaddleLowerLeft, 15 - UpperRight};
    case 15 - LowerRight:
        return {found, step.direction, SaddleUpperLeft, ConcaveLowerRight, 15 - UpperLeft};
    default:
        return {found, step.direction, ConcaveLowerRight, SaddleUpperLeft, 15 - LowerRight};
    }
}

constexpr Turn turnAt(int side, int direction, bool left, bool right) {
    const Ahead& ahead = AheadBits[static_cast<std::size_t>(direction)];
    const int type = (side == Outer ? ahead.behindRight : ahead.behindLeft) |
                     (left ? ahead.left : 0) | (right ? ahead.right : 0);
    const PathStep& step =
        PathSteps[static_cast<std::size_t>(type)][static_cast<std::size_t>(direction)];
    if (type == Saddle5 || type == Saddle10)
        return saddleTurn(type, step);
    Turn turn{static_cast<std::int8_t>(type), step.direction, 0, 0, 0};
    if (type == LowerRight)
        turn.mark = ConvexLowerRight;
    else if (type == 15 - LowerRight)
        turn.mark = ConcaveLowerRight;
    return turn;
}

/// Turns by side, direction of arrival and the cells ahead (left, right) of the colour.
constexpr auto makeTurns() {
    std::array<std::array<Turn, 16>, 2> turns{};
    for (int side = 0; side < 2; ++side) {
        for (int i = 0; i < 16; ++i)
            turns[static_cast<std::size_t>(side)][static_cast<std::size_t>(i)] =
                turnAt(side, i >> 2, (i & 2) != 0, (i & 1) != 0);
    }
    return turns;
}
constexpr auto Turns = makeTurns();

// A boundary's first node in raster order has the colour in the lower right cell alone, or a
// hole's first cell there; at a saddle, the walk before has left that. Both walks begin as if they
// had arrived upwards.
static_assert(PathDirections[LowerRight] == Up && HoleStarts[LowerRight] == 0);
static_assert(PathDirections[15 - LowerRight] == Up && HoleStarts[15 - LowerRight] == 1);

} // namespace

class PathScan::Sweep {
public:
    virtual ~Sweep() = default;
    virtual int next(Path& path) = 0;
};

/// The sweep over a grid of one cell width. A walk can start only at a node whose lower right
/// cell differs from the cells above and to the left of it: the first node of a boundary in
/// raster order has no edge up or left. There the cell's own region may begin, or, when the other
/// two cells have one colour, a hole of that colour.
template <typename Cell> class PathScan::CellSweep final : public PathScan::Sweep {
public:
    CellSweep(const CellGrid<Cell>& grid, float pathomit, StageProgress progress)
        : grid(grid), pathomit(pathomit), progress(progress),
          marks(static_cast<std::size_t>(grid.stride) *
                (static_cast<std::size_t>(grid.height) + 2)) {
        makeSteps();
        startRow();
    }

    int next(Path& path) override {
        for (;;) {
            while (!advance()) {
                if (row > grid.height)
                    return -1;
                ++row;
                startRow();
                progress.advance(grid.width);
            }
            const Cell* cell = grid.rowCells(row) + column;
            const Cell upperRight = cell[-grid.stride];
            const unsigned passed = marks.at(nodeOf(cell));
            if (upperRight == cell[-1] && upperRight != CellGrid<Cell>::Border &&
                !(passed & ConcaveLowerRight))
                walk<Hole>(cell, upperRight, [](const Turn&, int) {});
            if (*cell == CellGrid<Cell>::Border || *cell == cell[-grid.stride - 1] ||
                (passed & ConvexLowerRight))
                continue;
            walkOuter(cell, path);
            if (!(pathomit > static_cast<float>(path.size())))
                return static_cast<int>(*cell);
        }
    }

private:
    /// A turn and where it leads in this grid. Offsets are between cells, of which a node's lower
    /// right one stands for it.
    struct alignas(64) Step {
        const Step* arrival = nullptr; ///< the four steps to choose from at the next node
        qsizetype node = 0;            ///< to the next node
        qsizetype aheadLeft = 0;       ///< from there to the cells ahead of the walker
        qsizetype aheadRight = 0;      ///< likewise
        Turn turn;
    };

    void makeSteps() {
        const qsizetype stride = grid.stride;
        const std::array<qsizetype, 4> node{1, -stride, -1, stride};
        const std::array<qsizetype, 4> left{-stride, -stride - 1, -1, 0};
        const std::array<qsizetype, 4> right{0, -stride, -stride - 1, -1};
        for (std::size_t side = 0; side < 2; ++side) {
            const auto arriving = [&](std::size_t direction) {
                return Step{&steps[side][direction * 4],
                            node[direction],
                            left[direction],
                            right[direction],
                            {}};
            };
            starts[side] = arriving(Up);
            for (std::size_t i = 0; i < 16; ++i) {
                const Turn& turn = Turns[side][i];
                if (turn.direction < 0)
                    continue;
                steps[side][i] = arriving(static_cast<std::size_t>(turn.direction));
                steps[side][i].turn = turn;
            }
        }
    }

    std::size_t nodeOf(const Cell* cell) const {
        return static_cast<std::size_t>(cell - grid.rowCells(0));
    }

    void startRow() {
        block = 1 - CornerCells;
        candidates = 0;
        if (row <= grid.height)
            prefetch(grid.rowCells(row + 1), grid.stride * qsizetype(sizeof(Cell)));
    }

    /// Moves on to the next node of the row that may start a walk.
    bool advance() {
        while (candidates == 0) {
            block += CornerCells;
            if (block >= grid.stride)
                return false;
            candidates = candidatesOfBlock();
        }
        column = block + std::countr_zero(candidates);
        candidates &= candidates - 1;
        return true;
    }

    std::uint64_t candidatesOfBlock() const {
        const Cell* cells = grid.rowCells(row) + block;
        const Cell* above = cells - grid.stride;
        std::uint64_t bits = 0;
        if constexpr (sizeof(Cell) <= sizeof(std::uint16_t))
            bits = level == VectorLevel::Scalar ? cornerBits(cells, above)
                                                : cornerBitsSsse3(cells, above);
        else
            bits = cornerBits(cells, above);
        // Beyond the end of the row lies the next one.
        const qsizetype left = grid.stride - block;
        return left < CornerCells ? bits & ((std::uint64_t(1) << left) - 1U) : bits;
    }

    void walkOuter(const Cell* cell, Path& path) {
        path.clear();
        PathPoint point{static_cast<int>(column) - 1, row - 1, 0};
        walk<Outer>(cell, *cell, [&](const Turn& turn, int nodeType) {
            point.nodeType = nodeType;
            path.push_back(point);
            point.x += StepX[static_cast<std::size_t>(turn.direction)];
            point.y += StepY[static_cast<std::size_t>(turn.direction)];
        });
    }

    /// Walks the boundary that starts at the node of `start` along cells of `color`, as if it
    /// had arrived there upwards, until it is back. Calls visit(turn, node type) at every node.
    template <Side side, typename Visit>
    void walk(const Cell* start, Cell color, const Visit& visit) {
        constexpr std::int64_t Leg = 4096;
        const Cell* cell = start;
        const Step* step = &starts[side];
        std::int64_t uncounted = Leg;
        do {
            if (--uncounted == 0) {
                progress.advance(Leg);
                uncounted = Leg;
            }
            const std::size_t left = cell[step->aheadLeft] == color ? 2 : 0;
            const std::size_t right = cell[step->aheadRight] == color ? 1 : 0;
            step = step->arrival + (left + right);
            const Turn& turn = step->turn;
            visit(turn, turn.mark ? passCorner(turn, nodeOf(cell)) : turn.nodeType);
            cell += step->node;
        } while (cell != start);
        progress.advance(Leg - uncounted);
    }

    /// Marks the corner as passed. Returns the node's type as the walk finds it: at a saddle
    /// whose other corner a walk has passed before, what that walk has left.
    int passCorner(const Turn& turn, std::size_t node) {
        const int type = (marks.at(node) & turn.otherMark) ? turn.otherType : turn.nodeType;
        marks.add(node, turn.mark);
        return type;
    }

    static constexpr std::array StepX{1, 0, -1, 0}; ///< by direction
    static constexpr std::array StepY{0, -1, 0, 1};

    const CellGrid<Cell>& grid;
    const float pathomit;
    StageProgress progress;
    MarkGrid marks; ///< in the layout of the grid
    const VectorLevel level = vectorLevel();
    std::array<std::array<Step, 16>, 2> steps; ///< by side, arrival and the cells ahead
    std::array<Step, 2> starts;                ///< arriving upwards, by side
    int row = 1;
    qsizetype column = 0;         ///< of the last candidate
    qsizetype block = 0;          ///< the first column of those whose candidates are known
    std::uint64_t candidates = 0; ///< those not yet looked at: nodes that may start a walk
};

PathScan::PathScan(const LayerSet& layers, float pathomit, StageProgress progress) {
    if (layers.count() == 0)
        return;
    const auto makeSweep =
        [&]<typename Cell>(const CellGrid<Cell>& grid) -> std::unique_ptr<Sweep> {
        return std::make_unique<CellSweep<Cell>>(grid, pathomit, progress);
    };
    sweep = std::visit(makeSweep, layers.indices());
}

PathScan::~PathScan() = default;

int PathScan::next(Path& path) {
    return sweep ? sweep->next(path) : -1;
}

} // namespace ovtrace

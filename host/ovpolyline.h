#pragma once

#include "ovspline.h"

#include <QSharedData>
#include <QSharedDataPointer>
#include <QVarLengthArray>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <stdexcept>
#include <vector>

/// A chain of vertices and of whole shapes, each joined to the end of the piece before it.
///
/// Every piece can be read back exactly as it was appended. Polylines are
/// implicitly shared values: a copy costs a reference count until one of the
/// two is changed. Vertices and splines are packed into one run of numbers, so
/// that long outlines stay compact; any other shape is kept as a clone.
class OvPolyline final : public OvShape {
public:
    OvPolyline() : d(new Data) {
    }

    /// Appends a vertex, joined to the previous point by a straight piece when `bulge` is 0.
    void appendVertex(const OvVector& vertex, double bulge = 0.0, double startWidth = 0.0,
                      double endWidth = 0.0) {
        Data& data = *d;
        const std::array parameters{bulge, startWidth, endWidth};
        const bool plain =
            isPlanar(vertex) && isPlusZero(bulge) && isPlusZero(startWidth) && isPlusZero(endWidth);
        data.pieces.push_back(
            {placeOf(data.numbers), 1, 0, plain ? Storage::PlanarVertex : Storage::Vertex, false});
        appendPoint(data, vertex, plain);
        if (!plain)
            data.numbers.append(parameters.data(), parameters.size());
    }

    /// Appends a shape, so that its last point becomes the end of the polyline.
    ///
    /// `flag` is stored with the piece. Always returns true.
    bool appendShape(const OvShape& shape, bool flag = false) {
        if (shape.getShapeType() == Type::Spline)
            appendSpline(static_cast<const OvSpline&>(shape), flag);
        else
            appendClone(shape, flag);
        return true;
    }

    qsizetype countPieces() const {
        return d->pieces.size();
    }
    /// `index` lies in [0, countPieces()), here and below.
    bool isVertexAt(qsizetype index) const {
        return piece(index).storage <= Storage::Vertex;
    }
    /// The vertex at `index`, which must be one.
    OvVector getVertexAt(qsizetype index) const {
        const Piece& p = piece(index);
        return pointAt(p.first, p.storage == Storage::PlanarVertex);
    }
    /// The bulge, start width and end width of the vertex at `index`.
    std::array<double, 3> getVertexParametersAt(qsizetype index) const {
        const Piece& p = piece(index);
        if (p.storage == Storage::PlanarVertex)
            return {0.0, 0.0, 0.0};
        const double* parameters = d->numbers.constData() + p.first + FullPoint;
        return {parameters[0], parameters[1], parameters[2]};
    }
    /// A copy of the shape at `index`, which must not be a vertex.
    std::unique_ptr<OvShape> getShapeAt(qsizetype index) const {
        if (isSplineAt(index))
            return std::make_unique<OvSpline>(getSplineAt(index));
        return (*d->shapes)[piece(index).first]->clone();
    }
    bool getShapeFlagAt(qsizetype index) const {
        return piece(index).flag;
    }

    bool isSplineAt(qsizetype index) const {
        const Storage storage = piece(index).storage;
        return storage == Storage::PlanarSpline || storage == Storage::Spline;
    }
    /// The spline at `index`, which must be one (isSplineAt()).
    OvSpline getSplineAt(qsizetype index) const {
        const Piece& p = piece(index);
        const bool planar = p.storage == Storage::PlanarSpline;
        OvSpline spline;
        spline.setDegree(p.degree);
        for (std::size_t i = 0; i < p.count; ++i)
            spline.appendControlPoint(pointAt(p.first + i * (planar ? 2 : FullPoint), planar));
        return spline;
    }

    Type getShapeType() const override {
        return Type::Polyline;
    }
    std::unique_ptr<OvShape> clone() const override {
        return std::make_unique<OvPolyline>(*this);
    }
    OvVector getStartPoint() const override {
        if (d->pieces.empty())
            return OvVector::invalid();
        return isVertexAt(0) ? getVertexAt(0) : getShapeAt(0)->getStartPoint();
    }
    OvVector getEndPoint() const override {
        // A shape without an end leaves that of the piece before it.
        for (qsizetype i = countPieces() - 1; i >= 0; --i) {
            if (isVertexAt(i))
                return getVertexAt(i);
            const OvVector end = endOfShape(i);
            if (end.valid)
                return end;
        }
        return OvVector::invalid();
    }

private:
    /// How a piece lies in Data: planar points (z = +0, valid) take two numbers, others four.
    enum class Storage : std::uint8_t { PlanarVertex, Vertex, PlanarSpline, Spline, Clone };
    static constexpr std::size_t FullPoint = 4;

    struct Piece {
        std::uint32_t first; ///< index into `numbers`, or into `shapes` for a clone
        std::uint8_t count;  ///< points
        std::int8_t degree;
        Storage storage;
        bool flag;
    };
    static_assert(sizeof(Piece) == 8);

    using Shapes = std::vector<std::shared_ptr<const OvShape>>;

    struct Data : QSharedData {
        Data() = default;
        Data(const Data& other) : QSharedData(other), pieces(other.pieces), numbers(other.numbers) {
            if (other.shapes)
                shapes = std::make_unique<Shapes>(*other.shapes);
        }

        // An outline of usual size takes no memory but that of this block.
        QVarLengthArray<Piece, 6> pieces;
        QVarLengthArray<double, 12> numbers;
        std::unique_ptr<Shapes> shapes;
    };

    [[noreturn]] static void failTooLong() {
#if defined(__cpp_exceptions) || defined(_CPPUNWIND)
        throw std::length_error("a polyline is too long");
#else
        std::abort();
#endif
    }
    /// Where the next items will lie. Throws std::length_error when the polyline is full, beyond
    /// four thousand million numbers.
    template <typename Items> static std::uint32_t placeOf(const Items& items) {
        if (static_cast<std::size_t>(items.size()) > std::numeric_limits<std::uint32_t>::max())
            failTooLong();
        return static_cast<std::uint32_t>(items.size());
    }
    static std::uint64_t bitsOf(double value) {
        std::uint64_t bits = 0;
        static_assert(sizeof bits == sizeof value);
        std::memcpy(&bits, &value, sizeof bits);
        return bits;
    }
    static bool isPlusZero(double value) {
        return bitsOf(value) == 0;
    }
    static bool isPlanar(const OvVector& point) {
        return point.valid && isPlusZero(point.z);
    }
    static void appendPoint(Data& data, const OvVector& point, bool planar) {
        data.numbers.push_back(point.x);
        data.numbers.push_back(point.y);
        if (planar)
            return;
        data.numbers.push_back(point.z);
        data.numbers.push_back(point.valid ? 1.0 : 0.0);
    }

    void appendSpline(const OvSpline& spline, bool flag) {
        const qsizetype count = spline.countControlPoints();
        if (spline.getDegree() != static_cast<std::int8_t>(spline.getDegree()) ||
            count != static_cast<std::uint8_t>(count)) {
            appendClone(spline, flag);
            return;
        }
        bool planar = true;
        for (qsizetype i = 0; i < count; ++i)
            planar = planar && isPlanar(spline.getControlPointAt(i));
        Data& data = *d;
        // A spline that starts where the piece before it ends shares the numbers of that point.
        const bool shares = planar && count > 0 && endsAt(spline.getControlPointAt(0));
        const std::uint32_t first = placeOf(data.numbers) - (shares ? 2 : 0);
        data.pieces.push_back({first, static_cast<std::uint8_t>(count),
                               static_cast<std::int8_t>(spline.getDegree()),
                               planar ? Storage::PlanarSpline : Storage::Spline, flag});
        for (qsizetype i = shares ? 1 : 0; i < count; ++i)
            appendPoint(data, spline.getControlPointAt(i), planar);
    }
    /// Whether the last two numbers are the bits of a planar point.
    bool endsAt(const OvVector& point) const {
        const auto same = [](double a, double b) { return bitsOf(a) == bitsOf(b); };
        const auto& numbers = d->numbers;
        return numbers.size() >= 2 && same(*(numbers.end() - 2), point.x) &&
               same(numbers.back(), point.y);
    }
    void appendClone(const OvShape& shape, bool flag) {
        // Cloned before the data are detached: a polyline appended to itself must not hold itself.
        std::shared_ptr<const OvShape> copy = shape.clone();
        Data& data = *d;
        if (!data.shapes)
            data.shapes = std::make_unique<Shapes>();
        data.pieces.push_back({placeOf(*data.shapes), 0, 0, Storage::Clone, flag});
        data.shapes->push_back(std::move(copy));
    }

    const Piece& piece(qsizetype index) const {
        return d->pieces[index];
    }
    OvVector endOfShape(qsizetype index) const {
        const Piece& p = piece(index);
        if (p.storage == Storage::PlanarSpline && p.count > 0)
            return pointAt(p.first + (p.count - 1U) * 2U, true);
        return getShapeAt(index)->getEndPoint();
    }
    OvVector pointAt(std::size_t first, bool planar) const {
        const double* number = d->numbers.constData() + first;
        return planar ? OvVector(number[0], number[1])
                      : OvVector(number[0], number[1], number[2], number[3] != 0.0);
    }

    QSharedDataPointer<Data> d;
};

#include "reference/compare.h"
#include "reference/tracetwin.h"
#include "support/conversions.h"
#include "support/randominput.h"

#include <fitting.h>

#include <QThread>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>

using namespace ovtrace;

namespace {

using Records = QList<QList<double>>;

Records traced(const InternodePath& nodes, float ltres, float qtres) {
    TracedPath segments;
    tracepath(nodes, ltres, qtres, segments);
    return toLists(segments);
}

Records fitted(const InternodePath& nodes, float ltres, float qtres, int start, int end) {
    TracedPath segments;
    fitseq(nodes, ltres, qtres, start, end, segments);
    return toLists(segments);
}

/// An outline of 3 to 12 nodes anywhere.
InternodePath randomNodes(RandomInput& input) {
    InternodePath nodes;
    for (int i = input.number(3, 12); i > 0; --i)
        nodes.push_back({input.number(0, 20) * 0.5, input.number(0, 20) * 0.5, 0});
    return nodes;
}

/// A sequence whose inner node lies `offset` above the chord.
InternodePath bump(double offset) {
    return {{0, 0, 0}, {1, offset, 0}, {2, 0, 0}, {9, 9, 1}};
}

} // namespace

TEST(Fitting, PathsOfFewerThanTwoNodesAreEmpty) {
    EXPECT_TRUE(traced({}, 1, 1).isEmpty());
    EXPECT_TRUE(traced({{1, 2, 8}}, 1, 1).isEmpty());
}

TEST(Fitting, TwoNodesGiveOneDegenerateLine) {
    EXPECT_EQ(traced({{0.5, 0, 8}, {0.5, 0, 8}}, 1, 1), (Records{{1, 0.5, 0, 0.5, 0, 0, 0}}));
}

TEST(Fitting, TwoDirectionsAloneGiveOneDegenerateLine) {
    EXPECT_EQ(traced({{0, 0, 0}, {5, 1, 1}, {7, 9, 0}, {2, 8, 1}}, 0, 0),
              (Records{{1, 0, 0, 0, 0, 0, 0}}));
}

TEST(Fitting, AThirdDirectionEndsASequence) {
    const InternodePath nodes{{0, 0, 0}, {1, 0, 1}, {2, 1, 2}, {2, 2, 2}, {2, 3, 4}, {1, 3, 4}};
    const Records records = traced(nodes, 100, 100);
    // Nodes 0-2 (third direction at node 2), 2 to the close over the last node.
    EXPECT_EQ(records, (Records{{1, 0, 0, 2, 1, 0, 0}, {1, 2, 1, 0, 0, 0, 0}}));
}

TEST(Fitting, AdjacentNodesAreALine) {
    EXPECT_EQ(fitted(bump(50), -1, -1, 0, 1), (Records{{1, 0, 0, 1, 50, 0, 0}}));
}

TEST(Fitting, ExactPlacesPassZeroTolerances) {
    EXPECT_EQ(fitted(bump(0), 0, 0, 0, 2), (Records{{1, 0, 0, 2, 0, 0, 0}}));
    // One inner node lies exactly on the curve drawn through it.
    EXPECT_EQ(fitted(bump(1), 0, 0, 0, 2), (Records{{2, 0, 0, 1, 2, 2, 0}}));
}

TEST(Fitting, TolerancesAreSquaredDistances) {
    EXPECT_EQ(fitted(bump(1.0), 1, 100, 0, 2).first()[0], 1.0);
    EXPECT_EQ(fitted(bump(1.01), 1, 100, 0, 2).first()[0], 2.0);
    EXPECT_EQ(fitted(bump(1.9), 3.7F, 100, 0, 2).first()[0], 1.0) << "1.9 squared is 3.61";
}

TEST(Fitting, UnevenPlacesOnTheChordCountAsErrors) {
    const InternodePath nodes{{0, 0, 0}, {3.5, 0, 0}, {4, 0, 0}, {9, 9, 1}};
    EXPECT_EQ(fitted(nodes, 1, 100, 0, 2).first()[0], 2.0);
}

TEST(Fitting, SplitsBetweenTheTwoWorstNodes) {
    const InternodePath nodes{{0, 0, 0}, {1, 9, 0}, {2, 0, 0},  {3, -4, 0},
                              {4, 0, 0}, {5, 5, 0}, {6, -9, 0}, {7, 0, 1}};
    const Records records = fitted(nodes, 0.5F, 0.5F, 0, 6);
    ASSERT_GT(records.size(), 1);
    EXPECT_TRUE(sameRecords(records, TraceTwin().fitseq(toLists(nodes), 0.5F, 0.5F, 0, 6)));
    for (qsizetype i = 1; i < records.size(); ++i) {
        const QList<double>& before = records[i - 1];
        const qsizetype end = before[0] == 1.0 ? 3 : 5;
        EXPECT_EQ(before[end], records[i][1]);
        EXPECT_EQ(before[end + 1], records[i][2]);
    }
}

TEST(Fitting, AnEndThatIsNoNodeGivesNothing) {
    EXPECT_TRUE(fitted(bump(1), 1, 1, 0, -1).isEmpty());
    EXPECT_TRUE(fitted(bump(1), 1, 1, 0, 5).isEmpty());
    EXPECT_TRUE(fitted(bump(1), 1, 1, 0, 99).isEmpty());
    EXPECT_TRUE(fitted({}, 1, 1, 0, 0).isEmpty());
}

TEST(Fitting, AnEndOfAsManyAsThereAreNodesIsNodeZeroAtTheClose) {
    RandomInput input(41);
    for (int round = 0; round < 300; ++round) {
        const InternodePath nodes = randomNodes(input);
        const int count = static_cast<int>(nodes.size());
        const int start = input.number(0, count - 1);
        const float tolerance = static_cast<float>(input.number(0, 9));
        InternodePath opened = nodes; // node 0 stands behind the last one, too
        opened.push_back(nodes.front());
        const Records records = fitted(nodes, tolerance, tolerance, start, count);
        ASSERT_FALSE(records.isEmpty());
        EXPECT_TRUE(sameRecords(
            records, TraceTwin().fitseq(toLists(opened), tolerance, tolerance, start, count)));
        if (start > 0) {
            EXPECT_TRUE(sameRecords(records, fitted(nodes, tolerance, tolerance, start, 0)));
        }
    }
}

TEST(Fitting, AnEndBeforeTheStartRunsOverTheLastNode) {
    RandomInput input(42);
    int curves = 0;
    for (int round = 0; round < 2000; ++round) {
        const InternodePath nodes = randomNodes(input);
        const int count = static_cast<int>(nodes.size());
        const int start = input.number(1, count - 1);
        const int end = input.number(0, start);
        const float tolerance = static_cast<float>(input.number(0, 30));
        // Any curve passes: beyond the close, splits need not end.
        const Records records = fitted(nodes, tolerance, 1e30F, start, end);
        EXPECT_TRUE(
            sameRecords(records, TraceTwin().fitseq(toLists(nodes), tolerance, 1e30F, start, end)));
        curves += records.first()[0] == 2.0 ? 1 : 0;
    }
    EXPECT_GT(curves, 500);
}

TEST(Fitting, NegativeLineToleranceCanLeaveNoControlPoint) {
    // No error exceeds 0, so the node to pass through is the start itself.
    const Records records = fitted(bump(0), -1, 1, 0, 2);
    ASSERT_EQ(records.size(), 1);
    EXPECT_EQ(records[0][0], 2.0);
    EXPECT_TRUE(std::isnan(records[0][3]));
    EXPECT_TRUE(std::isnan(records[0][4]));
}

TEST(Fitting, NanTolerancesLetEverythingPass) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(fitted(bump(50), nan, 0, 0, 2).first()[0], 1.0);
    EXPECT_EQ(fitted(bump(50), 0, nan, 0, 2).first()[0], 2.0);
}

TEST(Fitting, ManySplitsNeedNoDeepStack) {
    // The first spike is always the highest, so that each split cuts off only a node or two.
    constexpr int Nodes = 20000;
    InternodePath nodes;
    for (int i = 0; i < Nodes; ++i)
        nodes.push_back({static_cast<double>(i), i % 2 == 0 ? 0.0 : 10.0 * (Nodes - i), i % 2});
    Records records;
    const std::unique_ptr<QThread> thread(
        QThread::create([&] { records = fitted(nodes, 0, 0, 0, Nodes - 1); }));
    thread->setStackSize(128 * 1024);
    thread->start();
    thread->wait();
    EXPECT_GT(records.size(), Nodes / 3);
    EXPECT_EQ(records.last()[records.last()[0] == 1.0 ? 3 : 5], Nodes - 1.0);
}

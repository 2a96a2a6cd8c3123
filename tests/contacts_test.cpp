// Segments that meet, in a grid of cells, against all pairs.

#include <contacts.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

using namespace ovtrace;

/// Segments through points, each corner with a number of its own from `first` on.
std::vector<EdgeSegment> walk(const std::vector<Point>& points, std::uint32_t boundary,
                              std::uint32_t first) {
    std::vector<EdgeSegment> segments;
    for (std::uint32_t i = 0; i + 1 < points.size(); ++i)
        segments.push_back({points[i], points[i + 1], boundary, first + i, first + i + 1});
    return segments;
}

std::vector<EdgeSegment> both(std::vector<EdgeSegment> one, const std::vector<EdgeSegment>& other) {
    one.insert(one.end(), other.begin(), other.end());
    return one;
}

std::vector<Contact> found(const std::vector<EdgeSegment>& segments) {
    return findContacts(SegmentGrid(segments));
}

using Pairs = std::set<std::pair<std::uint32_t, std::uint32_t>>;

Pairs pairsOf(const std::vector<Contact>& contacts) {
    Pairs pairs;
    for (const Contact& contact : contacts)
        pairs.insert(std::minmax(contact.first, contact.second));
    return pairs;
}

TEST(Contacts, CornersInCommonAreNone) {
    EXPECT_TRUE(found(walk({{0, 0}, {5, 0}, {5, 5}, {1, 0.5}}, 0, 0)).empty());
    EXPECT_TRUE(found({}).empty());
}

TEST(Contacts, CrossingsHaveTheirPlace) {
    const auto contacts = found(both(walk({{0, 0}, {4, 4}}, 0, 0), walk({{4, 0}, {0, 4}}, 1, 10)));
    ASSERT_EQ(contacts.size(), 1U);
    EXPECT_NEAR(contacts[0].at.x, 2.0, 1e-12);
    EXPECT_NEAR(contacts[0].at.y, 2.0, 1e-12);
}

TEST(Contacts, CornersThatTouchOthersAreContacts) {
    // A corner on an edge, and two corners in one place that are not the same.
    EXPECT_FALSE(found(both(walk({{0, 0}, {4, 0}}, 0, 0), walk({{2, 3}, {2, 0}}, 1, 10))).empty());
    EXPECT_FALSE(found(both(walk({{0, 0}, {4, 0}}, 0, 0), walk({{4, 0}, {6, 1}}, 1, 10))).empty());
}

TEST(Contacts, SegmentsUponEachOtherAreContacts) {
    EXPECT_FALSE(found(walk({{0, 0}, {5, 0}, {2, 0}}, 0, 0)).empty());
    // Two boundaries, each a line, between the same junctions.
    EXPECT_FALSE(
        found(std::vector<EdgeSegment>{{{0, 0}, {5, 0}, 0, 0, 1}, {{0, 0}, {5, 0}, 1, 0, 1}})
            .empty());
}

TEST(Contacts, WhatHasNoLengthIsFound) {
    const auto contacts = found(walk({{3, 3}, {3, 3}}, 0, 0));
    ASSERT_FALSE(contacts.empty());
    EXPECT_EQ(contacts[0].first, contacts[0].second);
}

TEST(Contacts, AreThoseOfAllPairs) {
    std::mt19937 random(5);
    const auto place = [&](double size) { return double(random() % 10000) / 10000.0 * size; };
    for (const double length : {3.0, 8.0, 100.0}) {
        std::vector<EdgeSegment> segments;
        for (std::uint32_t i = 0; i < 150; ++i) {
            const Point from{place(60.0), place(40.0)};
            segments.push_back(
                {from, from + Point{place(length), place(length) / 3.0}, i, 2 * i, 2 * i + 1});
        }
        segments.push_back({{-5, 20}, {90, 20}, 1000, 5000, 5001});
        Pairs plain;
        for (std::uint32_t i = 0; i < segments.size(); ++i) {
            for (std::uint32_t k = i + 1; k < segments.size(); ++k) {
                const std::vector<EdgeSegment> two{segments[i], segments[k]};
                if (!found(two).empty())
                    plain.emplace(i, k);
            }
        }
        EXPECT_FALSE(plain.empty());
        EXPECT_EQ(pairsOf(found(segments)), plain);
    }
}

} // namespace

#include "support/conversions.h"

#include <layering.h>

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

QList<QList<int>> layerOf(const LayerSet& layers, int k) {
    QList<QList<int>> rows;
    for (int r = 0; r < layers.rows(); ++r) {
        QList<int> row;
        for (int c = 0; c < layers.columns(); ++c)
            row.append(layers.nodeType(k, r, c));
        rows.append(row);
    }
    return rows;
}

} // namespace

TEST(Layering, OnePixelHasFourNodes) {
    const QuantizedImage image = quantizedImage({{1}}, 3);
    const LayerSet layers(image);
    EXPECT_EQ(layers.count(), 3);
    EXPECT_EQ(layerOf(layers, 1), (QList<QList<int>>{{0, 0, 0}, {0, 4, 8}, {0, 2, 1}}));
    const QList<QList<int>> none(3, QList<int>(3, 0));
    EXPECT_EQ(layerOf(layers, 0), none);
    EXPECT_EQ(layerOf(layers, 2), none);
}

TEST(Layering, UniformImageIsInteriorWithAnOutline) {
    const QuantizedImage image = quantizedImage({{0, 0}, {0, 0}}, 2);
    const LayerSet layers(image);
    EXPECT_EQ(layerOf(layers, 0),
              (QList<QList<int>>{{0, 0, 0, 0}, {0, 4, 12, 8}, {0, 6, 15, 9}, {0, 2, 3, 1}}));
    EXPECT_EQ(layerOf(layers, 1), QList<QList<int>>(4, QList<int>(4, 0)));
}

TEST(Layering, WithoutPixelsEveryNodeIsZero) {
    const QuantizedImage image = quantizedImage({}, 2);
    const LayerSet layers(image);
    EXPECT_EQ(layers.rows(), 2);
    EXPECT_EQ(layers.columns(), 2);
    for (int k = 0; k < 2; ++k)
        EXPECT_EQ(layerOf(layers, k), QList<QList<int>>(2, QList<int>(2, 0)));
}

TEST(Layering, AColorThatDoesNotOccurHasAnEmptyLayer) {
    const QuantizedImage image = quantizedImage({{0, 2}, {2, 0}}, 3);
    EXPECT_EQ(layerOf(LayerSet(image), 1), QList<QList<int>>(4, QList<int>(4, 0)));
}

TEST(Layering, CornerContactsMakeSaddles) {
    const QuantizedImage image = quantizedImage({{0, 1}, {1, 0}}, 2);
    const LayerSet layers(image);
    EXPECT_EQ(layers.nodeType(0, 2, 2), 5);
    EXPECT_EQ(layers.nodeType(1, 2, 2), 10);
}

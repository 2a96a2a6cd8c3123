// The split of a histogram against the definition.

#include "otsu.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace ovtrace;

namespace {

/// The variance between the classes up to `split` and above it, from the definition; below zero
/// when one of them is empty.
double varianceBetween(const std::vector<std::uint32_t>& histogram, int split) {
    double counts[2] = {0.0, 0.0};
    double sums[2] = {0.0, 0.0};
    for (std::size_t i = 0; i < histogram.size(); ++i) {
        const int side = static_cast<int>(i) > split ? 1 : 0;
        counts[side] += histogram[i];
        sums[side] += static_cast<double>(i) * histogram[i];
    }
    if (counts[0] == 0.0 || counts[1] == 0.0)
        return -1.0;
    const double difference = sums[0] / counts[0] - sums[1] / counts[1];
    return counts[0] * counts[1] * difference * difference;
}

TEST(Otsu, IsTheMiddleOfAnEmptyStretch) {
    std::vector<std::uint32_t> histogram(256);
    histogram[10] = 5;
    histogram[200] = 9;
    EXPECT_EQ(otsuSplit(histogram), (10 + 199) / 2);
}

TEST(Otsu, OneLevelHasNoTwoClasses) {
    std::vector<std::uint32_t> histogram(256);
    EXPECT_EQ(otsuSplit(histogram), -1);
    histogram[77] = 1000;
    EXPECT_EQ(otsuSplit(histogram), -1);
}

TEST(Otsu, NoSplitHasAGreaterVariance) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        std::vector<std::uint32_t> histogram(2 + random() % 60);
        for (std::uint32_t& count : histogram)
            count = random() % 3 == 0 ? static_cast<std::uint32_t>(random() % 1000) : 0;
        histogram.front() += 1;
        histogram.back() += 1;
        const int split = otsuSplit(histogram);
        double best = 0.0;
        for (int i = 0; i < static_cast<int>(histogram.size()); ++i)
            best = std::max(best, varianceBetween(histogram, i));
        EXPECT_NEAR(varianceBetween(histogram, split), best, best * 1e-9) << round;
    }
}

} // namespace

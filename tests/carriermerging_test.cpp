#include "shapes/carriermerging.h"

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

/// A corner at sample 20, where the chain turns into y.
Weighted corner() {
    std::vector<Sample> samples;
    for (int k = 0; k < 20; ++k)
        samples.push_back({{k + 0.5, 0.0}, 0.02, false});
    for (int k = 0; k < 20; ++k)
        samples.push_back({{20.0, k + 0.5}, 0.02, false});
    return weighted(samples, 0, false, {});
}

} // namespace

TEST(CarrierMerging, PartsOfOneLineAreOne) {
    const Weighted data = corner();
    const auto carriers = merged(
        data, {},
        {fitted(data, 0, 6, false), fitted(data, 7, 19, false), fitted(data, 20, 39, false)});
    ASSERT_EQ(carriers.size(), 2u);
    EXPECT_EQ(carriers[0].last, 19);
    EXPECT_EQ(carriers[1].first, 20);
}

TEST(CarrierMerging, BreaksGoToTheCorner) {
    const Weighted data = corner();
    std::vector<Carrier> carriers{fitted(data, 0, 17, false), fitted(data, 18, 39, false)};
    refineBreaks(data, carriers);
    EXPECT_EQ(carriers[0].last, 19);
    EXPECT_EQ(carriers[1].first, 20);
    EXPECT_LT(std::abs(carriers[1].direction.x), 1e-9);
}

// Places of edges within pixels and, without anti-aliasing, between them.

#include <edgeplaces.h>
#include <regiongrid.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using namespace ovtrace;

/// A picture of a dark area on a light one, row by row: the share of each pixel that is dark.
struct Picture {
    int width = 0;
    std::vector<double> dark;

    std::vector<QRgb> pixels() const {
        std::vector<QRgb> all;
        for (const double share : dark) {
            const int grey = static_cast<int>(255.0 * (1.0 - share) + 0.5);
            all.push_back(qRgb(grey, grey, grey));
        }
        return all;
    }
    int height() const {
        return static_cast<int>(dark.size()) / width;
    }
    std::vector<std::uint16_t> labels() const {
        std::vector<std::uint16_t> all;
        for (const double share : dark)
            all.push_back(share >= 0.5 ? 1 : 0);
        return all;
    }
};

struct Chain {
    std::vector<Sample> samples;
    std::size_t steps = 0;
};

/// The places along the only closed chain of a picture.
Chain placesAround(const Picture& picture) {
    RegionGrid grid;
    grid.width = picture.width;
    grid.height = picture.height();
    for (const std::uint16_t label : picture.labels())
        grid.ids.push_back(label);
    grid.labels = {0, 1};
    const CrackMap cracks = walkCracks(grid);
    LabelImage labels;
    labels.width = grid.width;
    labels.height = grid.height;
    labels.palette = {qRgb(255, 255, 255), qRgb(0, 0, 0)};
    labels.plainColors = 2;
    labels.labels = picture.labels();
    const std::vector<QRgb> pixels = picture.pixels();
    const PixelView view{pixels.data(), static_cast<std::size_t>(picture.width), grid.width,
                         grid.height};
    const EdgePlaces places(view, labels, {0});
    for (const CrackChain& chain : cracks.chains) {
        if (chain.left >= 0 && chain.right >= 0)
            return {places.placesOf(cracks, chain), chain.stepCount};
    }
    ADD_FAILURE();
    return {};
}

/// A dark rectangle in the middle of the pixels, its left and right pixels covered by `share`.
Picture rectangle(double share) {
    Picture picture{20, std::vector<double>(20 * 16, 0.0)};
    for (int y = 3; y < 13; ++y) {
        for (int x = 4; x < 16; ++x)
            picture.dark[static_cast<std::size_t>(y * 20 + x)] = x == 4 || x == 15 ? share : 1.0;
    }
    return picture;
}

TEST(EdgePlaces, CoverageTellsThePlaceWithinAPixel) {
    const Chain chain = placesAround(rectangle(0.6));
    const auto left =
        std::count_if(chain.samples.begin(), chain.samples.end(), [](const Sample& sample) {
            return std::abs(sample.at.x - 4.4) < 0.002 && !sample.loose;
        });
    EXPECT_GE(left, 6);
    for (const Sample& sample : chain.samples)
        EXPECT_TRUE(sample.loose || sample.sigma < 0.1);
}

TEST(EdgePlaces, WithoutCoverageEachStepIsAPlace) {
    Picture picture = rectangle(1.0);
    // A foot of two pixels beside a long upright side.
    for (const int x : {2, 3})
        picture.dark[static_cast<std::size_t>(12 * 20 + x)] = 1.0;
    const Chain chain = placesAround(picture);
    ASSERT_EQ(chain.samples.size(), chain.steps);
    for (const Point expected : {Point{2.5, 12.0}, Point{3.5, 12.0}, Point{2.0, 12.5}})
        EXPECT_TRUE(std::any_of(chain.samples.begin(), chain.samples.end(),
                                [&](const Sample& sample) { return sample.at == expected; }));
    for (const Sample& sample : chain.samples)
        EXPECT_GT(sample.sigma, 0.28);
}

} // namespace

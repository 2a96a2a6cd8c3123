// Centres of lines between whole pixels, against shares added up point by point.

#include <thinline.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

using namespace ovtrace;

using Shares = std::array<double, 12>;

/// What a line covers of a row of pixels while its centre moves on by `lean`.
Shares sharesOf(double centre, double width, double lean) {
    constexpr int Rows = 2000;
    Shares shares{};
    for (int row = 0; row < Rows; ++row) {
        const double at = centre + lean * ((row + 0.5) / Rows - 0.5);
        for (std::size_t i = 0; i < shares.size(); ++i) {
            const double from = std::max(at - width / 2.0, double(i));
            const double to = std::min(at + width / 2.0, double(i) + 1.0);
            shares[i] += std::max(0.0, to - from) / Rows;
        }
    }
    return shares;
}

double momentCentre(const Shares& shares) {
    double sum = 0.0;
    double moment = 0.0;
    for (std::size_t i = 0; i < shares.size(); ++i) {
        sum += shares[i];
        moment += shares[i] * (double(i) + 0.5);
    }
    return moment / sum;
}

TEST(ThinLine, CentreIsExactWhereverTheLineCrossesFromPixelToPixel) {
    double worstPlain = 0.0;
    for (const double width : {0.7, 1.3, 1.5, 2.5}) {
        for (const double lean : {0.0, 0.1, 0.4, 1.0}) {
            for (double at = 5.0; at < 6.0; at += 0.01) {
                const Shares shares = sharesOf(at, width, lean);
                const ThinLine line(shares, lean, 1e-4);
                EXPECT_LE(std::abs(line.centre() - at), line.sigma() + 1e-4)
                    << width << ' ' << lean << ' ' << at;
                if (width > 1.0) {
                    EXPECT_NEAR(line.centre(), at, 0.002);
                    EXPECT_LT(line.sigma(), 0.002);
                    EXPECT_LT(line.misfit(), 0.01);
                }
                worstPlain = std::max(worstPlain, std::abs(momentCentre(shares) - at));
            }
        }
    }
    // What the moment alone would give.
    EXPECT_GT(worstPlain, 0.1);
}

TEST(ThinLine, WithinOnePixelThePlaceIsOpen) {
    const Shares shares = sharesOf(5.5, 0.6, 0.0);
    const ThinLine line(shares, 0.0, 1e-3);
    EXPECT_NEAR(line.centre(), 5.5, 0.01);
    EXPECT_NEAR(line.sigma(), 0.2, 0.02);
}

TEST(ThinLine, EndOfALineFitsBadly) {
    // 2.5 pixels wide, ending after two thirds of the row.
    Shares shares = sharesOf(5.75, 2.5, 0.0);
    for (double& share : shares)
        share *= 0.68;
    EXPECT_GT(ThinLine(shares, 0.0, 1e-3).misfit(), 0.15);
}

} // namespace

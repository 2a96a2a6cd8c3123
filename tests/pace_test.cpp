#include <pace.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

using namespace ovtrace;

namespace {

class Recorder : public OvTraceProgress {
public:
    explicit Recorder(std::size_t most = 1000) : most(most) {
    }
    bool report(double fraction) override {
        fractions.push_back(fraction);
        return fractions.size() < most;
    }
    std::vector<double> fractions;

private:
    std::size_t most;
};

/// Longer than reports are apart.
void waitABit() {
    std::this_thread::sleep_for(std::chrono::milliseconds(12));
}

} // namespace

TEST(Pace, FractionsNeverFall) {
    Recorder host;
    Pace pace(&host);
    pace.stage(0.5);
    waitABit();
    pace.step(9.0, 10.0);
    waitABit();
    pace.step(1.0, 10.0); // another part of the stage
    pace.stage(1.0);
    waitABit();
    pace.step(5.0, 10.0);
    EXPECT_EQ(host.fractions, (std::vector<double>{0.0, 0.45, 0.45, 0.5, 0.75}));
}

TEST(Pace, ReportsNoMoreOftenThanNeeded) {
    Recorder host;
    Pace pace(&host);
    pace.stage(1.0);
    for (int i = 0; i < 1000; ++i)
        pace.step(i, 1000.0);
    EXPECT_LT(host.fractions.size(), 100U);
}

TEST(Pace, ARefusalEndsTheTrace) {
    Recorder host(2);
    Pace pace(&host);
    pace.stage(0.5);
    EXPECT_THROW(pace.stage(1.0), TraceCancelled);
}

TEST(Pace, NobodyNeedsToListen) {
    Pace pace(nullptr);
    pace.stage(0.5);
    EXPECT_NO_THROW(pace.step(1.0, 0.0));
}

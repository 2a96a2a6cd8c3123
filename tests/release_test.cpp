#include <release.h>

#include <gtest/gtest.h>

namespace {

TEST(Release, NoMemoryIsKept) {
    std::vector<int> elements(1000);
    ovtrace::release(elements);
    EXPECT_EQ(elements.capacity(), 0U);
}

} // namespace

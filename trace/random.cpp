#include "random.h"

#include <numbers.h>

#include <cmath>

#ifdef Q_OS_WIN
#include <cstdlib>
#else
#include <atomic>
#endif

namespace ovtrace {
namespace {

constexpr double LargestDraw = 32767.0;

#ifdef Q_OS_WIN

int draw() {
    return std::rand();
}

#else

// Atomic because the sequence is shared by all tracers of the process, whatever their threads.
std::atomic<std::uint32_t> state = 1;

int draw() {
    std::uint32_t before = state.load(std::memory_order_relaxed);
    std::uint32_t after = 0;
    do
        after = before * 214013U + 2531011U;
    while (!state.compare_exchange_weak(before, after, std::memory_order_relaxed));
    return static_cast<int>((after >> 16) & 0x7fffU);
}

#endif

signed char randomChannel() {
    return truncateToByte(std::floor(random() * 255.0) - StoredOffset);
}

} // namespace

void seedRandom(unsigned seed) {
#ifdef Q_OS_WIN
    std::srand(seed);
#else
    state.store(seed, std::memory_order_relaxed);
#endif
}

double random() {
    return static_cast<double>(draw()) / LargestDraw;
}

Color randomColor() {
    Color color;
    color.red = randomChannel();
    color.green = randomChannel();
    color.blue = randomChannel();
    color.alpha = randomChannel();
    return color;
}

} // namespace ovtrace

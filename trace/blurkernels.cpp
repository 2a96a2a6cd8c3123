#include "blurkernels.h"

namespace ovtrace {
namespace {

constexpr std::array Kernel1{0.27901, 0.44198, 0.27901};
constexpr std::array Kernel2{0.135336, 0.228569, 0.272192, 0.228569, 0.135336};
constexpr std::array Kernel3{0.086776, 0.136394, 0.178908, 0.195843, 0.178908, 0.136394, 0.086776};
constexpr std::array Kernel4{0.063327, 0.093095, 0.122589, 0.144599, 0.152781,
                             0.144599, 0.122589, 0.093095, 0.063327};
constexpr std::array Kernel5{0.049692, 0.069304, 0.089767, 0.107988, 0.120651, 0.125194,
                             0.120651, 0.107988, 0.089767, 0.069304, 0.049692};

constexpr std::array<std::span<const double>, MaxBlurRadius> Kernels{Kernel1, Kernel2, Kernel3,
                                                                     Kernel4, Kernel5};

} // namespace

std::span<const double> blurKernel(int radius) {
    return Kernels[static_cast<std::size_t>(radius - 1)];
}

} // namespace ovtrace

#pragma once

#include <QRgb>

#include <cstdint>

/// All four channels times share / 255, rounded; 0 <= share <= 255.
inline QRgb scaled(QRgb pixel, std::uint32_t share) {
    // Each channel in 16 bits of its own: no product and no sum carries into the next.
    constexpr std::uint64_t Bytes = 0x00ff00ff00ff00ff;
    constexpr std::uint64_t Halves = 0x0080008000800080;
    std::uint64_t wide = (pixel & 0x00ff00ffU) | static_cast<std::uint64_t>(pixel & 0xff00ff00U)
                                                     << 24U;
    wide = wide * share + Halves;
    wide = (wide + (wide >> 8U & Bytes)) >> 8U & Bytes;
    return static_cast<QRgb>(wide | wide >> 24U);
}

/// The pixel with its colour times its alpha.
inline QRgb premultiplied(QRgb pixel) {
    const std::uint32_t alpha = pixel >> 24U;
    return alpha == 255 ? pixel : scaled(pixel | 0xff000000U, alpha);
}

/// What a premultiplied pixel looks like with another below it.
inline QRgb over(QRgb upper, QRgb lower) {
    return upper + scaled(lower, 255U - (upper >> 24U));
}

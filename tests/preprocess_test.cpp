#include "support/colors.h"
#include "support/messagelog.h"
#include <options.h>
#include <preprocess.h>
#include <tracebitmap.h>

#include <QColor>
#include <QImage>
#include <QStringList>

#include <gtest/gtest.h>

#include <limits>

using namespace ovtrace;

namespace {

QImage pixel(QRgb color) {
    QImage image(1, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, color);
    return image;
}

QRgb preprocessed(QRgb color, const OptionMap& options) {
    OptionMap read = options;
    QImage image = pixel(color);
    preprocess(image, read);
    return image.pixel(0, 0);
}

} // namespace

TEST(Preprocess, OffReadsAndChangesNothing) {
    for (const double off : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        OptionMap options = defaultOptions();
        options["monochrome"] = off;
        const auto keys = options.keys();
        QImage image = pixel(0x80123456U);
        preprocess(image, options);
        EXPECT_EQ(image.pixel(0, 0), 0x80123456U);
        EXPECT_EQ(options.keys(), keys) << "\"usebrightness\" stays absent";
    }
}

TEST(Preprocess, OnReadsAllItsOptions) {
    OptionMap options{{"monochrome", 1.0}};
    QImage image = pixel(White);
    preprocess(image, options);
    EXPECT_EQ(options.keys(), QStringList({"alphathreshold", "brightnessthreshold", "monochrome",
                                           "usealpha", "usebrightness"}));
    QImage none;
    OptionMap again{{"monochrome", 1.0}};
    preprocess(none, again);
    EXPECT_EQ(again.size(), 5) << "a null image has its options read too";
}

TEST(Preprocess, LightnessMustExceedTheFlooredThreshold) {
    const OptionMap options{
        {"monochrome", 1.0}, {"usebrightness", 1.0}, {"brightnessthreshold", 200.7}};
    EXPECT_EQ(preprocessed(qRgb(200, 200, 200), options), Black);
    EXPECT_EQ(preprocessed(qRgb(201, 201, 201), options), White);
}

TEST(Preprocess, WithoutBrightnessEverythingTurnsBlack) {
    for (const double flag : {0.0, 0.5}) {
        const OptionMap options{{"monochrome", 1.0}, {"usebrightness", flag}};
        EXPECT_EQ(preprocessed(White, options), Black) << flag;
    }
    const OptionMap nan{{"monochrome", 1.0},
                        {"usebrightness", std::numeric_limits<double>::quiet_NaN()}};
    EXPECT_EQ(preprocessed(White, nan), White) << "NaN counts as on";
}

TEST(Preprocess, AlphaOptionsDecideNothing) {
    for (const QRgb color : {0x00ffffffU, 0x80808080U, 0xff000000U, 0x10c0c0c0U}) {
        for (const double threshold : {0.0, 128.0, 255.0, -1e30}) {
            OptionMap off{{"monochrome", 1.0}, {"usebrightness", 1.0}};
            OptionMap on = off;
            on["usealpha"] = 1.0;
            on["alphathreshold"] = threshold;
            EXPECT_EQ(preprocessed(color, on), preprocessed(color, off));
        }
    }
}

TEST(Preprocess, TransparentWhiteTurnsOpaqueWhite) {
    const OptionMap options{{"monochrome", 1.0}, {"usebrightness", 1.0}};
    EXPECT_EQ(preprocessed(0x00ffffffU, options), White);
}

TEST(Preprocess, ThresholdsThatNoIntHoldsLetEveryLightnessThrough) {
    for (const double limit : {std::numeric_limits<double>::quiet_NaN(), 1e300, -1e300,
                               std::numeric_limits<double>::infinity()}) {
        const OptionMap options{
            {"monochrome", 1.0}, {"usebrightness", 1.0}, {"brightnessthreshold", limit}};
        EXPECT_EQ(preprocessed(Black, options), White) << limit;
    }
}

TEST(Preprocess, LightnessFollowsFromTheLargestAndSmallestChannel) {
    // What the fast form for 32-bit pixels rests on, for every pair of channels.
    std::vector<int> bySum(511, -1);
    for (int larger = 0; larger < 256; ++larger) {
        for (int smaller = 0; smaller <= larger; ++smaller) {
            for (const int middle : {smaller, (smaller + larger) / 2, larger}) {
                int& lightness = bySum[static_cast<std::size_t>(larger + smaller)];
                const int own = QColor(middle, larger, smaller).lightness();
                if (lightness < 0)
                    lightness = own;
                ASSERT_EQ(own, lightness) << larger << ", " << middle << ", " << smaller;
            }
        }
    }
}

TEST(Preprocess, CopyLeavesItsArgumentAlone) {
    OvTraceBitmap tracer;
    const QImage image = pixel(0xff804020U);
    const QImage result = tracer.getPreprocessed(image);
    EXPECT_EQ(image.pixel(0, 0), 0xff804020U);
    EXPECT_EQ(result.size(), image.size());
    EXPECT_EQ(result.pixel(0, 0), Black);
}

TEST(Preprocess, NullImageStaysNull) {
    OvTraceBitmap tracer;
    EXPECT_TRUE(tracer.getPreprocessed(QImage()).isNull());
}

TEST(Preprocess, ImagesThatTakeNoPixelColorsStayAndNothingIsLogged) {
    for (const auto format :
         {QImage::Format_Mono, QImage::Format_MonoLSB, QImage::Format_Indexed8}) {
        QImage image(9, 5, format);
        image.setColorTable({qRgb(255, 255, 255), qRgb(0, 0, 0)});
        image.fill(0);
        const QImage before = image.copy();
        OptionMap options{{"monochrome", 1.0}};
        const MessageLog log;
        preprocess(image, options);
        EXPECT_EQ(image, before);
        EXPECT_TRUE(MessageLog::messages.isEmpty())
            << MessageLog::messages.join('\n').toStdString();
    }
}

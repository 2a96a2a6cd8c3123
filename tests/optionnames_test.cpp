#include <tracebitmap.h>
#include <tracecenterlines.h>
#include <traceregions.h>

#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace ovtrace;

namespace {

/// The keys in the first column of the tables of a page, sorted.
QStringList documentedKeys(const QString& page) {
    QFile file(QStringLiteral(OVTRACE_DOCS "/") + page);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << page.toStdString();
    QString text = QString::fromUtf8(file.readAll());
    const qsizetype start = text.indexOf(QStringLiteral("| key |"));
    text = text.mid(start, text.indexOf(QStringLiteral("\n\n"), start) - start);
    QStringList keys;
    static const QRegularExpression row(QStringLiteral("\n\\| `(\\w+)` \\|"));
    for (auto matches = row.globalMatch(text); matches.hasNext();)
        keys.append(matches.next().captured(1));
    keys.sort();
    return keys;
}

QStringList sorted(QStringList names) {
    names.sort();
    return names;
}

/// What any tracer does with its options.
template <typename Tracer> void checkOptions(const QString& first) {
    Tracer tracer;
    EXPECT_TRUE(Tracer::optionNames().contains(first));
    QStringList names = Tracer::optionNames();
    EXPECT_EQ(names.removeDuplicates(), 0);
    for (const QString& key : tracer.getOptions().keys()) {
        EXPECT_TRUE(Tracer::optionNames().contains(key)) << key.toStdString();
        EXPECT_EQ(tracer.getOption(key), tracer.getOptions().value(key));
    }
    tracer.setOption(first, 2.5);
    EXPECT_EQ(tracer.getOption(first), 2.5);
    tracer.setOption(QStringLiteral("mispelt"), 3.0);
    EXPECT_EQ(tracer.getOption(QStringLiteral("mispelt")), 3.0) << "kept, and never read";
    EXPECT_FALSE(Tracer::optionNames().contains(QStringLiteral("mispelt")));
}

} // namespace

TEST(OptionNames, OptionsComeBackAsTheyWereSet) {
    checkOptions<OvTraceBitmap>(option::PathOmit);
    checkOptions<OvTraceRegions>(regionoption::Speck);
    checkOptions<OvTraceCenterlines>(centerlineoption::TextSize);
}

TEST(OptionNames, ReadingAnOptionDoesNotSetIt) {
    const OvTraceBitmap tracer;
    EXPECT_EQ(tracer.getOption(option::UseBrightness), 0.0);
    EXPECT_FALSE(tracer.getOptions().contains(option::UseBrightness));
    EXPECT_EQ(tracer.getOptions().size(), 12);
}

TEST(OptionNames, ThePagesListEveryOption) {
    EXPECT_EQ(documentedKeys(QStringLiteral("options.md")), sorted(OvTraceBitmap::optionNames()));
    EXPECT_EQ(documentedKeys(QStringLiteral("regions.md")), sorted(OvTraceRegions::optionNames()));
    EXPECT_EQ(documentedKeys(QStringLiteral("centerlines.md")),
              sorted(OvTraceCenterlines::optionNames()));
}

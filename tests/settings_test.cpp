// The table of settings, the values of a job, and the files that keep them.

#include <drawing/errors.h>
#include <drawing/jobrequests.h>
#include <drawing/presets.h>
#include <drawing/settingsfile.h>
#include <drawing/settinguse.h>
#include <drawing/settingvalue.h>

#include <QFile>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

#include <tracebitmap.h>
#include <tracecenterlines.h>
#include <traceregions.h>

namespace {

/// What is thrown by an action, as a text; empty when nothing is.
template <typename Action> std::string usageError(Action action) {
    try {
        action();
    } catch (const UsageError& error) {
        return error.what();
    }
    return {};
}

std::string errorOf(const QByteArray& json) {
    return usageError([&] { settingsFromJson(json, "plan.json"); });
}

bool contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

QVariant read(const char* key, const QString& text) {
    return settingFromText(*findSetting(key), text, key);
}

JobSettings jobOf(const QMap<QString, QVariant>& values) {
    JobSettings job;
    for (auto value = values.begin(); value != values.end(); ++value)
        job.set(value.key(), value.value());
    return job;
}

QString why(const char* key, const JobSettings& job) {
    return whyUnused(*findSetting(key), job).value_or(QString());
}

} // namespace

TEST(SettingTable, SaysEverythingAboutEachSetting) {
    const QList<Method> all{Method::Outlines, Method::Regions, Method::Centerlines};
    QSet<QString> keys;
    QSet<QString> flags;
    for (const Setting& setting : settingTable()) {
        SCOPED_TRACE(setting.key);
        EXPECT_FALSE(keys.contains(setting.key));
        keys.insert(setting.key);
        // A flag may be shared by settings of different methods.
        for (const Method method : setting.methods.isEmpty() ? all : setting.methods) {
            const QString flag = QString("%1 %2").arg(setting.flag).arg(static_cast<int>(method));
            EXPECT_FALSE(setting.flag[0] != '\0' && flags.contains(flag));
            flags.insert(flag);
        }
        EXPECT_NE(*setting.label, '\0');
        const QString meaning = QString::fromUtf8(setting.meaning);
        EXPECT_FALSE(meaning.isEmpty() || meaning.endsWith('.'));
        EXPECT_TRUE(meaning.isEmpty() || !meaning[0].isLower() || setting.words.contains("color"));
        EXPECT_TRUE(setting.type != SettingType::Choice || !setting.words.isEmpty());
        if (setting.usual.isValid()) {
            EXPECT_EQ(settingFromText(setting, settingToText(setting.usual), "it"), setting.usual);
        }
        for (const char* other : {setting.needs, setting.without})
            EXPECT_TRUE(other[0] == '\0' || findSetting(other) != nullptr) << other;
    }
}

TEST(SettingTable, PresetsHoldValuesOfTheTable) {
    for (const Preset& preset : presets()) {
        for (auto value = preset.values.begin(); value != preset.values.end(); ++value) {
            SCOPED_TRACE((preset.name + (' ' + value.key())).toStdString());
            const Setting* setting = findSetting(value.key());
            ASSERT_NE(setting, nullptr);
            EXPECT_EQ(settingFromValue(*setting, value.value(), "it"), value.value());
        }
    }
}

TEST(SettingTable, HasTheOptionsOfEveryTracer) {
    const QHash<Method, QStringList> options{
        {Method::Outlines, OvTraceBitmap::optionNames()},
        {Method::Regions, OvTraceRegions::optionNames()},
        {Method::Centerlines, OvTraceCenterlines::optionNames()}};
    QHash<Method, QStringList> found;
    for (const Setting& setting : settingTable()) {
        if (!setting.isTracerOption)
            continue;
        for (const Method method : setting.methods) {
            EXPECT_TRUE(options[method].contains(setting.key)) << setting.key;
            found[method].append(setting.key);
        }
    }
    for (const auto& [method, names] : options.asKeyValueRange()) {
        for (const QString& name : names)
            EXPECT_TRUE(found[method].contains(name)) << name.toStdString();
    }
}

QString rangeInWords(const Setting& setting) {
    const auto word = [](double value) { return QString::number(value, 'f', 0); };
    return word(setting.low) + " to " + word(setting.high);
}

TEST(SettingTable, RangesOfTheEnginesOptionsAreThoseOfTheirPage) {
    QFile page(OVTRACE_DOCS "/options.md");
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    int rows = 0;
    for (const Setting& setting : settingTable()) {
        if (!setting.isTracerOption || !setting.methods.contains(Method::Outlines))
            continue;
        const QRegularExpression row(
            QString("\\| `%1` \\| [^|]* \\| ([^|]*) \\|").arg(setting.key));
        EXPECT_EQ(row.match(text).captured(1), rangeInWords(setting)) << setting.key;
        ++rows;
    }
    EXPECT_EQ(rows, OvTraceBitmap::optionNames().size());
}

TEST(SettingValue, WordsAreReadInAnyCase) {
    EXPECT_EQ(read("dxf-version", "r12"), "R12");
    EXPECT_EQ(read("mode", "BW"), "bw");
    EXPECT_EQ(read("dpi", "Auto"), "auto");
    EXPECT_EQ(read("width", "12 MM"), "12mm");
    EXPECT_EQ(read("overlay", "On"), true);
}

TEST(SettingValue, ColorsAreThreeSixOrEightDigitsOrNames) {
    EXPECT_EQ(read("background", "#f80"), "#ff8800");
    EXPECT_EQ(read("background", "#FF8800"), "#ff8800");
    EXPECT_EQ(read("background", "#ff880040"), "#ff880040");
    EXPECT_EQ(read("background", "CornflowerBlue"), "#6495ed");
    EXPECT_EQ(read("palette", "red, #123"), QVariant(QStringList{"#ff0000", "#112233"}));
    EXPECT_EQ(parseColor("#01020304"), QColor(1, 2, 3, 4));
    for (const char* word : {"", "#", "#12", "#1234", "#12345", "#1234567", "#123456789", "#ggg",
                             "#+12345", "reddish", "rgb(1,2,3)"})
        EXPECT_TRUE(contains(usageError([&] { read("background", word); }), "is not a colour"))
            << word;
}

TEST(SettingValue, LengthsHaveAUnit) {
    EXPECT_DOUBLE_EQ(*parseLength("120mm"), 120.0);
    EXPECT_DOUBLE_EQ(*parseLength("1.5 in"), 38.1);
    EXPECT_DOUBLE_EQ(*parseLength("2m"), 2000.0);
    EXPECT_DOUBLE_EQ(*parseLength("10ft"), 3048.0);
    EXPECT_DOUBLE_EQ(*parseLength("72pt"), 25.4);
    for (const char* word : {"", "12", "mm", "-3mm", "1.2.3mm", "1e3mm", "3px", "0mm", "."})
        EXPECT_TRUE(contains(usageError([&] { read("width", word); }), "with its unit")) << word;
}

TEST(SettingValue, NumbersStayInTheirRange) {
    EXPECT_EQ(read("scale", "2.5"), 2.5);
    EXPECT_EQ(usageError([] { read("scale", "0"); }),
              "scale takes a number from 0.001 to 1000, not \"0\"");
    EXPECT_EQ(usageError([] { read("precision", "2.5"); }),
              "precision takes a whole number, not \"2.5\"");
    for (const char* word : {"nan", "inf", "", "2x", "1001"})
        EXPECT_FALSE(usageError([&] { read("scale", word); }).empty()) << word;
}

TEST(JobSettings, GivenComesBeforePresetBeforeUsual) {
    JobSettings job;
    EXPECT_EQ(job.number("colors"), 64.0);
    job.set("colors", 5);
    job.set("threshold", "auto");
    job.set("preset", "photo");
    EXPECT_EQ(job.number("colors"), 32.0) << "a preset takes the place of what was given";
    EXPECT_EQ(job.text("threshold"), "none") << "what is done before tracing, too";
    job.set("colors", "7");
    EXPECT_EQ(job.number("colors"), 7.0);
    job.reset("colors");
    EXPECT_EQ(job.number("colors"), 32.0);
    job.reset("preset");
    EXPECT_EQ(job, JobSettings());
}

TEST(JobSettings, ModeAndTheTracersOptionsAgree) {
    const JobSettings color = jobOf({{"method", "outlines"}});
    EXPECT_EQ(traceSettings(color).values.value("monochrome", -1.0), 0.0);
    const JobSettings bw = jobOf({{"mode", "bw"}});
    EXPECT_EQ(traceSettings(bw).values["monochrome"], 1.0);
    EXPECT_EQ(traceSettings(bw).values["usebrightness"], 1.0);
    EXPECT_EQ(jobOf({{"monochrome", 1}}).mode(), Mode::Bw);
    EXPECT_EQ(jobOf({{"monochrome", 0}, {"mode", "bw"}}).mode(), Mode::Color);
    EXPECT_EQ(traceSettings(jobOf({{"mode", "raw"}, {"ltres", 2}})).values,
              EngineValues({{"ltres", 2.0}}));
}

TEST(JobSettings, RefusesWhatIsNoSetting) {
    JobSettings job;
    EXPECT_TRUE(
        contains(usageError([&] { job.set("pathomits", 3); }), "did you mean \"pathomit\""));
    EXPECT_TRUE(
        contains(usageError([&] { job.set("scale", QStringList{"2"}); }), "takes a number"));
    EXPECT_EQ(job, JobSettings());
}

TEST(JobSettings, AnOptionOfOneMethodAloneChoosesIt) {
    EXPECT_EQ(JobSettings().method(), Method::Regions);
    EXPECT_EQ(jobOf({{"mode", "bw"}}).method(), Method::Outlines);
    EXPECT_EQ(jobOf({{"ltres", 2}}).method(), Method::Outlines);
    EXPECT_EQ(jobOf({{"textsize", 9}}).method(), Method::Centerlines);
    EXPECT_EQ(jobOf({{"palette", "red"}}).method(), Method::Regions) << "not the only one";
    EXPECT_EQ(jobOf({{"method", "regions"}, {"ltres", 2}}).method(), Method::Regions);
    JobSettings plan = jobOf({{"preset", "plan"}});
    plan.set("ltres", 2);
    EXPECT_EQ(plan.method(), Method::Centerlines) << "of the preset";
    EXPECT_EQ(why("ltres", plan), "is for outlines; the method is centerlines");
}

TEST(JobRequests, WhatIsDoneBeforeTracing) {
    EXPECT_TRUE(inputRequest(JobSettings()).preparation.isEmpty());
    EXPECT_EQ(inputRequest(jobOf({{"threshold", "AUTO"}})).preparation,
              EngineValues({{"threshold", -2.0}}));
    EXPECT_EQ(
        inputRequest(jobOf({{"threshold", 90}, {"whiten", true}, {"deskew", true}})).preparation,
        EngineValues({{"threshold", 90.0}, {"whiten", 1.0}, {"deskew", 1.0}}));
    JobSettings scan = jobOf({{"preset", "scan"}});
    EXPECT_EQ(inputRequest(scan).preparation, EngineValues({{"threshold", -3.0}}));
    EXPECT_EQ(inputRequest(settingsFromJson(settingsToJson(scan), "scan.json")).preparation,
              EngineValues({{"threshold", -3.0}}))
        << "a file keeps what the preset says";
    scan.set("threshold", "none");
    EXPECT_TRUE(inputRequest(scan).preparation.isEmpty());
}

TEST(SettingUse, SaysWhoReadsASetting) {
    EXPECT_EQ(why("scale", jobOf({{"format", "dxf"}})), "is for png; the format is dxf");
    EXPECT_EQ(why("outline", jobOf({{"format", "pdf"}})), "is for svg; the format is pdf");
    EXPECT_EQ(why("overlay", JobSettings()), "is for png; the format is svg");
    EXPECT_EQ(why("dpi", jobOf({{"format", "json"}})),
              "is for svg, dxf, pdf, png and geojson; the format is json");
    EXPECT_EQ(why("brightnessthreshold", JobSettings()), "is for outlines; the method is regions");
    EXPECT_EQ(why("brightnessthreshold", jobOf({{"method", "outlines"}})),
              "is for bw and raw; the mode is color");
    EXPECT_EQ(why("scale", jobOf({{"format", "png"}})), "");
    EXPECT_EQ(why("brightnessthreshold", jobOf({{"mode", "bw"}})), "");
}

TEST(SettingUse, SettingsThatDependOnOthers) {
    EXPECT_EQ(why("deviation", jobOf({{"format", "dxf"}, {"dxf-curves", "spline"}})),
              "is for \"DXF curves\" arcs and lines; that is spline now");
    EXPECT_EQ(why("deviation", jobOf({{"format", "dxf"}})), "");
    EXPECT_EQ(why("deviation", jobOf({{"format", "geojson"}, {"dxf-curves", "spline"}})), "");
    EXPECT_EQ(why("close-seams", jobOf({{"outline", true}})), "has no effect with \"Strokes\"");
    EXPECT_EQ(why("close-seams", JobSettings()), "");
    EXPECT_EQ(why("numberofcolors", jobOf({{"palette", "red"}, {"method", "outlines"}})),
              "has no effect with \"Palette\"");
}

TEST(SettingUse, ArgumentsAreAsShortAsTheyCanBe) {
    EXPECT_TRUE(toArguments(JobSettings()).isEmpty());
    EXPECT_TRUE(toArguments(jobOf({{"colors", 64}})).isEmpty()) << "the usual value";
    EXPECT_EQ(toArguments(jobOf({{"numberofcolors", 16}})), QStringList({"--method", "outlines"}))
        << "the usual value, but not of the usual method";
    EXPECT_EQ(toArguments(jobOf({{"format", "png"}, {"overlay", true}, {"scale", 2.5}})),
              QStringList({"--format", "png", "--scale", "2.5", "--overlay"}));
    JobSettings job = jobOf({{"preset", "photo"}});
    job.set("colors", 32);
    job.set("cubics", 0);
    job.set("overlay", true);
    EXPECT_EQ(toArguments(job), QStringList({"--preset", "photo", "--set", "cubics=0"}))
        << "what the preset says, and what the format does not read, is left out";
}

TEST(SettingsFile, KeepsWhatWasGivenAndIsRead) {
    JobSettings job = jobOf({{"format", "dxf"}, {"dxf-version", "r12"}, {"width", "2m"}});
    job.set("mode", "bw");
    job.set("palette", "red,#00000080");
    job.set("scale", 3);
    const JobSettings again = settingsFromJson(settingsToJson(job), "plan.json");
    EXPECT_EQ(again.text("dxf-version"), "R12");
    EXPECT_EQ(again.text("width"), "2m");
    EXPECT_FALSE(again.isGiven("scale")) << "DXF does not read it";
    EXPECT_EQ(traceSettings(again).values, traceSettings(job).values);
    EXPECT_EQ(traceSettings(again).palette, traceSettings(job).palette);
    EXPECT_EQ(settingsToJson(again), settingsToJson(job));
}

TEST(SettingsFile, SaysWhatIsWrongAndWhere) {
    const QList<QPair<QByteArray, std::string>> wrong{
        {"", "plan.json: no settings"},
        {"{\"mode\":", "plan.json: no settings"},
        {"[1,2]", "plan.json: settings are an object, not a list"},
        {"{\"colour\":3}", "plan.json: there is no setting \"colour\""},
        {"{\"options\":[1]}", "plan.json: \"options\" is an object, not a list"},
        {"{\"options\":7}", "plan.json: \"options\" is an object, not a single value"},
        {"{\"options\":{\"ltress\":1}}", "did you mean \"ltres\""},
        {"{\"options\":{\"ltres\":\"soft\"}}", "plan.json: \"ltres\" takes a number from"},
        {"{\"options\":{\"ltres\":true}}", "plan.json: \"ltres\" takes a number from"},
        {"{\"options\":{\"ltres\":null}}", "plan.json: \"ltres\" takes a number from"},
        {"{\"options\":{\"ltres\":[1]}}", "plan.json: \"ltres\" takes a number from"},
        {"{\"options\":{\"mode\":1}}", "plan.json: there is no setting \"mode\""},
        {"{\"mode\":\"grey\"}", "plan.json: \"mode\" takes one of color, bw, raw, not \"grey\""},
        {"{\"mode\":{}}", "plan.json: \"mode\" takes one of color, bw, raw, not an object"},
        {"{\"palette\":\"red\"}", "plan.json: \"palette\" takes a list of colours, not"},
        {"{\"palette\":[1]}", "plan.json: \"palette\" takes a list of texts"},
        {"{\"palette\":[\"rouge\"]}", "plan.json: \"palette\": \"rouge\" is not a colour"},
        {"{\"overlay\":\"on\"}", "plan.json: \"overlay\" takes on or off, not"},
        {"{\"scale\":5000}", "plan.json: \"scale\" takes a number from 0.001 to 1000, not"},
    };
    for (const auto& [json, message] : wrong)
        EXPECT_TRUE(contains(errorOf(json), message)) << errorOf(json) << " for " << json.data();
    EXPECT_EQ(errorOf("{\"preset\":\"photo\",\"mode\":\"BW\",\"scale\":2}"), "");
}

TEST(SettingTable, SettingsOfSeveralMethodsShareAFlag) {
    const Setting& outlines = *findSetting("numberofcolors");
    const Setting& regions = *findSetting("colors");
    EXPECT_STREQ(outlines.flag, regions.flag);
    EXPECT_TRUE(sharesItsFlag(outlines) && sharesItsFlag(regions));
    EXPECT_FALSE(sharesItsFlag(*findSetting("tolerance")));
    EXPECT_TRUE(isMeantByFlag(regions, Method::Regions));
    EXPECT_FALSE(isMeantByFlag(outlines, Method::Regions));
    EXPECT_TRUE(isMeantByFlag(outlines, Method::Outlines));
    EXPECT_TRUE(isMeantByFlag(outlines, Method::Centerlines)) << "said to be unused there";
}

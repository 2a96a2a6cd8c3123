// The window in German: nothing of it is left in English.

#include "support/windowtest.h"

#include <viewer/settingtexts.h>

#include <QMenuBar>
#include <QTranslator>

class ViewerGermanTest : public WindowTest {
    Q_OBJECT

private slots:
    void initTestCase() {
        QVERIFY(german.load(QStringLiteral(OVTRACE_GERMAN)));
        QVERIFY(QCoreApplication::installTranslator(&german));
    }
    void theMenusAreGerman();
    void everyTextOfTheTableIsTranslated();
    void everyTextOfTheSourcesIsTranslated();

private:
    QTranslator german;
};

void ViewerGermanTest::theMenusAreGerman() {
    QCOMPARE(window->menuBar()->actions().first()->text(), QStringLiteral("&Datei"));
    QCOMPARE(find<QAction>("undo")->text(), QStringLiteral("&R\u00fcckg\u00e4ngig"));
    window->open("there is no such image.png");
    QVERIFY(waitForResult());
    QVERIFY(!messageShown().isEmpty());
}

void ViewerGermanTest::everyTextOfTheTableIsTranslated() {
    QStringList missing;
    const auto look = [&](const char* context, const QString& text) {
        if (!text.isEmpty() && german.translate(context, text.toUtf8().constData()).isEmpty())
            missing.append(text);
    };
    for (const Setting& setting : settingTable()) {
        look("Setting", setting.label);
        look("Setting", setting.meaning);
        look("Setting", setting.unit);
        for (const QString& word : setting.words)
            look("Choice", word);
    }
    QVERIFY2(missing.isEmpty(), qPrintable(missing.join('\n')));
}

/// The tool that collects texts finds none that the translation does not have.
void ViewerGermanTest::everyTextOfTheSourcesIsTranslated() {
    if (QStringLiteral(OVTRACE_LUPDATE).isEmpty())
        QSKIP("The tool is not there where another system's program is tested.");
    const QString collected = folder->filePath("ovtraceview_de.ts");
    QVERIFY(
        QFile::copy(QStringLiteral(OVTRACE_VIEWER "/translations/ovtraceview_de.ts"), collected));
    const ProgramResult result =
        runProgram(OVTRACE_LUPDATE, {OVTRACE_VIEWER, "-extensions", "cpp,h", "-locations", "none",
                                     "-ts", collected});
    QVERIFY2(result.status == 0, result.errors.constData());
    const QByteArray texts = contents(collected);
    QVERIFY(texts.contains("<translation>"));
    QVERIFY2(!texts.contains("type=\"unfinished\""), texts.constData());
}

QTEST_MAIN(ViewerGermanTest)
#include "viewer_german_test.moc"

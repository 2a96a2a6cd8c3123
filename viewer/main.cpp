// ovtraceview: a window in which one sees what one gets.

#include "mainwindow.h"

#include <drawing/programsetup.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>
#include <QLibraryInfo>
#include <QTranslator>

int main(int argc, char* argv[]) {
    setUpProgram();
    QApplication application(argc, argv);
    QApplication::setOrganizationDomain("korvid.example");
    QApplication::setOrganizationName("KORVID");
    QApplication::setApplicationName("ovtraceview");
    QApplication::setApplicationDisplayName("OvTrace");
    QApplication::setApplicationVersion(OVTRACE_VERSION);
    QApplication::setDesktopFileName("ovtraceview");
    QApplication::setWindowIcon(QIcon(":/ovtraceview.svg"));

    QTranslator ofQt;
    if (ofQt.load(QLocale(), "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(&ofQt);
    QTranslator own;
    if (own.load(QLocale(), "ovtraceview", "_", ":/translations"))
        QApplication::installTranslator(&own);

    QCommandLineParser parser;
    parser.setApplicationDescription(QApplication::translate(
        "main", "Turns images into drawings and shows the result of every setting at once."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("image", QApplication::translate("main", "The image to open."),
                                 "[IMAGE]");
    parser.process(application);

    MainWindow window;
    window.show();
    if (!parser.positionalArguments().isEmpty())
        window.open(parser.positionalArguments().first());
    return QApplication::exec();
}

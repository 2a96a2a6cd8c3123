// ovtrace: a command-line host of the tracing module.

#include "arguments.h"
#include "batch.h"
#include "exitstatus.h"
#include "help.h"
#include "hostedmodule.h"
#include "interrupts.h"
#include "standardstreams.h"
#include "workertalk.h"
#include <drawing/files/filename.h>
#include <drawing/files/resultfile.h>
#include <drawing/input.h>
#include <drawing/programsetup.h>
#include <drawing/settingsfile.h>
#include <drawing/writers/formats.h>

#include <QCoreApplication>

#include <cstdio>
#include <exception>
#include <memory>
#include <new>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#else
#include <csignal>
#endif

namespace {

int fail(const char* message, int status) {
    std::fprintf(stderr, "ovtrace: %s\n", message);
    return status;
}

/// Errors reach the user once, as the program's own line; a debug line is no business of his.
void showErrorsAlone(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "ovtrace: %s\n", qPrintable(message));
}

/// What is asked for instead of a trace.
void act(const Arguments& arguments) {
    if (arguments.action == "help")
        print(helpText());
    else if (arguments.action == "version")
        print("ovtrace " OVTRACE_VERSION "\n");
    else if (arguments.action == "list-options")
        print(engineOptionTable());
    else if (arguments.action == "list-presets")
        print(presetTable());
    else if (arguments.action == "list-formats")
        print(formatTable());
    else if (arguments.action == "print-settings")
        print(settingsToJson(arguments.job));
    else if (arguments.action == "plugin-info")
        print(HostedModule(arguments.pluginFile).facts());
    else if (arguments.action == "generate-man")
        print(manualPage());
    else
        print(bashCompletion());
}

int trace(const Arguments& arguments) {
    const Plan plan = makePlan(arguments);
    if (!arguments.saveSettings.isEmpty())
        saveFile(arguments.saveSettings, settingsToJson(arguments.job));
    const HostedModule module(arguments.pluginFile);
    const BatchResult result = traceAll(plan, arguments);
    if (!result.failure.isEmpty()) {
        const bool isForParent = arguments.isWorker && result.lackedMemory;
        return fail(qPrintable(result.failure), isForParent ? MemoryStatus : FileStatus);
    }
    if (result.failed > 0)
        return FileStatus;
    return result.empty > 0 ? EmptyStatus : 0;
}

int run(const Arguments& arguments) {
    const bool isToldAlready = arguments.quiet || arguments.isWorker;
    for (const QString& remark : isToldAlready ? QStringList() : arguments.remarks)
        std::fprintf(stderr, "ovtrace: %s\n", presentable(remark).toUtf8().constData());
    if (arguments.action.isEmpty())
        return trace(arguments);
    if (!arguments.saveSettings.isEmpty()) {
        checkSettingsFile(arguments.saveSettings);
        saveFile(arguments.saveSettings, settingsToJson(arguments.job));
    }
    act(arguments);
    return 0;
}

/// The words of the command line, whatever bytes are in them.
QStringList wordsOf([[maybe_unused]] int argc, [[maybe_unused]] char* argv[]) {
#ifdef _WIN32
    QStringList words = QCoreApplication::arguments();
#else
    QStringList words;
    for (int i = 0; i < argc; ++i)
        words.append(fileNameFromBytes(argv[i]));
#endif
    return words;
}

/// Does what the words of a command line ask for; returns the exit status.
int attempt(const QStringList& words, bool isWorker) {
    try {
        Arguments arguments = parseArguments(words);
        arguments.isWorker = isWorker;
        return run(arguments);
    } catch (const UsageError& error) {
        return fail(error.what(), UsageStatus);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory for this image", FileStatus);
    } catch (const std::exception& error) {
        return fail(error.what(), FileStatus);
    }
}

} // namespace

int main(int argc, char* argv[]) {
    openStandardDescriptors();
    checkStandardOutputAtExit();
#ifdef _WIN32
    // Images come in and results go out byte by byte.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#else
    // A file that reaches its largest size is an error with words, as a full disk is.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    endCleanlyOnSignals();
    setUpProgram();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("ovtrace");
    QCoreApplication::setApplicationVersion(OVTRACE_VERSION);
    qInstallMessageHandler(showErrorsAlone);
    const QStringList words = wordsOf(argc, argv);
    if (words.size() != 2 || words[1] != WorkerFlag)
        return attempt(words, false);
    serveJobs([&](const QStringList& job) { return attempt(words.first(1) + job, true); });
    return 0;
}

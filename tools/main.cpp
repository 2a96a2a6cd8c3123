// ovtrace: a command-line host of the tracing module.

#include "hostedmodule.h"
#include "jsonwriter.h"
#include "output.h"
#include "svgwriter.h"
#include "tracing.h"

#include <QCoreApplication>
#include <QImageReader>

#include <cstdio>
#include <exception>
#include <memory>
#include <new>

namespace {

constexpr int UsageStatus = 2;
constexpr int FileStatus = 1;

/// Enough for a scan of a gigapixel; Qt's own limit of 128 MB would refuse one of 32 megapixels.
constexpr int AllocationLimitMegabytes = 4096;

std::unique_ptr<Writer> makeWriter(Format format) {
    if (format == Format::Json)
        return std::make_unique<JsonWriter>();
    return std::make_unique<SvgWriter>();
}

int fail(const char* message, int status) {
    std::fprintf(stderr, "ovtrace: %s\n", message);
    return status;
}

/// Errors reach the user once, as the program's own line; a debug line is no business of his.
void showErrorsAlone(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type == QtCriticalMsg || type == QtFatalMsg)
        std::fprintf(stderr, "ovtrace: %s\n", qPrintable(message));
}

void run(const Arguments& arguments) {
    const std::unique_ptr<Writer> writer = makeWriter(arguments.format);
    if (arguments.images.size() > 1 && !arguments.output.isEmpty() && !writer->takesSeveral())
        throw UsageError("an SVG file takes one image alone; leave --output away to get one each");
    const HostedModule module;
    Output output(arguments, *writer);
    for (const QString& image : arguments.images)
        output.add(image, traceFile(image, arguments));
    output.finish();
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("ovtrace");
    QCoreApplication::setApplicationVersion(OVTRACE_VERSION);
    qInstallMessageHandler(showErrorsAlone);
    QImageReader::setAllocationLimit(AllocationLimitMegabytes);
    try {
        run(parseArguments(QCoreApplication::arguments()));
    } catch (const UsageError& error) {
        return fail(error.what(), UsageStatus);
    } catch (const std::bad_alloc&) {
        return fail("not enough memory for this image", FileStatus);
    } catch (const std::exception& error) {
        return fail(error.what(), FileStatus);
    }
    return 0;
}

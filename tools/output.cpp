#include "output.h"

#include <drawing/files/resultfile.h>

#include <stdexcept>

namespace {

/// Errors of the device come before what a writer makes of them; each names the file.
void writeDrawing(const Writer& writer, const Drawing& drawing, ResultFile& file,
                  const QString& name) {
    try {
        writer.write(drawing, file);
    } catch (const FileError&) {
        throw;
    } catch (const std::runtime_error& error) {
        file.check();
        throw FileError(QString("%1: %2").arg(name, error.what()));
    }
    file.check();
}

} // namespace

Output::Output(const Arguments& arguments, const Writer& writer)
    : arguments(arguments), writer(writer) {
}

Output::~Output() = default;

void Output::add(const Job& job, const Drawing& drawing) {
    if (arguments.output.isEmpty()) {
        ResultFile file(job.result);
        writeDrawing(writer, drawing, file, job.result);
        file.commit();
        return;
    }
    if (!shared)
        shared = std::make_unique<ResultFile>(arguments.output);
    writeDrawing(writer, drawing, *shared, arguments.output);
}

void Output::finish() {
    if (shared)
        shared->commit();
}

#include "programoptions.h"

#include <drawing/choices.h>

namespace {

QList<ProgramOption> fileOptions() {
    return {
        {.flag = "output",
         .letter = "o",
         .value = "file",
         .meaning = "Write to this file; - is the standard output. Without it each result goes "
                    "beside its image.",
         .isForBatch = true},
        {.flag = "output-dir",
         .value = "folder",
         .meaning = "Write the results into this folder.",
         .isForBatch = true},
        {.flag = "name",
         .value = "template",
         .meaning = "Name the results so: {name} is the image's name, {ext} its ending, {format} "
                    "the format's, {page} the page, {n} a number.",
         .isForBatch = true},
        {.flag = "overwrite",
         .meaning = "Let results replace files whose names are pictures' names, too.",
         .isForBatch = true},
        {.flag = "recursive",
         .meaning = "Go into the folders of folders; results keep their places below the folder of "
                    "--output-dir.",
         .isForBatch = true},
    };
}

QList<ProgramOption> settingOptions() {
    return {
        {.flag = "set",
         .value = "key=value",
         .meaning = "Set anything that a settings file can hold, the options of the engine above "
                    "all, after all other options. May be repeated.",
         .group = OptionGroup::Settings},
        {.flag = "fill",
         .meaning = "Fill the outlines (the default). For svg.",
         .group = OptionGroup::Settings},
        {.flag = "settings",
         .value = "file",
         .meaning = "Start from the settings in this file.",
         .group = OptionGroup::Settings},
        {.flag = "save-settings",
         .value = "file",
         .meaning = "Save the settings to this file.",
         .group = OptionGroup::Settings,
         .isForBatch = true},
        {.flag = "print-settings",
         .meaning = "Print the settings that would be used, as JSON, and exit.",
         .group = OptionGroup::Settings,
         .isAction = true},
    };
}

QList<ProgramOption> batchOptions() {
    return {
        {.flag = "jobs",
         .letter = "j",
         .value = "number",
         .meaning = "Trace so many images at a time.",
         .group = OptionGroup::Batch,
         .isForBatch = true},
        {.flag = "continue-on-error",
         .meaning = "Go on with the next image when one fails.",
         .group = OptionGroup::Batch,
         .isForBatch = true},
        {.flag = "quiet",
         .letter = "q",
         .meaning = "Say nothing but errors.",
         .group = OptionGroup::Batch,
         .isForBatch = true},
        {.flag = "stats",
         .value = "form",
         .meaning = "Print figures about each result: table or json.",
         .group = OptionGroup::Batch,
         .words = wordsOf(statisticsChoices()),
         .isForBatch = true},
    };
}

QList<ProgramOption> informationOptions() {
    const auto action = [](const char* flag, const char* meaning) {
        return ProgramOption{
            .flag = flag, .meaning = meaning, .group = OptionGroup::Information, .isAction = true};
    };
    ProgramOption help = action("help", "Show this help and exit.");
    help.letter = "h";
    ProgramOption version = action("version", "Show the version and exit.");
    version.letter = "v";
    ProgramOption generate = action("generate", "Print the manual page or the completion.");
    generate.value = "what";
    generate.words = {"man", "bash"};
    generate.isHidden = true;
    return {
        action("list-options", "List the options of the engine and exit."),
        action("list-presets", "List the presets and exit."),
        action("list-formats", "List the formats that are read and written, and exit."),
        {.flag = "plugin",
         .value = "file",
         .meaning = "Load this module instead of the program's own.",
         .group = OptionGroup::Information},
        action("plugin-info", "Print what the tracing module says about itself, and exit."),
        help,
        version,
        generate,
    };
}

} // namespace

const QList<ProgramOption>& programOptions() {
    static const QList<ProgramOption> options =
        fileOptions() + settingOptions() + batchOptions() + informationOptions();
    return options;
}

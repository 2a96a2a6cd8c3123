#include "help.h"

#include "arguments.h"

#include <drawing/choices.h>
#include <drawing/engineoptions.h>
#include <drawing/input.h>
#include <drawing/writers/formats.h>

#include <QCommandLineParser>
#include <QRegularExpression>
#include <QTextStream>

namespace {

/// An option as the help text lists it.
struct OptionHelp {
    QStringList flags; ///< with their dashes
    QString value;     ///< the name of its value; empty when it takes none
    QString text;
};

/// The options from the help text, which is the one place that says all of them.
QList<OptionHelp> optionHelp() {
    QCommandLineParser parser;
    declareOptions(parser);
    QList<OptionHelp> options;
    static const QRegularExpression start("^  (-[^<]*?)(<[^>]*>)?(?:  +(\\S.*))?$");
    for (const QString& line : parser.helpText().split('\n')) {
        const auto match = start.match(line);
        if (match.hasMatch() && line.startsWith("  -")) {
            QStringList flags;
            for (const QString& flag : match.captured(1).split(','))
                flags.append(flag.trimmed());
            options.append({flags, match.captured(2), match.captured(3)});
        } else if (!options.isEmpty() && line.startsWith("    ")) {
            options.last().text += ' ' + line.trimmed();
        }
    }
    return options;
}

QString troff(QString text) {
    return text.replace('\\', "\\e").replace('-', "\\-");
}

QStringList valuesOf(const QString& flag) {
    if (flag == "--format")
        return formatNames();
    if (flag == "--mode")
        return wordsOf(modeChoices());
    if (flag == "--units")
        return wordsOf(unitChoices());
    if (flag == "--dxf-version")
        return wordsOf(dxfVersionChoices());
    if (flag == "--dxf-curves")
        return wordsOf(dxfCurvesChoices());
    if (flag == "--stats")
        return wordsOf(statisticsChoices());
    QStringList values;
    if (flag == "--preset") {
        for (const Preset& preset : presets())
            values.append(preset.name);
    }
    if (flag == "--set") {
        for (const EngineOption& option : engineOptions())
            values.append(QString(option.key) + '=');
    }
    return values;
}

} // namespace

QByteArray manualPage() {
    QString page;
    QTextStream out(&page);
    out << ".TH OVTRACE 1 \"\" \"ovtrace " OVTRACE_VERSION "\" \"User commands\"\n"
           ".SH NAME\novtrace \\- trace images: turn colour regions into outlines\n"
           ".SH SYNOPSIS\n.B ovtrace\n[\\fIOPTION\\fR]... \\fIIMAGE\\fR...\n"
           ".SH DESCRIPTION\nTraces image files, folders of them, or the standard input (\\-): "
           "turns "
           "their colour regions into outlines of lines and quadratic curves.\n"
           ".SH OPTIONS\n";
    for (const OptionHelp& option : optionHelp()) {
        QStringList flags;
        for (const QString& flag : option.flags)
            flags.append("\\fB" + troff(flag) + "\\fR");
        out << ".TP\n" << flags.join(", ");
        if (!option.value.isEmpty())
            out << " \\fI" << troff(option.value.mid(1, option.value.size() - 2)) << "\\fR";
        out << '\n' << troff(option.text.trimmed()) << '\n';
    }
    out << ".SH OPTIONS OF THE ENGINE\n";
    for (const EngineOption& option : engineOptions())
        out << ".TP\n\\fB" << option.key << "\\fR (" << option.usual << ")\n"
            << troff(option.meaning) << '\n';
    out << ".SH PRESETS\n";
    for (const Preset& preset : presets())
        out << ".TP\n\\fB" << preset.name << "\\fR\n" << troff(preset.meaning) << '\n';
    out << ".SH EXIT STATUS\n0: all well. 1: a file could not be read or written. 2: the command "
           "line was wrong. 3: nothing was traced; the result is a valid file without outlines.\n"
           ".SH EXAMPLES\n.nf\novtrace logo.png \\-o logo.svg \\-\\-preset logo\n"
           "ovtrace plan.png \\-o plan.dxf \\-\\-preset scan \\-\\-dpi 300\n"
           "ovtrace photos \\-\\-output\\-dir traced \\-j 2\n.fi\n";
    out.flush();
    return page.toUtf8();
}

QByteArray bashCompletion() {
    QString script;
    QTextStream out(&script);
    QStringList flags;
    out << "# bash completion for ovtrace\n_ovtrace() {\n    local "
           "previous=${COMP_WORDS[COMP_CWORD-1]} "
           "current=${COMP_WORDS[COMP_CWORD]}\n    case $previous in\n";
    for (const OptionHelp& option : optionHelp()) {
        flags += option.flags;
        const QStringList values = valuesOf(option.flags.last());
        if (!values.isEmpty())
            out << "        " << option.flags.join('|')
                << ")\n            COMPREPLY=($(compgen -W \"" << values.join(' ')
                << "\" -- \"$current\"))\n            return ;;\n";
    }
    out << "    esac\n    case $current in\n        -*) COMPREPLY=($(compgen -W \""
        << flags.join(' ')
        << "\" -- \"$current\")) ;;\n        *) COMPREPLY=($(compgen -f -- \"$current\")) ;;\n    "
           "esac\n"
           "}\ncomplete -o filenames -F _ovtrace ovtrace\n";
    out.flush();
    return script.toUtf8();
}

QByteArray engineOptionTable() {
    QString table;
    QTextStream out(&table);
    out << "option               own flag           default  range             meaning\n";
    for (const EngineOption& option : engineOptions()) {
        const QString range = QString("%1 to %2").arg(option.low).arg(option.high);
        const QString flag = option.flag[0] == '\0' ? QString() : QString("--") + option.flag;
        out << QString("%1 %2 %3  %4 %5\n")
                   .arg(option.key, -20)
                   .arg(flag, -17)
                   .arg(option.usual, 8)
                   .arg(range, -17)
                   .arg(option.meaning);
    }
    out.flush();
    return table.toUtf8();
}

QByteArray presetTable() {
    QString table;
    for (const Preset& preset : presets()) {
        QStringList values{preset.blackAndWhite ? "mode bw" : "mode color"};
        for (auto value = preset.values.begin(); value != preset.values.end(); ++value)
            values.append(QString("%1=%2").arg(value.key()).arg(value.value()));
        table += QString("%1 %2\n%3 %4\n")
                     .arg(preset.name, -9)
                     .arg(preset.meaning)
                     .arg("", -9)
                     .arg(values.join(' '));
    }
    return table.toUtf8();
}

QByteArray formatTable() {
    QString table = "Read: " + readableFormats().join(", ") + "\nWritten:\n";
    for (const FileFormat& format : fileFormats())
        table += QString("  %1 %2\n").arg(format.name, -8).arg(format.description);
    return table.toUtf8();
}

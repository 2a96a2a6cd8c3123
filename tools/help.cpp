#include "help.h"

#include "programoptions.h"

#include <drawing/input.h>
#include <drawing/presets.h>
#include <drawing/settinguse.h>
#include <drawing/settingvalue.h>
#include <drawing/writers/formats.h>

#include <QTextStream>

namespace {

/// An option as help, manual and completion list it.
struct OptionEntry {
    QStringList flags; ///< with their dashes
    QString value;     ///< the name of its value; empty when it takes none
    QString text;
    QStringList words; ///< what completes its value
};

struct OptionSection {
    QString title;
    QList<OptionEntry> entries;
};

OptionEntry entryOf(const ProgramOption& option) {
    QStringList flags;
    if (option.letter[0] != '\0')
        flags.append(QString("-") + option.letter);
    flags.append(QString("--") + option.flag);
    QStringList words = option.words;
    if (qstrcmp(option.flag, "set") == 0) {
        for (const Setting& setting : settingTable())
            words.append(QString(setting.key) + '=');
    }
    return {flags, option.value, option.meaning, words};
}

QString valueName(const Setting& setting) {
    switch (setting.type) {
    case SettingType::Switch:
        return {};
    case SettingType::Whole:
    case SettingType::Number:
        return "number";
    case SettingType::Choice:
        return "word";
    case SettingType::Color:
        return "colour";
    case SettingType::Colors:
        return "colours";
    case SettingType::Length:
        return "length";
    case SettingType::Rectangle:
        return "x,y,width,height";
    case SettingType::Ratio:
        return "scale";
    case SettingType::Paper:
        return "paper";
    case SettingType::World:
        return "A,D,B,E,C,F";
    case SettingType::Text:
        break;
    }
    return "text";
}

/// What a setting means, what it takes, what it is without, and who reads it.
QString describe(const Setting& setting) {
    QString text = QString::fromUtf8(setting.meaning);
    QStringList facts;
    if (setting.type != SettingType::Switch && setting.type != SettingType::Rectangle)
        facts.append(allowedFor(setting));
    if (setting.unit[0] != '\0' && setting.type != SettingType::Rectangle)
        facts.append("in " + QString::fromUtf8(setting.unit));
    if (setting.usual.isValid())
        facts.append("usually " + settingToText(setting.usual));
    if (!facts.isEmpty())
        text += ": " + facts.join("; ");
    text += '.';
    const QString readers = readersOf(setting);
    return readers.isEmpty() ? text : text + " For " + readers + '.';
}

OptionEntry entryOf(const Setting& setting) {
    QStringList flags{QString("--") + setting.flag};
    if (flags.first() == "--format")
        flags.prepend("-f");
    return {flags, valueName(setting), describe(setting), setting.words};
}

void append(QList<OptionEntry>& entries, OptionGroup group) {
    for (const ProgramOption& option : programOptions()) {
        if (option.group == group && !option.isHidden)
            entries.append(entryOf(option));
    }
}

void append(QList<OptionEntry>& entries, SettingGroup group) {
    for (const Setting& setting : settingTable()) {
        if (setting.group == group && setting.flag[0] != '\0')
            entries.append(entryOf(setting));
    }
}

QList<OptionSection> optionSections() {
    QList<OptionSection> sections;
    const auto add = [&](const char* title, const QList<SettingGroup>& settings,
                         const QList<OptionGroup>& options) {
        OptionSection section{title, {}};
        for (const SettingGroup group : settings)
            append(section.entries, group);
        for (const OptionGroup group : options)
            append(section.entries, group);
        sections.append(section);
    };
    add("Files", {}, {OptionGroup::Files});
    add("Images", {SettingGroup::Input, SettingGroup::Preparation}, {});
    add("Tracing", {SettingGroup::Method, SettingGroup::Tracing}, {});
    add("Size", {SettingGroup::Size}, {});
    add("Formats", {SettingGroup::Output}, {});
    add("Settings", {}, {OptionGroup::Settings});
    add("Many images", {}, {OptionGroup::Batch});
    add("Information", {}, {OptionGroup::Information});
    return sections;
}

QString troff(QString text) {
    return text.replace('\\', "\\e").replace('-', "\\-");
}

/// The words of a text in lines of no more than so many characters.
QStringList wrapped(const QString& text, qsizetype columns) {
    QStringList lines{QString()};
    for (const QString& word : text.split(' ')) {
        QString& line = lines.last();
        if (line.isEmpty())
            line = word;
        else if (line.size() + 1 + word.size() <= columns)
            line += ' ' + word;
        else
            lines.append(word);
    }
    return lines;
}

} // namespace

QByteArray helpText() {
    constexpr int Indent = 27;
    constexpr int Columns = 80;
    QString help = "Usage: ovtrace [OPTION]... IMAGE...\n"
                   "Traces image files, folders of them, or the standard input (-): turns them "
                   "into\ndrawings of areas that share their boundaries, of centre lines, or of "
                   "outlines.\n";
    for (const OptionSection& section : optionSections()) {
        help += '\n' + section.title + ":\n";
        for (const OptionEntry& entry : section.entries) {
            QString head = "  " + entry.flags.join(", ");
            if (!entry.value.isEmpty())
                head += " <" + entry.value + '>';
            // A head that leaves no gap stands on a line of its own.
            const QString gap = '\n' + QString(Indent, ' ');
            head = head.size() < Indent ? head.leftJustified(Indent) : head + gap;
            help += head + wrapped(entry.text, Columns - Indent).join(gap) + '\n';
        }
    }
    return help.toUtf8();
}

QByteArray manualPage() {
    QString page;
    QTextStream out(&page);
    out << ".TH OVTRACE 1 \"\" \"ovtrace " OVTRACE_VERSION "\" \"User commands\"\n"
           ".SH NAME\novtrace \\- trace images: turn them into drawings\n"
           ".SH SYNOPSIS\n.B ovtrace\n[\\fIOPTION\\fR]... \\fIIMAGE\\fR...\n"
           ".SH DESCRIPTION\nTraces image files, folders of them, or the standard input (\\-): "
           "turns "
           "them into drawings of areas that share their boundaries, of centre lines, or of "
           "outlines.\n"
           ".SH OPTIONS\n";
    for (const OptionSection& section : optionSections()) {
        out << ".SS " << section.title << '\n';
        for (const OptionEntry& entry : section.entries) {
            QStringList flags;
            for (const QString& flag : entry.flags)
                flags.append("\\fB" + troff(flag) + "\\fR");
            out << ".TP\n" << flags.join(", ");
            if (!entry.value.isEmpty())
                out << " \\fI" << troff(entry.value) << "\\fR";
            out << '\n' << troff(entry.text) << '\n';
        }
    }
    out << ".SH OPTIONS OF THE ENGINE\n";
    for (const Setting& setting : settingTable()) {
        if (setting.isTracerOption)
            out << ".TP\n\\fB" << setting.key << "\\fR (" << settingToText(setting.usual) << ")\n"
                << troff(describe(setting)) << '\n';
    }
    out << ".SH PRESETS\n";
    for (const Preset& preset : presets())
        out << ".TP\n\\fB" << preset.name << "\\fR\n" << troff(preset.meaning) << '\n';
    out << ".SH EXIT STATUS\n0: all well. 1: a file could not be read or written. 2: the command "
           "line was wrong. 3: nothing was traced; the result is a valid file without shapes.\n"
           ".SH EXAMPLES\n.nf\novtrace logo.png \\-o logo.svg \\-\\-preset logo\n"
           "ovtrace plan.png \\-o plan.dxf \\-\\-preset plan \\-\\-dpi 300\n"
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
    for (const OptionSection& section : optionSections()) {
        for (const OptionEntry& entry : section.entries) {
            flags += entry.flags;
            if (!entry.words.isEmpty())
                out << "        " << entry.flags.join('|')
                    << ")\n            COMPREPLY=($(compgen -W \"" << entry.words.join(' ')
                    << "\" -- \"$current\"))\n            return ;;\n";
        }
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
    for (const Setting& setting : settingTable()) {
        if (!setting.isTracerOption)
            continue;
        const QString range = numberWord(setting.low) + " to " + numberWord(setting.high);
        const QString flag = setting.flag[0] == '\0' ? QString() : QString("--") + setting.flag;
        out << QString("%1 %2 %3  %4 %5\n")
                   .arg(setting.key, -20)
                   .arg(flag, -17)
                   .arg(settingToText(setting.usual), 8)
                   .arg(range, -17)
                   .arg(QString::fromUtf8(setting.meaning));
    }
    out.flush();
    return table.toUtf8();
}

QByteArray presetTable() {
    QString table;
    for (const Preset& preset : presets()) {
        QStringList values;
        for (auto value = preset.values.begin(); value != preset.values.end(); ++value)
            values.append(value.key() + '=' + settingToText(value.value()));
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

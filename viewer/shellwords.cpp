#include "shellwords.h"

#include <QRegularExpression>

QString shellWords(const QStringList& words) {
    static const QRegularExpression plain("^[A-Za-z0-9_./:=,@%+-]+$");
    QStringList quoted;
    for (QString word : words) {
        if (plain.match(word).hasMatch())
            quoted.append(word);
#ifdef _WIN32
        else
            quoted.append('"' + word.replace('"', "\\\"") + '"');
#else
        else
            quoted.append('\'' + word.replace('\'', "'\\''") + '\'');
#endif
    }
    return quoted.join(' ');
}

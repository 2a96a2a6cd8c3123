#include "pagechoice.h"

#include <drawing/errors.h>

#include <QRegularExpression>

#include <algorithm>

QList<int> PageChoice::pagesOf(int count) const {
    QList<int> pages;
    for (const Range& range : ranges) {
        // An open range that begins beyond the end means its first page, which is not there.
        const int last = range.last == 0 ? std::max(range.first, count)
                                         : std::min(range.last, std::max(range.first, count + 1));
        for (int page = range.first; page <= last; ++page) {
            if (!pages.contains(page))
                pages.append(page);
        }
    }
    std::sort(pages.begin(), pages.end());
    return pages;
}

PageChoice parsePages(const QString& word) {
    static const QRegularExpression form("^([0-9]{1,6})(-([0-9]{1,6})?)?$");
    PageChoice choice;
    choice.ranges.clear();
    if (word.toLower() == "all") {
        choice.ranges.append({1, 0});
        return choice;
    }
    for (const QString& part : word.split(',')) {
        const auto match = form.match(part.trimmed());
        PageChoice::Range range;
        range.first = match.captured(1).toInt();
        range.last = match.captured(2).isEmpty() ? range.first : match.captured(3).toInt();
        const bool isForward =
            range.last == 0 ? match.captured(3).isEmpty() : range.last >= range.first;
        if (!match.hasMatch() || range.first < 1 || !isForward)
            throw UsageError(QString("--page takes a number, all, or numbers and ranges such as "
                                     "1,3-5,8-, not \"%1\"")
                                 .arg(word));
        choice.ranges.append(range);
    }
    return choice;
}

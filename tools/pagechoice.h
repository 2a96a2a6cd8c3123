#pragma once

#include <QList>
#include <QString>

/// Which pages of a file are traced.
struct PageChoice {
    struct Range {
        int first = 1;
        int last = 1; ///< 0: the file's last
    };
    QList<Range> ranges{Range()};

    /// Whether one page is meant, whatever the file has.
    bool isSingle() const {
        return ranges.size() == 1 && ranges[0].first == ranges[0].last;
    }
    /// The pages in order, each once, of a file that has `count`. Those beyond it are left in, as
    /// far as they were named by number: the file has no such page.
    QList<int> pagesOf(int count) const;
};

/// Reads "all", a number, or numbers and ranges as "1,3-5,8-". Throws UsageError.
PageChoice parsePages(const QString& word);

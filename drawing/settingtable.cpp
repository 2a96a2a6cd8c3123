#include "settingtable.h"

#include "settingrows.h"

#include <algorithm>

namespace {

QString labelOf(const Setting& setting) {
    return '"' + QString::fromUtf8(setting.label) + '"';
}

SettingNaming& currentNaming() {
    static SettingNaming naming = labelOf;
    return naming;
}

/// How many letters must be inserted, removed or changed to get from one word to the other.
int editDistance(const QString& a, const QString& b) {
    QList<int> row(b.size() + 1);
    for (int j = 0; j < row.size(); ++j)
        row[j] = j;
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = row[0];
        row[0] = static_cast<int>(i) + 1;
        for (qsizetype j = 0; j < b.size(); ++j) {
            const int replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.last();
}

} // namespace

const QList<Setting>& settingTable() {
    static const QList<Setting> table = methodRows() + outlineRows() + regionRows() +
                                        centerlineRows() + inputRows() + preparationRows() +
                                        sizeRows() + outputRows();
    return table;
}

bool isMeantByFlag(const Setting& setting, Method method) {
    const auto isRead = [&](const Setting& each) {
        return each.methods.isEmpty() || each.methods.contains(method);
    };
    return isRead(setting) ||
           std::none_of(settingTable().begin(), settingTable().end(), [&](const Setting& other) {
               return &other != &setting && qstrcmp(other.flag, setting.flag) == 0 && isRead(other);
           });
}

bool sharesItsFlag(const Setting& setting) {
    return std::any_of(settingTable().begin(), settingTable().end(), [&](const Setting& other) {
        return &other != &setting && qstrcmp(other.flag, setting.flag) == 0;
    });
}

const Setting* findSetting(const QString& key) {
    for (const Setting& setting : settingTable()) {
        if (key == setting.key)
            return &setting;
    }
    return nullptr;
}

QString nearestSetting(const QString& word, const QList<Setting>& settings) {
    const QString lower = word.toLower();
    return std::min_element(settings.begin(), settings.end(),
                            [&](const Setting& a, const Setting& b) {
                                return editDistance(lower, a.key) < editDistance(lower, b.key);
                            })
        ->key;
}

void setSettingNaming(SettingNaming naming) {
    currentNaming() = naming;
}

QString settingName(const Setting& setting) {
    return currentNaming()(setting);
}

QString settingName(const char* key) {
    const Setting* setting = findSetting(key);
    return setting != nullptr ? settingName(*setting) : QString::fromUtf8(key);
}

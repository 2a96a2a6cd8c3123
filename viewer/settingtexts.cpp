#include "settingtexts.h"

#include <QCoreApplication>

QString settingText(const char* text) {
    return QCoreApplication::translate("Setting", text);
}

QString settingLabel(const Setting& setting) {
    return settingText(setting.label);
}

QString settingHelp(const Setting& setting) {
    return settingText(setting.meaning) + '.';
}

QString choiceText(const QString& word) {
    return QCoreApplication::translate("Choice", word.toUtf8().constData());
}

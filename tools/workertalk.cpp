#include "workertalk.h"

#include <drawing/files/filename.h>

#include <cstdio>
#include <iostream>
#include <string>

QByteArray packedWords(const QStringList& words) {
    QByteArrayList packed;
    for (const QString& word : words)
        packed.append(fileNameToBytes(word).toPercentEncoding());
    return packed.join(' ');
}

QStringList unpackedWords(const QByteArray& packed) {
    QStringList words;
    for (const QByteArray& word : packed.split(' '))
        words.append(fileNameFromBytes(QByteArray::fromPercentEncoding(word)));
    return words;
}

void serveJobs(const std::function<int(const QStringList& words)>& attempt) {
    for (std::string line; std::getline(std::cin, line);) {
        const int status = attempt(unpackedWords(QByteArray::fromStdString(line)));
        std::fputc(EndMark, stderr);
        std::fflush(stderr); // Windows keeps what goes to a pipe
        std::printf("%c%d\n", EndMark, status);
        std::fflush(stdout);
    }
}

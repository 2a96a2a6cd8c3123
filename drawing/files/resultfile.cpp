#include "resultfile.h"

#include "../errors.h"

ResultFile::ResultFile(const QString& fileName)
    : name(fileName == "-" ? QString("standard output") : fileName) {
    target = openResultTarget(fileName, failure);
    check();
    open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

ResultFile::~ResultFile() = default;

void ResultFile::check() const {
    if (!failure.isEmpty())
        throw FileError(QString("%1: cannot be written: %2").arg(name, failure));
}

void ResultFile::commit() {
    check();
    failure = target->complete();
    check();
    target.reset();
}

bool ResultFile::isSequential() const {
    return true;
}

qint64 ResultFile::readData(char*, qint64) {
    return -1;
}

qint64 ResultFile::writeData(const char* data, qint64 size) {
    if (failure.isEmpty())
        failure = target->write(data, size);
    if (failure.isEmpty())
        return size;
    setErrorString(failure);
    return -1;
}

void saveFile(const QString& fileName, const QByteArray& contents) {
    ResultFile file(fileName);
    file.write(contents);
    file.commit();
}

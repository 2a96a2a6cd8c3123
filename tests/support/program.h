#pragma once

#include <QByteArray>
#include <QImage>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

// What tests of the built program share.

struct ProgramResult {
    int status;
    QByteArray output;
    QByteArray errors;
};

/// Runs a program to its end; `input` is its standard input. Without a folder it runs in this one.
ProgramResult runProgram(const QString& program, const QStringList& arguments,
                         const QByteArray& input = {}, const QString& folder = {});
/// Runs ovtrace.
ProgramResult run(const QStringList& arguments, const QByteArray& input = {},
                  const QString& folder = {});

/// The path of a sample image.
QString sample(const QString& name);
QByteArray contents(const QString& fileName);
void writeFile(const QString& fileName, const QByteArray& bytes);

/// One clear line on stderr that mentions `mention`, and nothing on stdout.
void expectError(const ProgramResult& result, int status, const QByteArray& mention);

QImage blackSquareOnWhite(QImage::Format format);

/// A test with a folder of its own.
class ProgramTest : public testing::Test {
protected:
    QString folderPath() const {
        return folder.path();
    }
    QString path(const QString& name) const {
        return folder.filePath(name);
    }
    QString saveImage(const QImage& image, const QString& name) const {
        EXPECT_TRUE(image.save(path(name)));
        return path(name);
    }
    /// The names of the files in the folder, in order.
    QStringList files() const;

private:
    QTemporaryDir folder;
};

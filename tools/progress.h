#pragma once

#include <QElapsedTimer>
#include <QString>

/// Tells on the standard error output how far a batch has come: a bar that is drawn anew on a
/// terminal, a line for each result elsewhere. Silent when there is one image alone.
class Progress {
public:
    Progress(qsizetype images, double pixels, bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// An image of so many pixels is done; `line` says what became of it.
    void advance(double pixels, const QString& line);
    /// A message that stays, above the bar if there is one.
    void message(const QString& line);

private:
    void draw() const;
    void clear() const;

    qsizetype images;
    double pixels;
    bool silent;
    bool isBar;
    qsizetype doneImages = 0;
    double donePixels = 0.0;
    QElapsedTimer timer;
};

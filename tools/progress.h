#pragma once

#include <QElapsedTimer>
#include <QString>

/// Tells on the standard error output how far a run has come: a bar that is drawn anew on a
/// terminal, a line for each result elsewhere. For one image alone there is the bar, once it takes
/// a while.
class Progress {
public:
    Progress(qsizetype images, double pixels, bool quiet);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// An image of so many pixels is done; `line` says what became of it.
    void advance(double pixels, const QString& line);
    /// How much of the image that is traced now is done, 0 to 1.
    void setShare(double share);
    /// A message that stays, above the bar if there is one.
    void message(const QString& line);
    /// The last message: the bar ends.
    void end(const QString& line);

private:
    void draw();
    void clear() const;

    qsizetype images;
    double pixels;
    bool isSilent;
    bool isBar;
    bool hasEnded = false;
    qsizetype doneImages = 0;
    double donePixels = 0.0;
    double share = 0.0; ///< of the image that is traced now
    QElapsedTimer timer;
    qint64 drawn = 0; ///< milliseconds after the start
};

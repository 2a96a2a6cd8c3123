#pragma once

#include <imagedata.h>
#include <indexedimage.h>

#include <QImage>
#include <QList>
#include <QMap>
#include <QString>

#include <ovpolyline.h>

#include <cstdint>

/// The tracing engine in its plainest form, which the fast one is compared with.
///
/// Every stage is written out as it is defined: nested lists, one pixel at a time, one grid per
/// colour, recursion. It shares nothing with the engine but the exported records and the host's
/// geometry, and takes no care to be quick or small. All stages are public.
class TraceTwin {
public:
    using Color = QList<char>;
    using Grid = QList<QList<int>>;
    using Point = QList<int>; ///< x, y, node type
    using Path = QList<Point>;
    using Node = QList<double>; ///< x, y, direction
    using NodePath = QList<Node>;
    using Record = QList<double>; ///< a segment of seven numbers
    using TracedPath = QList<Record>;

    TraceTwin();

    void setOption(const QString& key, double value);
    QList<OvPolyline> trace(const QImage& image);

    void preprocess(QImage& image);
    void loadImageData(const QImage& image);
    QList<Color> generatepalette(int count);
    QList<Color> samplepalette(int count);
    static bool lessThanColor(const Color& a, const Color& b);
    void blur(float radius, float delta);
    void colorquantization();
    QList<Grid> layering() const;
    QList<Path> pathscan(Grid layer, float pathomit);
    QList<QList<Path>> batchpathscan(const QList<Grid>& layers, float pathomit);
    QList<NodePath> internodes(const QList<Path>& paths);
    QList<QList<NodePath>> batchinternodes(const QList<QList<Path>>& paths);
    TracedPath tracepath(const NodePath& path, float ltres, float qtres);
    TracedPath fitseq(const NodePath& path, float ltres, float qtres, int seqstart, int seqend);
    QList<TracedPath> batchtracepaths(const QList<NodePath>& paths, float ltres, float qtres);
    QList<OvPolyline> getPolylines();
    OvVector transform(const OvVector& v) const;

    static void seedRandom(unsigned seed);

    QList<Color> palette;
    QMap<QString, double> options;
    ImageData imageData;
    IndexedImage indexedImage;
    QList<int> polylineLayers; ///< the layer of each polyline that getPolylines() returned

private:
    static int draw();
    static Color randomColor();

    QList<QList<double>> blurKernels;
    QList<char> pathDirLookup;
    QList<char> holePathLookup;
    QList<QList<QList<char>>> pathCombinedLookup;
};

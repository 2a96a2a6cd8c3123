#include "tracetwin.h"

#include <QColor>

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace {

int toInt(double value) {
    if (std::isnan(value) || value <= -2147483649.0 || value >= 2147483648.0)
        return INT_MIN;
    return static_cast<int>(value);
}

char toByte(int value) {
    return static_cast<char>(value & 255);
}

int stored(char byte) {
    return static_cast<signed char>(byte);
}

#ifndef Q_OS_WIN
std::uint32_t twinState = 1;
#endif

} // namespace

TraceTwin::TraceTwin() {
    options["monochrome"] = 1.0;
    options["numberofcolors"] = 16.0;
    options["mincolorratio"] = 0.02;
    options["colorquantcycles"] = 3.0;
    options["colorsampling"] = 1.0;
    options["blurradius"] = 1.0;
    options["blurdelta"] = 2000.0;
    options["pathomit"] = 8.0;
    options["ltres"] = 1.0;
    options["qtres"] = 1.0;
    options["alphathreshold"] = 200.0;
    options["brightnessthreshold"] = 200.0;

    blurKernels = {
        {0.27901, 0.44198, 0.27901},
        {0.135336, 0.228569, 0.272192, 0.228569, 0.135336},
        {0.086776, 0.136394, 0.178908, 0.195843, 0.178908, 0.136394, 0.086776},
        {0.063327, 0.093095, 0.122589, 0.144599, 0.152781, 0.144599, 0.122589, 0.093095, 0.063327},
        {0.049692, 0.069304, 0.089767, 0.107988, 0.120651, 0.125194, 0.120651, 0.107988, 0.089767,
         0.069304, 0.049692},
    };
    pathDirLookup = {0, 0, 3, 0, 1, 0, 3, 0, 0, 3, 3, 1, 0, 3, 0, 0};
    holePathLookup = {0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0};

    const QList<char> none{-1, -1, -1, -1};
    pathCombinedLookup = {
        {none, none, none, none},
        {{0, 1, 0, -1}, none, none, {0, 2, -1, 0}},
        {none, none, {0, 1, 0, -1}, {0, 0, 1, 0}},
        {{0, 0, 1, 0}, none, {0, 2, -1, 0}, none},
        {none, {0, 0, 1, 0}, {0, 3, 0, 1}, none},
        {{13, 3, 0, 1}, {13, 2, -1, 0}, {7, 1, 0, -1}, {7, 0, 1, 0}},
        {none, {0, 1, 0, -1}, none, {0, 3, 0, 1}},
        {{0, 3, 0, 1}, {0, 2, -1, 0}, none, none},
        {{0, 3, 0, 1}, {0, 2, -1, 0}, none, none},
        {none, {0, 1, 0, -1}, none, {0, 3, 0, 1}},
        {{11, 1, 0, -1}, {14, 0, 1, 0}, {14, 3, 0, 1}, {11, 2, -1, 0}},
        {none, {0, 0, 1, 0}, {0, 3, 0, 1}, none},
        {{0, 0, 1, 0}, none, {0, 2, -1, 0}, none},
        {none, none, {0, 1, 0, -1}, {0, 0, 1, 0}},
        {{0, 1, 0, -1}, none, none, {0, 2, -1, 0}},
        {none, none, none, none},
    };
}

void TraceTwin::setOption(const QString& key, double value) {
    options[key] = value;
}

#ifdef Q_OS_WIN
void TraceTwin::seedRandom(unsigned seed) {
    std::srand(seed);
}
int TraceTwin::draw() {
    return std::rand();
}
#else
void TraceTwin::seedRandom(unsigned seed) {
    twinState = seed;
}
int TraceTwin::draw() {
    twinState = twinState * 214013U + 2531011U;
    return static_cast<int>((twinState >> 16) & 32767U);
}
#endif

TraceTwin::Color TraceTwin::randomColor() {
    Color color;
    for (int c = 0; c < 4; ++c)
        color.append(toByte(toInt(std::floor(draw() / 32767.0 * 255.0) - 128.0)));
    return color;
}

QList<OvPolyline> TraceTwin::trace(const QImage& image) {
    if (image.isNull() || image.width() == 0 || image.height() == 0)
        return {};
    QImage copy = image;
    preprocess(copy);
    loadImageData(copy);
    colorquantization();
    const QList<Grid> layers = layering();
    const auto pathomit = static_cast<float>(toInt(std::floor(options["pathomit"])));
    const QList<QList<Path>> paths = batchpathscan(layers, pathomit);
    const QList<QList<NodePath>> nodes = batchinternodes(paths);
    const auto qtres = static_cast<float>(options["qtres"]);
    const auto ltres = static_cast<float>(options["ltres"]);
    QList<QList<TracedPath>> tracedLayers;
    for (const QList<NodePath>& layer : nodes)
        tracedLayers.append(batchtracepaths(layer, ltres, qtres));
    indexedImage.tracedata = tracedLayers;
    return getPolylines();
}

void TraceTwin::preprocess(QImage& image) {
    if (!(options["monochrome"] > 0.0))
        return;
    const bool useAlpha = std::floor(options["usealpha"]) != 0.0;
    options["alphathreshold"];
    const bool useBrightness = std::floor(options["usebrightness"]) != 0.0;
    const int threshold = toInt(std::floor(options["brightnessthreshold"]));
    // setPixelColor() does nothing on these formats but warn, pixel by pixel.
    if (image.format() == QImage::Format_Mono || image.format() == QImage::Format_MonoLSB ||
        image.format() == QImage::Format_Indexed8)
        return;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (useAlpha)
                static_cast<void>(c.alpha());
            if (useBrightness && c.lightness() > threshold)
                image.setPixelColor(x, y, QColor(255, 255, 255, 255));
            else
                image.setPixelColor(x, y, QColor(0, 0, 0, 255));
        }
    }
}

void TraceTwin::loadImageData(const QImage& image) {
    const int w = image.width();
    const int h = image.height();
    QList<char> data(qsizetype(w) * h * 4, 0);
    qsizetype position = 0;
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const QRgb p = image.pixel(x, y);
            data[position] = toByte(static_cast<int>((p >> 16) & 255) - 128);
            data[position + 1] = toByte(static_cast<int>((p >> 8) & 255) - 128);
            data[position + 2] = toByte(static_cast<int>(p & 255) - 128);
            data[position + 3] = toByte(static_cast<int>(p >> 24) - 128);
            position += 4;
        }
    }
    imageData.width = w;
    imageData.height = h;
    imageData.data = data;
}

QList<TraceTwin::Color> TraceTwin::generatepalette(int count) {
    if (count <= 0)
        return {};
    QList<Color> colors(count);
    if (count >= 8) {
        const int q = toInt(std::floor(std::pow(static_cast<double>(count), 0.3333333333333333)));
        const int s = toInt(static_cast<double>(std::floor(255.0F / static_cast<float>(q - 1))));
        for (int red = 0; red < q; ++red) {
            for (int green = 0; green < q; ++green) {
                for (int blue = 0; blue < q; ++blue) {
                    colors[red * q * q + green * q + blue] = {toByte(red * s + 128),
                                                              toByte(green * s + 128),
                                                              toByte(blue * s + 128), 127};
                }
            }
        }
        for (int i = q * q * q; i < count; ++i)
            colors[i] = randomColor();
    } else {
        const double g = 255.0 / static_cast<double>(count - 1);
        for (int i = 0; i < count; ++i) {
            const double v = i * g;
            const double rounded = v - std::floor(v) < 0.5 ? std::floor(v) : std::ceil(v);
            const char grey = toByte((toInt(rounded) & 255) + 128);
            colors[i] = {grey, grey, grey, 127};
        }
    }
    return colors;
}

QList<TraceTwin::Color> TraceTwin::samplepalette(int count) {
    QList<Color> work;
    for (qsizetype i = 0; i < imageData.data.size(); i += 4) {
        Color color;
        for (qsizetype c = 0; c < 4; ++c)
            color.append(toByte(stored(imageData.data[i + c]) / 16 * 16));
        if (!work.contains(color))
            work.append(color);
    }
    if (work.isEmpty() || count <= 0)
        return {};
    std::sort(work.begin(), work.end(), lessThanColor);
    QList<Color> colors;
    for (int i = 0; i < count; ++i) {
        const double k =
            static_cast<double>(work.size()) / static_cast<double>(count) * static_cast<double>(i);
        colors.append(work[toInt(k)]);
    }
    return colors;
}

bool TraceTwin::lessThanColor(const Color& a, const Color& b) {
    return (stored(a[0]) + stored(a[1]) + stored(a[2])) / 3 <
           (stored(b[0]) + stored(b[1]) + stored(b[2])) / 3;
}

void TraceTwin::blur(float radius, float delta) {
    int r = toInt(static_cast<double>(std::floor(radius)));
    if (r < 1)
        return;
    r = std::min(r, 5);
    const int limit = std::min(toInt(static_cast<double>(std::fabs(delta))), 1024);
    const QList<double> weights = blurKernels[r - 1];
    const int width = imageData.width;
    const int height = imageData.height;
    const auto at = [width](int x, int y) { return (qsizetype(y) * width + x) * 4; };

    QList<char> blurred(imageData.data.size(), 0);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double sums[4] = {0.0, 0.0, 0.0, 0.0};
            double weightSum = 0.0;
            for (int k = -r; k <= r; ++k) {
                const int sx = x + k;
                if (sx > 0 && sx < width) {
                    for (int c = 0; c < 4; ++c)
                        sums[c] += stored(imageData.data[at(sx, y) + c]) * weights[k + r];
                    weightSum += weights[k + r];
                }
            }
            for (int c = 0; c < 4; ++c)
                blurred[at(x, y) + c] = toByte(toInt(std::floor(sums[c] / weightSum)));
        }
    }
    const QList<char> copy = blurred;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            double sums[4] = {0.0, 0.0, 0.0, 0.0};
            double weightSum = 0.0;
            for (int k = -r; k <= r; ++k) {
                const int sy = y + k;
                if (sy > 0 && sy < height) {
                    for (int c = 0; c < 4; ++c)
                        sums[c] += stored(copy[at(x, sy) + c]) * weights[k + r];
                    weightSum += weights[k + r];
                }
            }
            for (int c = 0; c < 4; ++c)
                blurred[at(x, y) + c] = toByte(toInt(std::floor(sums[c] / weightSum)));
        }
    }
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            int d = 0;
            for (int c = 0; c < 4; ++c)
                d += std::abs(stored(blurred[at(x, y) + c]) - stored(imageData.data[at(x, y) + c]));
            if (d > limit) {
                for (int c = 0; c < 4; ++c)
                    blurred[at(x, y) + c] = imageData.data[at(x, y) + c];
            }
        }
    }
    imageData.data = blurred;
}

void TraceTwin::colorquantization() {
    const double n = std::floor(options["numberofcolors"]);
    const double ratioLimit = options["mincolorratio"];
    const int cycles = toInt(std::floor(options["colorquantcycles"]));
    const int width = imageData.width;
    const int height = imageData.height;
    Grid array(height + 2, QList<int>(width + 2, -1));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            array[y + 1][x + 1] = 0;
    }
    if (palette.isEmpty()) {
        if (options["colorsampling"] != 0.0)
            palette = samplepalette(toInt(n));
        else
            palette = generatepalette(toInt(n));
    }
    if (options["blurradius"] > 0.0)
        blur(static_cast<float>(options["blurradius"]), static_cast<float>(options["blurdelta"]));
    QList<QList<qint64>> acc(palette.size(), QList<qint64>(5, 0));
    for (int cycle = 0; cycle < cycles && !palette.isEmpty(); ++cycle) {
        if (cycle > 0) {
            for (qsizetype k = 0; k < palette.size(); ++k) {
                if (acc[k][3] > 0) {
                    for (int c = 0; c < 4; ++c)
                        palette[k][c] = toByte(static_cast<int>(acc[k][c] / acc[k][4] - 128));
                }
                const auto ratio = static_cast<float>(static_cast<double>(acc[k][4]) /
                                                      static_cast<double>(qint64(width) * height));
                if (ratioLimit > static_cast<double>(ratio) && cycle < cycles - 1)
                    palette[k] = randomColor();
            }
        }
        for (auto& entry : acc)
            entry.fill(0);
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const qsizetype offset = (qsizetype(y) * width + x) * 4;
                const auto p = [&](int c) { return stored(imageData.data[offset + c]); };
                int best = 1024;
                int index = 0;
                for (int k = 0; k < palette.size(); ++k) {
                    const auto q = [&](int c) { return stored(palette[k][c]); };
                    const int d = std::abs(p(0) - q(0)) + std::abs(p(1) - q(1)) +
                                  std::abs(p(2) - q(2)) + 4 * std::abs(p(3) - q(3));
                    if (d < best) {
                        best = d;
                        index = k;
                    }
                }
                for (int c = 0; c < 4; ++c)
                    acc[index][c] += p(c) + 128;
                acc[index][4] += 1;
                array[y + 1][x + 1] = index;
            }
        }
    }
    indexedImage = IndexedImage(array, palette);
}

QList<TraceTwin::Grid> TraceTwin::layering() const {
    const Grid& array = indexedImage.array;
    const qsizetype ah = array.size();
    const qsizetype aw = array[0].size();
    QList<Grid> layers(indexedImage.palette.size(), Grid(ah, QList<int>(aw, 0)));
    if (ah - 1 < 2 || layers.isEmpty())
        return layers;
    for (qsizetype j = 1; j < ah - 1; ++j) {
        for (qsizetype i = 1; i < aw - 1; ++i) {
            const int val = array[j][i];
            Grid& layer = layers[val];
            const int s1 = array[j - 1][i - 1] == val ? 1 : 0;
            const int s2 = array[j - 1][i] == val ? 1 : 0;
            const int s3 = array[j - 1][i + 1] == val ? 1 : 0;
            const int s4 = array[j][i - 1] == val ? 1 : 0;
            const int s5 = array[j][i + 1] == val ? 1 : 0;
            const int s6 = array[j + 1][i - 1] == val ? 1 : 0;
            const int s7 = array[j + 1][i] == val ? 1 : 0;
            const int s8 = array[j + 1][i + 1] == val ? 1 : 0;
            layer[j + 1][i + 1] = 1 + 2 * s5 + 4 * s8 + 8 * s7;
            if (s4 == 0)
                layer[j + 1][i] = 2 + 4 * s7 + 8 * s6;
            if (s2 == 0)
                layer[j][i + 1] = 8 + 2 * s3 + 4 * s5;
            if (s1 == 0)
                layer[j][i] = 4 + 2 * s2 + 8 * s4;
        }
    }
    return layers;
}

QList<TraceTwin::Path> TraceTwin::pathscan(Grid layer, float pathomit) {
    QList<Path> paths;
    const qsizetype h = layer.size();
    const qsizetype w = layer[0].size();
    for (qsizetype py = 0; py < h; ++py) {
        for (qsizetype px = 0; px < w; ++px) {
            const int type = layer[py][px];
            if (type == 0 || type == 15)
                continue;
            int dir = pathDirLookup[type];
            const bool holepath = holePathLookup[type] == 1;
            Path path;
            qsizetype x = px;
            qsizetype y = py;
            for (;;) {
                path.append({static_cast<int>(x) - 1, static_cast<int>(y) - 1, layer[y][x]});
                const QList<char> row = pathCombinedLookup[layer[y][x]][dir];
                layer[y][x] = stored(row[0]);
                dir = stored(row[1]);
                x += stored(row[2]);
                y += stored(row[3]);
                if (x - 1 == path[0][0] && y - 1 == path[0][1])
                    break;
            }
            if (!holepath && !(pathomit > static_cast<float>(path.size())))
                paths.append(path);
        }
    }
    return paths;
}

QList<QList<TraceTwin::Path>> TraceTwin::batchpathscan(const QList<Grid>& layers, float pathomit) {
    QList<QList<Path>> paths;
    for (const Grid& layer : layers)
        paths.append(pathscan(layer, pathomit));
    return paths;
}

QList<TraceTwin::NodePath> TraceTwin::internodes(const QList<Path>& paths) {
    QList<NodePath> result;
    for (const Path& path : paths) {
        NodePath nodes;
        const qsizetype n = path.size();
        for (qsizetype i = 0; i < n; ++i) {
            const qsizetype j = (i + 1) % n;
            const qsizetype k = (i + 2) % n;
            const double x = (path[i][0] + path[j][0]) * 0.5;
            const double y = (path[i][1] + path[j][1]) * 0.5;
            const double nx = (path[j][0] + path[k][0]) * 0.5;
            const double ny = (path[j][1] + path[k][1]) * 0.5;
            double direction = 8;
            if (nx > x)
                direction = ny > y ? 1 : ny < y ? 7 : 0;
            else if (nx < x)
                direction = ny > y ? 3 : ny < y ? 5 : 4;
            else
                direction = ny > y ? 2 : ny < y ? 6 : 8;
            nodes.append({x, y, direction});
        }
        result.append(nodes);
    }
    return result;
}

QList<QList<TraceTwin::NodePath>> TraceTwin::batchinternodes(const QList<QList<Path>>& paths) {
    QList<QList<NodePath>> result;
    for (const QList<Path>& layer : paths)
        result.append(internodes(layer));
    return result;
}

TraceTwin::TracedPath TraceTwin::tracepath(const NodePath& path, float ltres, float qtres) {
    TracedPath result;
    const int n = static_cast<int>(path.size());
    if (n < 2)
        return result;
    int seqstart = 0;
    for (;;) {
        const double type1 = path[seqstart][2];
        double type2 = -1.0;
        int seqend = seqstart + 1;
        for (;;) {
            const double d = path[seqend][2];
            if (d != type1 && d != type2 && type2 != -1.0)
                break;
            if (seqend >= n - 1)
                break;
            if (d != type1 && type2 == -1.0)
                type2 = d;
            ++seqend;
        }
        if (seqend == n - 1)
            seqend = 0;
        const TracedPath records = fitseq(path, ltres, qtres, seqstart, seqend);
        for (const Record& record : records)
            result.append(record);
        if (seqend > 0 && seqend < n)
            seqstart = seqend;
        else
            return result;
    }
}

TraceTwin::TracedPath TraceTwin::fitseq(const NodePath& path, float ltres, float qtres,
                                        int seqstart, int seqend) {
    const int n = static_cast<int>(path.size());
    if (seqend > n || seqend < 0)
        return {};
    // The path is closed: the node after the last one is node 0.
    const auto node = [&](int i) -> const QList<double>& { return path[i % n]; };
    const int stop = seqend % n;
    const double xs = node(seqstart)[0];
    const double ys = node(seqstart)[1];
    const double xe = node(seqend)[0];
    const double ye = node(seqend)[1];
    double tl = seqend - seqstart;
    if (tl < 0)
        tl += n;
    const double vx = (xe - xs) / tl;
    const double vy = (ye - ys) / tl;
    bool linepass = true;
    double maxerr = 0.0;
    int errorpoint = seqstart;
    for (int i = (seqstart + 1) % n; i != stop; i = (i + 1) % n) {
        double pl = i - seqstart;
        if (pl < 0)
            pl += n;
        const double px = pl * vx + xs;
        const double py = pl * vy + ys;
        const double err =
            (node(i)[1] - py) * (node(i)[1] - py) + (node(i)[0] - px) * (node(i)[0] - px);
        if (err > static_cast<double>(ltres))
            linepass = false;
        if (err > maxerr) {
            maxerr = err;
            errorpoint = i;
        }
    }
    if (linepass)
        return {{1.0, xs, ys, xe, ye, 0.0, 0.0}};

    const int fitpoint = errorpoint;
    double t = (fitpoint - seqstart) / tl;
    double t1 = (1 - t) * (1 - t);
    double t2 = 2 * (1 - t) * t;
    double t3 = t * t;
    const double cpx = (xs * t1 + xe * t3 - node(fitpoint)[0]) / (-t2);
    const double cpy = (ys * t1 + ye * t3 - node(fitpoint)[1]) / (-t2);
    bool curvepass = true;
    maxerr = 0.0;
    for (int i = seqstart + 1; i != stop; i = (i + 1) % n) {
        t = (i - seqstart) / tl;
        t1 = (1 - t) * (1 - t);
        t2 = 2 * (1 - t) * t;
        t3 = t * t;
        const double px = t2 * cpx + t1 * xs + t3 * xe;
        const double py = t2 * cpy + t1 * ys + t3 * ye;
        const double err =
            (node(i)[0] - px) * (node(i)[0] - px) + (node(i)[1] - py) * (node(i)[1] - py);
        if (err > static_cast<double>(qtres))
            curvepass = false;
        if (err > maxerr) {
            maxerr = err;
            errorpoint = i;
        }
    }
    if (curvepass)
        return {{2.0, xs, ys, cpx, cpy, xe, ye}};

    const int splitpoint = (fitpoint + errorpoint) / 2;
    return fitseq(path, ltres, qtres, seqstart, splitpoint) +
           fitseq(path, ltres, qtres, splitpoint, seqend);
}

QList<TraceTwin::TracedPath> TraceTwin::batchtracepaths(const QList<NodePath>& paths, float ltres,
                                                        float qtres) {
    QList<TracedPath> result;
    for (const NodePath& path : paths)
        result.append(tracepath(path, ltres, qtres));
    return result;
}

OvVector TraceTwin::transform(const OvVector& v) const {
    OvVector result = v;
    result.y = static_cast<double>(imageData.height) - v.y;
    return result;
}

QList<OvPolyline> TraceTwin::getPolylines() {
    const auto& layers = indexedImage.tracedata;
    QMap<double, QList<int>> order;
    for (int k = 0; k < layers.size(); ++k) {
        for (int j = 0; j < layers[k].size(); ++j) {
            if (layers[k][j].isEmpty())
                continue;
            const Record& first = layers[k][j][0];
            order[static_cast<double>(indexedImage.width) * first[2] + first[1]] = {k, j};
        }
    }
    QList<OvPolyline> polylines;
    polylineLayers.clear();
    for (const QList<int>& entry : order) {
        const TracedPath& path = layers[entry[0]][entry[1]];
        OvPolyline polyline;
        polyline.appendVertex(transform(OvVector(path[0][1], path[0][2], 0.0, true)), 0.0, 0.0,
                              0.0);
        for (const Record& record : path) {
            if (record[0] == 1.0) {
                polyline.appendVertex(transform(OvVector(record[3], record[4], 0.0, true)), 0.0,
                                      0.0, 0.0);
            } else {
                OvSpline spline;
                spline.setDegree(2);
                spline.appendControlPoint(polyline.getEndPoint());
                spline.appendControlPoint(transform(OvVector(record[3], record[4], 0.0, true)));
                spline.appendControlPoint(transform(OvVector(record[5], record[6], 0.0, true)));
                polyline.appendShape(spline, false);
            }
        }
        polylines.append(polyline);
        polylineLayers.append(entry[0]);
    }
    return polylines;
}

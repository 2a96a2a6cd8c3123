#include "tilecache.h"

#include <QPainter>

#include <cmath>

namespace {

constexpr int TileSide = 256;  ///< device pixels
constexpr int MostLevels = 3;  ///< scenes and scales that are kept
constexpr int MostTiles = 320; ///< of a level; 80 MB
constexpr int CheckerSide = 8; ///< of the pattern behind what is transparent
const QColor CheckerLight(255, 255, 255);
const QColor CheckerDark(224, 224, 224);

QImage emptyTile() {
    QImage tile(TileSide, TileSide, QImage::Format_RGB32);
    tile.fill(CheckerLight);
    QPainter painter(&tile);
    for (int y = 0; y < TileSide; y += CheckerSide) {
        for (int x = (y / CheckerSide % 2) * CheckerSide; x < TileSide; x += 2 * CheckerSide)
            painter.fillRect(x, y, CheckerSide, CheckerSide, CheckerDark);
    }
    return tile;
}

QRectF partOf(const TilePlace& place, double scale) {
    const double side = TileSide / scale;
    return {place.column * side, place.row * side, side, side};
}

QImage paintTile(const Scene& scene, const TilePlace& place, double scale) {
    static const QImage background = emptyTile();
    QImage tile = background;
    QPainter painter(&tile);
    painter.translate(-place.column * TileSide, -place.row * TileSide);
    painter.scale(scale, scale);
    const QRectF part = partOf(place, scale);
    scene.paint(painter, static_cast<Scene::Content>(place.content), part, scale);
    if (place.selectedColor >= 0)
        scene.paintSelection(painter, place.selectedColor, part, scale);
    return tile;
}

/// Calls `visit(column, row)` for each tile that has a share in `part`.
template <typename Visit>
void forEachTile(const QRectF& part, QSize size, double scale, Visit visit) {
    const QRectF inside = part.intersected(QRectF(QPointF(0, 0), QSizeF(size)));
    if (inside.isEmpty())
        return;
    const double side = TileSide / scale;
    const int right = static_cast<int>(std::ceil(inside.right() / side));
    const int bottom = static_cast<int>(std::ceil(inside.bottom() / side));
    for (int row = static_cast<int>(inside.top() / side); row < bottom; ++row) {
        for (int column = static_cast<int>(inside.left() / side); column < right; ++column)
            visit(column, row);
    }
}

} // namespace

size_t qHash(const TilePlace& place, size_t seed) noexcept {
    return qHashMulti(seed, place.content, place.selectedColor, place.column, place.row);
}

TileCache::TileCache(QObject* parent) : QObject(parent) {
}

TileCache::~TileCache() {
    painters.clear();
}

void TileCache::setScene(std::shared_ptr<const Scene> newScene) {
    scene = std::move(newScene);
}

void TileCache::selectColor(int colorIndex) {
    selectedColor = colorIndex;
    painters.clear(); // what was marked before is no longer asked for
    pending.clear();
}

TileCache::Level& TileCache::levelFor(double scale) {
    if (levels.empty() || levels.front().scene != scene || levels.front().scale != scale) {
        painters.clear();
        pending.clear();
        levels.push_front({++lastNumber, scene, scale, {}});
        if (levels.size() > MostLevels)
            levels.pop_back();
    }
    return levels.front();
}

void TileCache::paint(QPainter& painter, Scene::Content content, const QRectF& part, double scale,
                      QPointF origin) {
    if (!scene)
        return;
    Level& level = levelFor(scale);
    const int selection = content == Scene::Content::Image ? -1 : selectedColor;
    bool complete = true;
    forEachTile(part, scene->size(), scale, [&](int column, int row) {
        const TilePlace place{static_cast<int>(content), selection, column, row};
        if (level.tiles.contains(place))
            return;
        complete = false;
        request(level, place);
    });
    const View view{content, selection, part, scale, origin};
    if (!complete) {
        for (auto older = levels.rbegin(); older != levels.rend(); ++older)
            paintLevel(painter, *older, view, false);
    }
    paintLevel(painter, level, view, true);
}

/// Paints a level's tiles: those with the selection asked for, or all that there are.
void TileCache::paintLevel(QPainter& painter, const Level& level, const View& view,
                           bool asSelected) const {
    const double stretch = view.scale / level.scale;
    // Pictures of another size of image are no help.
    if (level.scene->size() != scene->size())
        return;
    for (auto tile = level.tiles.begin(); tile != level.tiles.end(); ++tile) {
        const QRectF box = partOf(tile.key(), level.scale);
        if (tile.key().content != static_cast<int>(view.content) || !box.intersects(view.part))
            continue;
        if (asSelected && tile.key().selectedColor != view.selectedColor)
            continue;
        const QPointF corner = view.origin + box.topLeft() * view.scale;
        if (stretch == 1.0)
            painter.drawImage(corner.toPoint(), tile.value());
        else
            painter.drawImage(QRectF(corner, box.size() * view.scale), tile.value());
    }
}

void TileCache::request(Level& level, const TilePlace& place) {
    if (pending.contains(place))
        return;
    pending.insert(place);
    painters.start([this, number = level.number, shown = level.scene, place, scale = level.scale] {
        const QImage tile = paintTile(*shown, place, scale);
        painted.post([this, number, place, tile] { keep(number, place, tile); });
    });
}

void TileCache::keep(quint64 level, const TilePlace& place, const QImage& tile) {
    if (levels.empty() || levels.front().number != level)
        return;
    pending.remove(place);
    if (levels.front().tiles.size() >= MostTiles)
        levels.front().tiles.clear();
    levels.front().tiles.insert(place, tile);
    emit updated();
}

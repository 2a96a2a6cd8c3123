#pragma once

#include "mailbox.h"
#include "scene.h"
#include "taskthread.h"

#include <QHash>
#include <QObject>
#include <QSet>

#include <deque>

/// Where a tile lies in its grid, and what it shows.
struct TilePlace {
    int content;
    int selectedColor; ///< of the palette; -1 for none
    int column;
    int row;
    bool operator==(const TilePlace&) const = default;
};

size_t qHash(const TilePlace& place, size_t seed = 0) noexcept;

/// Pictures of parts of a scene, made in a thread of their own and kept.
///
/// What is not there yet is shown as the scene or the scale before had it, so that panning and
/// zooming never wait.
class TileCache : public QObject {
    Q_OBJECT

public:
    explicit TileCache(QObject* parent = nullptr);
    ~TileCache() override;

    void setScene(std::shared_ptr<const Scene> scene);

    /// Which colour's outlines are marked in results; -1 for none.
    void selectColor(int colorIndex);

    /// Paints `part` of the scene (in pixels of the image) at `scale` device pixels each. The
    /// painter works in device pixels with the image's corner at `origin`.
    void paint(QPainter& painter, Scene::Content content, const QRectF& part, double scale,
               QPointF origin);

    /// Whether everything that was painted last was there as it should be.
    bool isComplete() const {
        return pending.isEmpty();
    }

signals:
    /// More tiles are there: paint again.
    void updated();

private:
    /// The tiles of one scene at one scale.
    struct Level {
        quint64 number;
        std::shared_ptr<const Scene> scene;
        double scale;
        QHash<TilePlace, QImage> tiles;
    };

    /// What is to be painted, see paint().
    struct View {
        Scene::Content content;
        int selectedColor;
        QRectF part;
        double scale;
        QPointF origin;
    };

    Level& levelFor(double scale);
    void paintLevel(QPainter& painter, const Level& level, const View& view, bool asSelected) const;
    void request(Level& level, const TilePlace& place);
    void keep(quint64 level, const TilePlace& place, const QImage& tile);

    std::shared_ptr<const Scene> scene;
    int selectedColor = -1;
    std::deque<Level> levels; ///< the newest first
    QSet<TilePlace> pending;  ///< of the newest level
    quint64 lastNumber = 0;
    Mailbox painted;
    TaskThread painters; ///< one: another processor is left to the window and to tracing
};

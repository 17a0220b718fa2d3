// The map's pane in the window: the pixels that the logic painted, names and a frame above them, and what the
// user does there. For the window's thread.
#pragma once

#include <QImage>
#include <QWidget>

#include "platform/map_pane.h"
#include "platform/window.h"

namespace hl {

class MapArea final : public QWidget, public MapPane {
  public:
    /// `faults` must outlive it.
    MapArea(WindowEvents& faults, QWidget* parent);

    // MapPane
    void setEvents(MapEvents* events) override;
    void refresh() override;
    void refreshOverlay() override;
    Point onScreen(Point at) override;
    std::string png() override;

    // --- for assistive tools
    /// Sets the word that is said before an item's level.
    void setLevelCaption(const QString& caption) { levelCaption_ = caption; }
    const QString& levelCaption() const { return levelCaption_; }
    /// Some assistive tool has asked for the map.
    void setDescribed() { described_ = true; }
    bool described() const { return described_; }
    WindowEvents& faults() { return faults_; }
    std::size_t itemCount() const;
    MapItem item(std::size_t number) const;
    std::size_t itemAt(QPointF at) const;
    std::size_t selectedItem() const;
    void selectItem(std::size_t number);
    QRectF placeOnWidget(const Rect& pixels) const;

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

  private:
    MapLooks looks() const;
    Point pixelAt(QPointF at) const;
    int legendHeight() const;
    void bringUpToDate();
    void paintMapAndNames(QPainter& painter) const;
    void paintName(QPainter& painter, const MapName& name) const;
    void paintLegend(QPainter& painter) const;
    void paintFrames(QPainter& painter) const;

    WindowEvents& faults_;
    MapEvents* events_ = nullptr;
    QImage pixels_;
    MapOverlay overlay_;
    bool pixelsStale_ = true, overlayStale_ = true, described_ = false;
    QString levelCaption_;
    int wheel_ = 0;  ///< What the wheel has turned since the last level, in eighths of a degree.
};

}  // namespace hl

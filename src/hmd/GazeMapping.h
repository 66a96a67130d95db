#pragma once

// From where the head looks to a pixel of the panel that stands in front of the viewer, as
// arithmetic; the counterpart of the shader text that draws the panel. Free functions on values,
// any thread.

#include <QMatrix4x4>
#include <QPoint>
#include <QPointF>
#include <QSize>

namespace GazeMapping {

/// The frame in which a panel stands that opens straight ahead of @p yaw (radians): multiplied from
/// the left to a head's pose it gives the pose as the panel sees it.
QMatrix4x4 panelFrame(float yaw);

/// Where the gaze of the pose @p pose (camera to world) meets the panel: (0, 0) is its top left
/// corner, (1, 1) its bottom right; what misses it lies outside.
QPointF panelPoint(const QMatrix4x4 &panelFrame, const QMatrix4x4 &pose);

/// The same in pixels, cut to whole ones. A point that is no number lies outside.
QPoint panelPixel(const QPointF &panelPoint, const QSize &panelSize);

/// On the panel, its first row and column excepted.
bool isInside(const QPoint &panelPixel, const QSize &panelSize);

/// Pixels of the scene behind a texture of @p textureSize pixels, cut to whole ones.
QSize sceneSize(const QSize &textureSize, qreal devicePixelRatio);

} // namespace GazeMapping

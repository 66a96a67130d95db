#include "hmd/GazeMapping.h"

#include "render/CameraMath.h"
#include "render/KProjection.h"

#include <cmath>

namespace GazeMapping {

QMatrix4x4 panelFrame(float yaw)
{
    return CameraMath::matrixFromAngles({yaw, 0, 0}).transposed();
}

QPointF panelPoint(const QMatrix4x4 &panelFrame, const QMatrix4x4 &pose)
{
    const CameraAngles gaze = CameraMath::anglesFromMatrix(panelFrame * pose);
    double x = 0;
    double y = 0;
    // The camera's pitch is positive downwards, so y comes out upside down.
    Planar().forward(double(gaze.yaw), double(gaze.pitch), &x, &y);
    // The panel is the middle half of the plane's width and the middle quarter of its height.
    return {x + (x - 0.5), (1 - y) * 4 - 1.5};
}

QPoint panelPixel(const QPointF &panelPoint, const QSize &panelSize)
{
    if (!std::isfinite(panelPoint.x()) || !std::isfinite(panelPoint.y()))
        return {-1, -1};
    return {int(panelSize.width() * panelPoint.x()), int(panelSize.height() * panelPoint.y())};
}

bool isInside(const QPoint &panelPixel, const QSize &panelSize)
{
    return panelPixel.x() > 0 && panelPixel.x() < panelSize.width() && panelPixel.y() > 0 &&
           panelPixel.y() < panelSize.height();
}

QSize sceneSize(const QSize &textureSize, qreal devicePixelRatio)
{
    return {int(textureSize.width() / devicePixelRatio),
            int(textureSize.height() / devicePixelRatio)};
}

} // namespace GazeMapping

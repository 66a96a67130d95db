#include "render/ViewGeometry.h"

#include "render/KShaderCodeBuilder.h"

#include <QtDebug>

#include <algorithm>
#include <cmath>

namespace {

/// No texture is larger; a bound for numbers that come from files and settings.
constexpr double maximumSide = 1 << 20;

int side(double value)
{
    return int(std::clamp(value, 1.0, maximumSide));
}

int roundedSide(double value)
{
    return side(std::round(value));
}

} // namespace

ViewportParameters viewportParameters(const QSizeF &item, EyeLayout layout, double devicePixelRatio)
{
    const double eyeWidth = layout == EyeLayout::Single ? item.width() : item.width() / 2.0;
    const double width = layout == EyeLayout::Split ? eyeWidth : item.width();
    const double height = item.height();
    const double smaller = std::min(width, height);

    ViewportParameters parameters;
    parameters.size = QVector2D(float(width), float(height));
    parameters.sizeMin = QVector2D(float(smaller), float(smaller));
    parameters.sizeRatio = smaller > 0.0
                               ? QVector2D(float(width / smaller), float(height / smaller))
                               : QVector2D(1.0f, 1.0f);
    parameters.pixels = QSize(int(eyeWidth * devicePixelRatio), int(height * devicePixelRatio));
    return parameters;
}

QSize limitedSize(const QSize &size, const QSize &limit)
{
    QSize result = size;
    if (limit.width() > 0 && result.width() > limit.width()) {
        const double ratio = double(limit.width()) / result.width();
        result = QSize(limit.width(), roundedSide(result.height() * ratio));
    }
    if (limit.height() > 0 && result.height() > limit.height()) {
        const double ratio = double(limit.height()) / result.height();
        result = QSize(roundedSide(result.width() * ratio), limit.height());
    }
    return result;
}

QSize renderSize(const QSize &texture, const QSize &view, float fov, int projectionSource,
                 int projection)
{
    if (texture.isEmpty()) {
        qWarning("Invalid size");
        return view;
    }
    const bool spherical = projectionSource == KShaderCodeBuilder::EQUIRECTANGULAR ||
                           projectionSource == KShaderCodeBuilder::CUBEMAP;
    if (!spherical || view.isEmpty())
        return view;

    const double vw = view.width();
    const double vh = view.height();
    const double tw = texture.width();
    const double th = texture.height();
    const bool wide = vw >= vh;
    const int baseWidth = side(wide ? fov * (vw * tw) / vh / 360.0 : fov * tw / 360.0);
    const int baseHeight = side(wide ? fov * th / 180.0 : fov * (vh * th) / vw / 180.0);

    double factor = 1.0;
    if (projection == KShaderCodeBuilder::LITTLE_PLANET)
        factor = 3.0;
    else if (projection == KShaderCodeBuilder::ORVEX)
        factor = fov * 0.00714285714 + 0.428571429; // 1 at 80 degrees, 3 at 360
    return {roundedSide(baseWidth * factor), roundedSide(baseHeight * factor)};
}

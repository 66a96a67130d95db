#include "support/PanoramaReference.h"

#include "render/KShaderCodeBuilder.h"

#include <algorithm>
#include <cmath>

namespace test {

namespace {

constexpr double kPi = 3.14159265358979323846;

using Vector = std::array<double, 3>;

double wrapped(double value, double period)
{
    return value - period * std::floor(value / period);
}

/// Equirectangular coordinates of a direction over the whole sphere: west to east, top to bottom.
QPointF equirectangular(const Vector &d)
{
    const double length = std::hypot(d[0], d[1], d[2]);
    const double eastward = std::atan2(d[0], -d[2]); // 0 straight ahead
    return {wrapped(eastward / (2 * kPi) + 0.5, 1.0), std::acos(d[1] / length) / kPi};
}

/// One face of the 3 by 2 atlas, from coordinates of -1 to 1 that grow to the right and down.
QPointF atlasFace(int column, int row, double right, double down)
{
    const auto inset = [](double v) { return ((v + 1) / 2) / 1.01 + 0.005; };
    return {(column + inset(right)) / 3, (row + inset(down)) / 2};
}

QPointF mirroredAtlasFace(int column, int row, double left, double up)
{
    const auto inset = [](double v) { return 1 - (((v + 1) / 2) / 1.01 + 0.005); };
    return {(column + inset(left)) / 3, (row + inset(up)) / 2};
}

QPointF cubemap(const Vector &d)
{
    const double ax = std::abs(d[0]), ay = std::abs(d[1]), az = std::abs(d[2]);
    const double largest = std::max({ax, ay, az});
    const double x = d[0] / largest, y = d[1] / largest, z = d[2] / largest;
    const auto upright = [&](int column, int row, double right) {
        return QPointF(atlasFace(column, row, right, 0).x(),
                       mirroredAtlasFace(column, row, 0, y).y());
    };
    if (ax == largest) {
        if (d[0] > 0)
            return upright(0, 0, z);
        return {mirroredAtlasFace(1, 0, z, 0).x(), mirroredAtlasFace(1, 0, 0, y).y()};
    }
    if (ay == largest) {
        if (d[1] > 0)
            return {atlasFace(2, 0, x, 0).x(), mirroredAtlasFace(2, 0, 0, z).y()};
        return atlasFace(0, 1, x, z);
    }
    if (d[2] > 0)
        return {mirroredAtlasFace(2, 1, x, 0).x(), mirroredAtlasFace(2, 1, 0, y).y()};
    return upright(1, 1, x);
}

QPointF fisheyeCircle(Vector d, bool quarterTurn)
{
    if (quarterTurn)
        d = {d[1], -d[0], d[2]};
    // The lens looks up; its field of 1.33 pi spans the picture.
    const double fromAxis = std::atan2(std::hypot(d[0], d[2]), d[1]) / (1.33 * kPi);
    const double around = std::atan2(d[0], d[2]);
    return {0.5 + fromAxis * std::cos(around), 0.5 + fromAxis * std::sin(around)};
}

bool insidePicture(const QPointF &p)
{
    return p.x() >= 0 && p.x() <= 1 && p.y() >= 0 && p.y() <= 1;
}

} // namespace

std::optional<Vector> PanoramaReference::direction(double sx, double sy) const
{
    const double fov = m_uniforms.fov * kPi / 180;
    const double radius = std::hypot(sx, sy);
    const int projection =
        m_key.forceRectilinear ? int(KShaderCodeBuilder::RECTILINEAR) : m_key.projection;
    switch (projection) {
    case KShaderCodeBuilder::RECTILINEAR: {
        const double scale = std::tan(fov / 2);
        const double corrector = m_key.forceRectilinear ? m_uniforms.scaleCorrector : 1.0;
        return Vector{scale * sx, scale * sy * corrector, -1};
    }
    case KShaderCodeBuilder::LITTLE_PLANET: {
        // Seen from 0.25 behind the sphere's centre on a sphere enlarged alike.
        const double centre = 1.25, planar = fov * radius;
        const double angle = 2 * std::atan2(planar, centre);
        const double across = radius > 0 ? std::sin(angle) / radius : 0;
        return Vector{across * sx, across * sy, -std::cos(angle)};
    }
    case KShaderCodeBuilder::FISHEYE: {
        if (radius * fov > 2 * kPi)
            return std::nullopt;
        const double angle = radius * fov / 2;
        const double across = radius > 0 ? std::sin(angle) / radius : fov / 2;
        return Vector{across * sx, across * sy, -std::cos(angle)};
    }
    default: {
        // From the eye at (0, 0, eye) through the plane z = -1 onto the unit sphere.
        const double eye = m_uniforms.projectionDistance;
        const double rx = m_uniforms.projScale * sx, ry = m_uniforms.projScale * sy;
        const double rz = -1 - eye;
        const double a = rx * rx + ry * ry + rz * rz;
        const double b = eye * rz;
        const double c = eye * eye - 1;
        const double t = (-b + std::sqrt(b * b - a * c)) / a;
        return Vector{t * rx, t * ry, eye + t * rz};
    }
    }
}

QPointF PanoramaReference::project(const Vector &camera) const
{
    Vector world = {};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            world[row] += double(m_uniforms.matViewInverse(row, column)) * camera[column];
    }
    if (!m_key.overlay && m_key.projectionSource == KShaderCodeBuilder::CUBEMAP)
        return cubemap(world);
    if (!m_key.overlay && m_key.projectionSource == KShaderCodeBuilder::FISHEYE_CIRCLE)
        return fisheyeCircle(world, m_key.quarterTurn);
    const QPointF whole = equirectangular(world);
    if (m_key.overlay || !m_key.restrictYawPitch)
        return whole;
    const double yaw = whole.x() * 2 * kPi - kPi;
    const double pitch = kPi / 2 - whole.y() * kPi;
    return {(yaw - m_uniforms.yawMin) / (double(m_uniforms.yawMax) - m_uniforms.yawMin),
            (m_uniforms.pitchMax - pitch) / (double(m_uniforms.pitchMax) - m_uniforms.pitchMin)};
}

std::optional<QPointF> PanoramaReference::flat(double sx, double sy) const
{
    const double half = m_uniforms.fov * kPi / 360;
    const double across = wrapped((kPi + sx * half + m_uniforms.cameraYaw) / (2 * kPi), 1.0);
    const double down = 0.5 - (sy * half - m_uniforms.cameraPitch) / kPi;
    return QPointF(across, down);
}

QPointF PanoramaReference::ontoPanel(QPointF picture) const
{
    const double longitude = (2 * picture.x() - 1) * kPi;
    const double latitude = kPi / 2 - kPi * (1 - picture.y());
    const double scale = 1 / (2 * std::tan(81 * kPi / 180));
    if (std::abs(longitude) < kPi / 2)
        picture = {0.5 + scale * std::tan(longitude),
                   0.5 - scale * std::tan(latitude) / std::cos(longitude)};
    return {picture.x() * 2 - 0.5, picture.y() * 4 - 1.5};
}

std::optional<QPointF> PanoramaReference::pictureAt(double x, double y) const
{
    const double w = m_uniforms.viewport.size.x(), h = m_uniforms.viewport.size.y();
    const double smaller = std::min(w, h);
    const double sx = (2 * x - 1) * w / smaller, sy = (2 * y - 1) * h / smaller;

    std::optional<QPointF> picture;
    if (!m_key.overlay && m_key.projectionSource == KShaderCodeBuilder::STANDARD)
        picture = flat(sx, sy);
    else if (const auto camera = direction(sx, sy))
        picture = project(*camera);
    if (!picture)
        return std::nullopt;
    if (m_key.flipY)
        picture->setY(1 - picture->y());
    if (m_key.overlay)
        picture = ontoPanel(*picture);
    if (!insidePicture(*picture))
        return std::nullopt;
    return picture;
}

QPointF PanoramaReference::inTexture(QPointF picture) const
{
    const bool right = m_uniforms.eye == 1;
    switch (m_key.stereoMode) {
    case KShaderCodeBuilder::STEREO_3D_OVERUNDER:
        return {picture.x(), picture.y() / 2 + (right ? 0.5 : 0)};
    case KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE:
        return {picture.x() / 2 + (right ? 0.5 : 0), picture.y()};
    case KShaderCodeBuilder::STEREO_3D_OVERUNDER_INVERTED:
        return {picture.x(), picture.y() / 2 + (right ? 0 : 0.5)};
    case KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE_INVERTED:
        return {picture.x() / 2 + (right ? 0 : 0.5), picture.y()};
    default:
        return picture;
    }
}

bool PanoramaReference::onEdge(double x, double y, const QSizeF &pixelSize) const
{
    constexpr double kJump = 0.1;
    const auto centre = pictureAt(x, y);
    for (const double dx : {-0.5, 0.5}) {
        for (const double dy : {-0.5, 0.5}) {
            const auto corner = pictureAt(x + dx * pixelSize.width(), y + dy * pixelSize.height());
            if (corner.has_value() != centre.has_value())
                return true;
            if (centre && (std::abs(corner->x() - centre->x()) > kJump ||
                           std::abs(corner->y() - centre->y()) > kJump))
                return true;
        }
    }
    return false;
}

PixelComparison comparePixels(const QImage &image, const PanoramaReference &reference,
                              const QImage &picture, double tolerance, QRgb background)
{
    const QSizeF pixel(1.0 / image.width(), 1.0 / image.height());
    PixelComparison result;
    for (int row = 0; row < image.height(); ++row) {
        for (int column = 0; column < image.width(); ++column) {
            ++result.pixels;
            const double x = (column + 0.5) * pixel.width();
            const double y = 1 - (row + 0.5) * pixel.height();
            if (reference.onEdge(x, y, pixel)) {
                ++result.onEdges;
                continue;
            }
            const QRgb seen = image.pixel(column, row);
            const auto at = reference.pictureAt(x, y);
            const Color expected = at ? sampleLinear(picture, reference.inTexture(*at))
                                      : Color{double(qRed(background)), double(qGreen(background)),
                                              double(qBlue(background))};
            const bool right = qAlpha(seen) == (at ? 255 : qAlpha(background)) &&
                               std::abs(qRed(seen) - expected[0]) <= tolerance &&
                               std::abs(qGreen(seen) - expected[1]) <= tolerance &&
                               std::abs(qBlue(seen) - expected[2]) <= tolerance;
            if (!right && result.wrong++ == 0)
                result.firstWrong = QPoint(column, row);
        }
    }
    return result;
}

Color sampleLinear(const QImage &image, QPointF at)
{
    const double x = at.x() * image.width() - 0.5, y = at.y() * image.height() - 0.5;
    const int left = int(std::floor(x)), top = int(std::floor(y));
    Color result = {};
    for (const int dx : {0, 1}) {
        for (const int dy : {0, 1}) {
            const double weight = (dx ? x - left : left + 1 - x) * (dy ? y - top : top + 1 - y);
            const QRgb pixel = image.pixel(std::clamp(left + dx, 0, image.width() - 1),
                                           std::clamp(top + dy, 0, image.height() - 1));
            result[0] += weight * qRed(pixel);
            result[1] += weight * qGreen(pixel);
            result[2] += weight * qBlue(pixel);
        }
    }
    return result;
}

QImage directionPattern(const QSize &size)
{
    // Odd numbers of periods: the two halves of a stereo picture differ.
    constexpr int kAcross = 5, kDown = 7;
    QImage image(size, QImage::Format_RGBA8888);
    for (int y = 0; y < size.height(); ++y) {
        const double v = (y + 0.5) / size.height() * kDown;
        const double zigzag = std::abs(2 * (v - std::floor(v)) - 1);
        for (int x = 0; x < size.width(); ++x) {
            const double angle = (x + 0.5) / size.width() * 2 * kPi * kAcross;
            image.setPixel(x, y,
                           qRgb(qRound(127.5 + 127.5 * std::cos(angle)),
                                qRound(127.5 + 127.5 * std::sin(angle)), qRound(255 * zigzag)));
        }
    }
    return image;
}

} // namespace test

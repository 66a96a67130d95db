#include "support/PanoramaReference.h"

#include "render/KShaderCodeBuilder.h"

#include <algorithm>
#include <cmath>

namespace test {

namespace {

using B = KShaderCodeBuilder;
constexpr double kPi = 3.14159265358979323846;

struct Direction
{
    double x, y, z;
};

double fraction(double value)
{
    return value - std::floor(value);
}

/// In the camera's frame, which looks along -z; nothing beyond the fisheye's whole turn.
std::optional<Direction> seenAt(double sx, double sy, int projection, const PanoramaUniforms &u)
{
    const double fov = u.fov * kPi / 180;
    const double radius = std::hypot(sx, sy);
    const auto atAngle = [&](double angle) { // from the view axis
        const double across = radius > 0 ? std::sin(angle) / radius : 0;
        return Direction{across * sx, across * sy, -std::cos(angle)};
    };
    if (projection == B::RECTILINEAR)
        return Direction{std::tan(fov / 2) * sx, std::tan(fov / 2) * sy, -1};
    if (projection == B::LITTLE_PLANET) // from 0.25 behind the centre, on a sphere enlarged alike
        return atAngle(2 * std::atan2(fov * radius, 1.25));
    if (projection == B::FISHEYE)
        return radius * fov > 2 * kPi ? std::nullopt : std::optional(atAngle(radius * fov / 2));
    // From the eye at (0, 0, eye) through the plane z = -1 onto the unit sphere.
    const double eye = u.projectionDistance, rx = u.projScale * sx, ry = u.projScale * sy;
    const double rz = -1 - eye, a = rx * rx + ry * ry + rz * rz, b = eye * rz;
    const double t = (-b + std::sqrt(b * b - a * (eye * eye - 1))) / a;
    return Direction{t * rx, t * ry, eye + t * rz};
}

/// Over the whole sphere: west to east, top to bottom.
QPointF equirectangular(const Direction &d)
{
    return {fraction(std::atan2(d.x, -d.z) / (2 * kPi) + 0.5),
            std::acos(d.y / std::hypot(d.x, d.y, d.z)) / kPi};
}

QPointF cubemap(const Direction &d)
{
    const double largest = std::max({std::abs(d.x), std::abs(d.y), std::abs(d.z)});
    const auto inset = [&](double v) { return (v / largest + 1) / 2.02 + 0.005; };
    const double x = inset(d.x), y = inset(d.y), z = inset(d.z);
    if (std::abs(d.x) == largest)
        return {d.x > 0 ? z / 3 : (2 - z) / 3, (1 - y) / 2};
    if (std::abs(d.y) == largest)
        return d.y > 0 ? QPointF((x + 2) / 3, (1 - z) / 2) : QPointF(x / 3, (1 + z) / 2);
    return {d.z > 0 ? (3 - x) / 3 : (x + 1) / 3, (2 - y) / 2};
}

/// A lens that looks up, with 1.33 pi across the picture.
QPointF fisheyeCircle(Direction d, bool quarterTurn)
{
    if (quarterTurn)
        d = {d.y, -d.x, d.z};
    const double radius = std::atan2(std::hypot(d.x, d.z), d.y) / (1.33 * kPi);
    const double around = std::atan2(d.x, d.z);
    return {0.5 + radius * std::cos(around), 0.5 + radius * std::sin(around)};
}

QPointF ontoPanel(QPointF whole)
{
    const double longitude = (2 * whole.x() - 1) * kPi, latitude = (whole.y() - 0.5) * kPi;
    const double scale = 1 / (2 * std::tan(81 * kPi / 180));
    if (std::abs(longitude) < kPi / 2)
        whole = {0.5 + scale * std::tan(longitude),
                 0.5 - scale * std::tan(latitude) / std::cos(longitude)};
    return {whole.x() * 2 - 0.5, whole.y() * 4 - 1.5};
}

} // namespace

std::optional<QPointF> PanoramaReference::pictureAt(double x, double y) const
{
    const PanoramaUniforms &u = uniforms;
    const double w = u.viewport.size.x(), h = u.viewport.size.y(), smaller = std::min(w, h);
    const double sx = (2 * x - 1) * w / smaller, sy = (2 * y - 1) * h / smaller;
    const int source = key.overlay ? int(B::EQUIRECTANGULAR) : key.projectionSource;

    QPointF at;
    if (source == B::STANDARD) {
        const double half = u.fov * kPi / 360;
        at = {fraction(0.5 + (sx * half + u.cameraYaw) / (2 * kPi)),
              0.5 - (sy * half - u.cameraPitch) / kPi};
    } else {
        auto d = seenAt(sx, sy, key.forceRectilinear ? int(B::RECTILINEAR) : key.projection, u);
        if (!d)
            return std::nullopt;
        if (key.forceRectilinear)
            d->y *= u.scaleCorrector;
        const auto row = [&](int r) {
            const QMatrix4x4 &m = u.matViewInverse;
            return double(m(r, 0)) * d->x + double(m(r, 1)) * d->y + double(m(r, 2)) * d->z;
        };
        const Direction world = {row(0), row(1), row(2)};
        if (source == B::CUBEMAP)
            at = cubemap(world);
        else if (source == B::FISHEYE_CIRCLE)
            at = fisheyeCircle(world, key.quarterTurn);
        else
            at = equirectangular(world);
        if (source == B::EQUIRECTANGULAR && key.restrictYawPitch && !key.overlay)
            at = {((at.x() * 2 - 1) * kPi - u.yawMin) / (double(u.yawMax) - u.yawMin),
                  (u.pitchMax - (0.5 - at.y()) * kPi) / (double(u.pitchMax) - u.pitchMin)};
    }
    if (key.flipY)
        at.setY(1 - at.y());
    if (key.overlay)
        at = ontoPanel(at);
    return QRectF(0, 0, 1, 1).contains(at) ? std::optional(at) : std::nullopt;
}

QPointF PanoramaReference::inTexture(QPointF at) const
{
    const bool second = (uniforms.eye == 1) == (key.stereoMode <= B::STEREO_3D_SIDEBYSIDE);
    const double offset = second ? 0.5 : 0;
    if (key.stereoMode == B::STEREO_3D_OVERUNDER ||
        key.stereoMode == B::STEREO_3D_OVERUNDER_INVERTED)
        return {at.x(), at.y() / 2 + offset};
    if (key.stereoMode == B::STEREO_3D_SIDEBYSIDE ||
        key.stereoMode == B::STEREO_3D_SIDEBYSIDE_INVERTED)
        return {at.x() / 2 + offset, at.y()};
    return at;
}

bool PanoramaReference::onEdge(double x, double y, const QSizeF &size) const
{
    constexpr double kJump = 0.1;
    const auto centre = pictureAt(x, y);
    for (const QPointF &step : {QPointF(-1, -1), QPointF(1, -1), QPointF(-1, 1), QPointF(1, 1)}) {
        const auto corner =
            pictureAt(x + step.x() * size.width() / 2, y + step.y() * size.height() / 2);
        if (corner.has_value() != centre.has_value())
            return true;
        if (centre &&
            std::max(std::abs((*corner - *centre).x()), std::abs((*corner - *centre).y())) > kJump)
            return true;
    }
    return false;
}

PanoramaUniforms uniformsFor(const QSize &view, float fov, const CameraAngles &angles)
{
    PanoramaUniforms uniforms;
    uniforms.matrix = QuadProgram::fullViewport();
    uniforms.viewport = viewportParameters(view, EyeLayout::Single, 1.0);
    uniforms.matViewInverse = CameraMath::matrixFromAngles(angles);
    uniforms.fov = fov;
    uniforms.cameraYaw = angles.yaw;
    uniforms.cameraPitch = angles.pitch;
    uniforms.yawMin = -CameraMath::kPi;
    uniforms.yawMax = CameraMath::kPi;
    uniforms.pitchMin = -CameraMath::kPi / 2;
    uniforms.pitchMax = CameraMath::kPi / 2;
    const shader::OrvexParameters orvex = shader::orvexParameters(fov);
    uniforms.projScale = orvex.scale;
    uniforms.projectionDistance = orvex.distance;
    return uniforms;
}

QString pixelFaults(const QImage &image, const PanoramaReference &reference, const QImage &picture,
                    QRgb background)
{
    const QSizeF pixel(1.0 / image.width(), 1.0 / image.height());
    int onEdges = 0, wrong = 0;
    QPoint first;
    for (int i = 0; i < image.width() * image.height(); ++i) {
        const QPoint here(i % image.width(), i / image.width());
        const double x = (here.x() + 0.5) * pixel.width();
        const double y = 1 - (here.y() + 0.5) * pixel.height();
        if (reference.onEdge(x, y, pixel)) {
            ++onEdges;
            continue;
        }
        double expected[4] = {double(qRed(background)), double(qGreen(background)),
                              double(qBlue(background)), double(qAlpha(background))};
        if (const auto at = reference.pictureAt(x, y)) {
            const QPointF inside = reference.inTexture(*at);
            const double tx = inside.x() * picture.width() - 0.5;
            const double ty = inside.y() * picture.height() - 0.5;
            std::fill(expected, expected + 4, 0.0);
            for (int corner = 0; corner < 4; ++corner) {
                const int px = int(std::floor(tx)) + corner % 2,
                          py = int(std::floor(ty)) + corner / 2;
                const double weight = (1 - std::abs(tx - px)) * (1 - std::abs(ty - py));
                const QRgb texel = picture.pixel(std::clamp(px, 0, picture.width() - 1),
                                                 std::clamp(py, 0, picture.height() - 1));
                const int channels[] = {qRed(texel), qGreen(texel), qBlue(texel), 255};
                for (int c = 0; c < 4; ++c)
                    expected[c] += weight * channels[c];
            }
        }
        const QRgb seen = image.pixel(here);
        const int channels[] = {qRed(seen), qGreen(seen), qBlue(seen), qAlpha(seen)};
        bool right = true;
        for (int c = 0; c < 4; ++c)
            right = right && std::abs(channels[c] - expected[c]) <= 3;
        if (!right && wrong++ == 0)
            first = here;
    }
    if (wrong == 0 && onEdges * 8 <= image.width() * image.height())
        return {};
    return QStringLiteral("%1 wrong, first at %2,%3; %4 on edges")
        .arg(wrong)
        .arg(first.x())
        .arg(first.y())
        .arg(onEdges);
}

QImage directionPattern(const QSize &size)
{
    constexpr int kAcross = 5, kDown = 7; // odd: the halves differ
    QImage image(size, QImage::Format_RGBA8888);
    for (int i = 0; i < size.width() * size.height(); ++i) {
        const int x = i % size.width(), y = i / size.width();
        const double angle = (x + 0.5) / size.width() * 2 * kPi * kAcross;
        const double zigzag = std::abs(2 * fraction((y + 0.5) / size.height() * kDown) - 1);
        image.setPixel(x, y,
                       qRgb(qRound(127.5 + 127.5 * std::cos(angle)),
                            qRound(127.5 + 127.5 * std::sin(angle)), qRound(255 * zigzag)));
    }
    return image;
}

} // namespace test

#include "render/KProjection.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kSqrtHalf = 0.7071067811865476;
constexpr double kSteep = 1.413716694115407;          // 81 degrees
constexpr double kSteepTan = 6.313751514675043;       // its tangent
constexpr double kPlaneScale = 0.07919222016226815;   // 1 / (2 tan)
constexpr double kMercatorReach = 2.5420904360605565; // ln tan(pi/4 + 81/2 degrees)
constexpr double kMercatorScale = 0.1966885178069602; // 1 / (2 reach)

constexpr KProjection::Limits kWholeSphere{-kPi / 2, kPi / 2, -kPi, kPi};
constexpr KProjection::Limits kHalfSphere{-kPi / 2, kPi / 2, -kPi / 2, kPi / 2};
constexpr KProjection::Limits kSteepBand{-kSteep, kSteep, -kPi, kPi};
constexpr KProjection::Limits kSteepWindow{-kSteep, kSteep, -kSteep, kSteep};

double wrapped(double longitude)
{
    return std::remainder(longitude, 2 * kPi);
}

/// A direction as seen from the centre of a round picture: the angle from straight ahead, and the
/// azimuth in the picture, 0 to the right and positive downwards.
struct Polar
{
    double angle;
    double azimuth;
};

Polar polarOf(double longitude, double latitude)
{
    const double right = std::cos(latitude) * std::sin(longitude);
    const double down = -std::sin(latitude);
    const double ahead = std::cos(latitude) * std::cos(longitude);
    Polar polar{std::atan2(std::hypot(right, down), ahead), std::atan2(down, right)};
    if (right == 0)
        polar.azimuth = down < 0 ? -kPi / 2 : kPi / 2;
    return polar;
}

void directionOf(const Polar &polar, double *longitude, double *latitude)
{
    *longitude = std::atan2(std::sin(polar.angle) * std::cos(polar.azimuth), std::cos(polar.angle));
    *latitude = -std::asin(std::sin(polar.angle) * std::sin(polar.azimuth));
}

/// @p radius is 1 at the middle of the square's sides.
void placeAround(double radius, double azimuth, double *x, double *y)
{
    *x = 0.5 + 0.5 * radius * std::cos(azimuth);
    *y = 0.5 + 0.5 * radius * std::sin(azimuth);
}

struct Place
{
    double radius;
    double azimuth;
};

Place placeOf(double x, double y)
{
    return {std::hypot(2 * x - 1, 2 * y - 1), std::atan2(2 * y - 1, 2 * x - 1)};
}

double withinRim(double radius)
{
    return std::min(radius, 1.0);
}

/// How far from the axis a ray lands that leaves a unit circle's centre at @p angle and is then
/// seen from @p distance behind it.
double perspective(double angle, double distance)
{
    return (1 + distance) * std::sin(angle) / (distance + std::cos(angle));
}

double perspectiveAngle(double reach, double distance)
{
    const double slope = reach / (1 + distance);
    const double sine = slope * distance / std::hypot(1.0, slope);
    return std::atan(slope) + std::asin(std::clamp(sine, -1.0, 1.0));
}

/// The direction as a frame sees it whose right is the old up, and the other way round.
void exchangeAxes(double *longitude, double *latitude)
{
    const double right = std::cos(*latitude) * std::sin(*longitude);
    const double up = std::sin(*latitude);
    const double ahead = std::cos(*latitude) * std::cos(*longitude);
    *longitude = std::atan2(up, ahead);
    *latitude = std::asin(right);
}

/// Mirrors the square at its rising diagonal: right becomes up.
void exchangeSides(double *x, double *y)
{
    const double right = *x;
    *x = 1 - *y;
    *y = 1 - right;
}

} // namespace

KProjection::KProjection(const char *name, const Limits &limits, const QVector<double> &parameters)
    : m_parameterCount(parameters.size())
    , m_parameters(parameters)
    , m_limits(limits)
    , m_name(name)
{}

KProjection::~KProjection() = default;

QVector<KProjection::ParameterInfo> KProjection::parameterInfo() const
{
    return {};
}

void KProjection::setParameter(int index, double value)
{
    if (index >= 0 && index < m_parameters.size() && std::isfinite(value))
        m_parameters[index] = value;
}

QString KProjection::dump() const
{
    QStringList lines{QStringLiteral("*** Projection : %1 ***").arg(QLatin1String(m_name))};
    lines.append(
        QStringLiteral("latitude %1 to %2").arg(m_limits.minLatitude).arg(m_limits.maxLatitude));
    lines.append(
        QStringLiteral("longitude %1 to %2").arg(m_limits.minLongitude).arg(m_limits.maxLongitude));
    const QVector<ParameterInfo> info = parameterInfo();
    for (int i = 0; i < info.size(); ++i)
        lines.append(QStringLiteral("%1 %2").arg(info.at(i).name).arg(parameter(i)));
    return lines.join(QLatin1Char('\n'));
}

void KProjection::clamp(double *longitude, double *latitude) const
{
    *longitude = std::clamp(*longitude, m_limits.minLongitude, m_limits.maxLongitude);
    *latitude = std::clamp(*latitude, m_limits.minLatitude, m_limits.maxLatitude);
}

void KProjection::wrap(double *longitude, double *latitude) const
{
    if (*longitude < m_limits.minLongitude)
        *longitude += 2 * kPi;
    if (*longitude > m_limits.maxLongitude)
        *longitude -= 2 * kPi;
    *latitude = std::clamp(*latitude, m_limits.minLatitude, m_limits.maxLatitude);
}

Equirect::Equirect()
    : KProjection("Equirect", kWholeSphere)
{}

void Equirect::forward(double longitude, double latitude, double *x, double *y) const
{
    wrap(&longitude, &latitude);
    *x = (longitude / kPi + 1) / 2;
    *y = (kPi / 2 - latitude) / kPi;
}

void Equirect::inverse(double x, double y, double *longitude, double *latitude) const
{
    *longitude = (2 * x - 1) * kPi;
    *latitude = kPi / 2 - kPi * y;
}

void Equirect::getExtent(double *width, double *height) const
{
    *width = 2 * kPi;
    *height = kPi;
}

Cylindrical::Cylindrical()
    : KProjection("Cylindrical", kSteepBand)
{}

void Cylindrical::forward(double longitude, double latitude, double *x, double *y) const
{
    wrap(&longitude, &latitude);
    *x = (longitude / kPi + 1) / 2;
    *y = 0.5 - kPlaneScale * std::tan(latitude);
}

void Cylindrical::inverse(double x, double y, double *longitude, double *latitude) const
{
    *longitude = (2 * x - 1) * kPi;
    *latitude = std::atan((1 - 2 * y) * kSteepTan);
}

void Cylindrical::getExtent(double *width, double *height) const
{
    *width = 2 * kPi;
    *height = 2 * kSteepTan;
}

Planar::Planar()
    : KProjection("Planar", kSteepWindow, {0.0})
{}

void Planar::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    *x = 0.5 + kPlaneScale * std::tan(longitude);
    *y = 0.5 - kPlaneScale * std::tan(latitude) / std::cos(longitude);
}

void Planar::inverse(double x, double y, double *longitude, double *latitude) const
{
    *longitude = std::atan((x - 0.5) / kPlaneScale);
    *latitude = std::atan((0.5 - y) / kPlaneScale * std::cos(*longitude));
}

QVector<KProjection::ParameterInfo> Planar::parameterInfo() const
{
    return {{QStringLiteral("distance"), 0, 0}};
}

void Planar::getExtent(double *width, double *height) const
{
    *width = *height = 2 * kSteepTan;
}

Mercator::Mercator()
    : KProjection("Mercator", kSteepBand)
{}

void Mercator::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    *x = (longitude / kPi + 1) / 2;
    *y = (kMercatorReach - std::log(std::tan(latitude / 2 + kPi / 4))) * kMercatorScale;
}

void Mercator::inverse(double x, double y, double *longitude, double *latitude) const
{
    *longitude = 2 * kPi * x - kPi;
    *latitude = 2 * std::atan(std::exp(kMercatorReach - y / kMercatorScale)) - kPi / 2;
}

void Mercator::getExtent(double *width, double *height) const
{
    *width = 2 * kPi;
    *height = 2 * kMercatorReach;
}

MirrorBall::MirrorBall()
    : KProjection("MirrorBall", kWholeSphere)
{}

void MirrorBall::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const Polar polar = polarOf(longitude, latitude);
    placeAround(std::sin(polar.angle / 2), polar.azimuth, x, y);
}

void MirrorBall::inverse(double x, double y, double *longitude, double *latitude) const
{
    const Place place = placeOf(x, y);
    directionOf({2 * std::asin(withinRim(place.radius)), place.azimuth}, longitude, latitude);
}

void MirrorBall::getExtent(double *width, double *height) const
{
    *width = *height = 4;
}

Hammer::Hammer()
    : KProjection("Hammer", kWholeSphere)
{}

void Hammer::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const double d = std::sqrt(2.0) / std::sqrt(std::cos(latitude) * std::cos(longitude / 2) + 1);
    const double rawX = 2 * std::cos(latitude) * std::sin(longitude / 2) * d;
    const double rawY = -std::sin(latitude) * d;
    *x = rawX * 0.25 * kSqrtHalf + 0.5;
    *y = rawY * 0.5 * kSqrtHalf + 0.5;
}

void Hammer::inverse(double x, double y, double *longitude, double *latitude) const
{
    const Place place = placeOf(x, y);
    const double radius = withinRim(place.radius);
    // A quarter of the raw x and half of the raw y: at the rim their hypotenuse is sqrt(1/2).
    const double right = radius * std::cos(place.azimuth) * kSqrtHalf;
    const double up = -radius * std::sin(place.azimuth) * kSqrtHalf;
    const double z = std::sqrt(1 - right * right - up * up);
    *longitude = 2 * std::atan2(2 * z * right, 2 * z * z - 1);
    *latitude = std::asin(std::clamp(2 * z * up, -1.0, 1.0));
}

void Hammer::getExtent(double *width, double *height) const
{
    *width = 4 * std::sqrt(2.0);
    *height = 2 * std::sqrt(2.0);
}

Orthographic::Orthographic()
    : KProjection("Orthographic", kHalfSphere)
{}

void Orthographic::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const Polar polar = polarOf(longitude, latitude);
    placeAround(std::sin(polar.angle), polar.azimuth, x, y);
}

void Orthographic::inverse(double x, double y, double *longitude, double *latitude) const
{
    const Place place = placeOf(x, y);
    directionOf({std::asin(withinRim(place.radius)), place.azimuth}, longitude, latitude);
}

void Orthographic::getExtent(double *width, double *height) const
{
    *width = *height = 2;
}

Stereographic::Stereographic()
    : KProjection("Stereographic", kHalfSphere)
{}

void Stereographic::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const Polar polar = polarOf(longitude, latitude);
    placeAround(std::tan(polar.angle / 2), polar.azimuth, x, y);
}

void Stereographic::inverse(double x, double y, double *longitude, double *latitude) const
{
    const Place place = placeOf(x, y);
    directionOf({2 * std::atan(withinRim(place.radius)), place.azimuth}, longitude, latitude);
}

void Stereographic::getExtent(double *width, double *height) const
{
    *width = *height = 4;
}

Panini::Panini()
    : KProjection("Panini", kSteepWindow, {1.0})
{}

void Panini::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const double distance = std::abs(parameter(0));
    if (!keepsVerticals())
        exchangeAxes(&longitude, &latitude);
    const double halfWidth = perspective(kSteep, distance);
    const double stretch = (1 + distance) / (distance + std::cos(longitude));
    *x = 0.5 + 0.5 * perspective(longitude, distance) / halfWidth;
    *y = 0.5 - kPlaneScale * stretch * std::tan(latitude);
    if (!keepsVerticals())
        exchangeSides(x, y);
}

void Panini::inverse(double x, double y, double *longitude, double *latitude) const
{
    const double distance = std::abs(parameter(0));
    if (!keepsVerticals())
        exchangeSides(&x, &y);
    const double halfWidth = perspective(kSteep, distance);
    *longitude = perspectiveAngle((2 * x - 1) * halfWidth, distance);
    const double stretch = (1 + distance) / (distance + std::cos(*longitude));
    *latitude = std::atan((0.5 - y) / kPlaneScale / stretch);
    if (!keepsVerticals())
        exchangeAxes(longitude, latitude);
}

QVector<KProjection::ParameterInfo> Panini::parameterInfo() const
{
    return {{QStringLiteral("distance"), -1, 1}};
}

void Panini::getExtent(double *width, double *height) const
{
    *width = 2 * perspective(kSteep, std::abs(parameter(0)));
    *height = 2 * kSteepTan;
    if (!keepsVerticals())
        std::swap(*width, *height);
}

Azimutal::Azimutal()
    : KProjection("Azimutal", kSteepWindow, {1.0})
{}

void Azimutal::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const double distance = std::max(parameter(0), 0.0);
    const Polar polar = polarOf(longitude, latitude);
    placeAround(perspective(polar.angle, distance) / perspective(kSteep, distance), polar.azimuth,
                x, y);
}

void Azimutal::inverse(double x, double y, double *longitude, double *latitude) const
{
    const double distance = std::max(parameter(0), 0.0);
    const Place place = placeOf(x, y);
    directionOf(
        {perspectiveAngle(place.radius * perspective(kSteep, distance), distance), place.azimuth},
        longitude, latitude);
}

QVector<KProjection::ParameterInfo> Azimutal::parameterInfo() const
{
    return {{QStringLiteral("distance"), 0, 1}};
}

void Azimutal::getExtent(double *width, double *height) const
{
    *width = *height = 2 * perspective(kSteep, std::max(parameter(0), 0.0));
}

Fisheye::Fisheye()
    : KProjection("Fisheye", kHalfSphere)
{}

void Fisheye::forward(double longitude, double latitude, double *x, double *y) const
{
    clamp(&longitude, &latitude);
    const Polar polar = polarOf(longitude, latitude);
    placeAround(polar.angle / (kPi / 2), polar.azimuth, x, y);
}

void Fisheye::inverse(double x, double y, double *longitude, double *latitude) const
{
    const Place place = placeOf(x, y);
    directionOf({withinRim(place.radius) * kPi / 2, place.azimuth}, longitude, latitude);
}

void Fisheye::getExtent(double *width, double *height) const
{
    *width = *height = kPi;
}

Twist::Twist()
    : KProjection("Twist", kWholeSphere)
{}

void Twist::forward(double longitude, double latitude, double *x, double *y) const
{
    wrap(&longitude, &latitude);
    *x = (wrapped(longitude + latitude) / kPi + 1) / 2;
    *y = (kPi / 2 - latitude) / kPi;
}

void Twist::inverse(double x, double y, double *longitude, double *latitude) const
{
    *latitude = kPi / 2 - kPi * y;
    *longitude = wrapped((2 * x - 1) * kPi - *latitude);
}

void Twist::getExtent(double *width, double *height) const
{
    *width = 2 * kPi;
    *height = kPi;
}

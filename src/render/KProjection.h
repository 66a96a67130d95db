#pragma once

// Maps between directions on the sphere and points of a flat picture, on the processor; the shaders
// have formulas of their own. Values owned by whoever computes, on any thread.
//
// A direction is longitude (positive to the right of straight ahead) and latitude (positive up), in
// radians. A point lies in the unit square of the picture, (0, 0) its top left corner; a member's
// limits are what its picture spans. Formulas not cited otherwise: J. P. Snyder, "Map Projections -
// A Working Manual", U.S. Geological Survey Professional Paper 1395, 1987.

#include <QString>
#include <QVector>

class KProjection
{
public:
    struct Limits
    {
        double minLatitude, maxLatitude, minLongitude, maxLongitude; // radians
    };

    struct ParameterInfo
    {
        QString name;
        double minimum, maximum;
    };

    virtual ~KProjection();

    /// The point of a direction. Longitude and latitude are clamped to the limits first; members
    /// that go all the way round wrap the longitude by one turn instead. A member without a rim
    /// of its own (Planar, Panini, Azimutal) puts the corners of its limits beyond the square.
    virtual void forward(double longitude, double latitude, double *x, double *y) const = 0;

    /// The direction of a point; beyond the rim of a round picture, that of the rim.
    virtual void inverse(double x, double y, double *longitude, double *latitude) const = 0;

    /// What setParameter() takes, in its order.
    virtual QVector<ParameterInfo> parameterInfo() const;

    /// An index that does not exist and a value that is no number are ignored.
    virtual void setParameter(int index, double value);

    /// Width and height of the picture at the scale of its centre, radians.
    virtual void getExtent(double *width, double *height) const = 0;

    virtual bool isFullLongitude() const { return false; }
    virtual bool isFullLatitude() const { return false; }
    /// Columns of the picture are meridians: what is upright in the world is so in the picture.
    virtual bool keepsVerticals() const { return false; }

    int parameterCount() const { return m_parameterCount; }
    double parameter(int index) const { return m_parameters.value(index); }
    const Limits &limits() const { return m_limits; }

    /// For traces: the member's name, its limits and parameters, a line each.
    QString dump() const;

protected:
    KProjection(const char *name, const Limits &limits, const QVector<double> &parameters = {});
    KProjection(const KProjection &) = default;
    KProjection &operator=(const KProjection &) = default;

    /// Brings a direction into the limits.
    void clamp(double *longitude, double *latitude) const;
    /// The same for members that go all the way round.
    void wrap(double *longitude, double *latitude) const;

private:
    int m_parameterCount;
    QVector<double> m_parameters;
    Limits m_limits;
    const char *m_name;
};

/// Longitude and latitude as they are (equidistant cylindrical).
class Equirect : public KProjection
{
public:
    Equirect();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
    bool isFullLongitude() const override { return true; }
    bool isFullLatitude() const override { return true; }
    bool keepsVerticals() const override { return true; }
};

/// Onto an upright cylinder, from its centre (central cylindrical), to 81 degrees up and down.
class Cylindrical : public KProjection
{
public:
    Cylindrical();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
    bool isFullLongitude() const override { return true; }
    bool keepsVerticals() const override { return true; }
};

/// Onto a plane, from the centre (gnomonic), to 81 degrees on each side.
class Planar : public KProjection
{
public:
    Planar();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    /// The distance of Panini and Azimutal, which is 0 here and which no formula reads.
    QVector<ParameterInfo> parameterInfo() const override;
    void getExtent(double *width, double *height) const override;
    bool keepsVerticals() const override { return true; }
};

/// Conformal on an upright cylinder, to 81 degrees up and down; the longitude does not wrap.
class Mercator : public KProjection
{
public:
    Mercator();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
    bool isFullLongitude() const override { return true; }
    bool keepsVerticals() const override { return true; }
};

/// What a mirroring ball shows of the world (Lambert azimuthal equal-area): straight ahead is the
/// centre, straight behind the whole rim.
class MirrorBall : public KProjection
{
public:
    MirrorBall();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
    bool isFullLatitude() const override { return true; }
};

/// The whole sphere at equal areas in an ellipse (Hammer-Aitoff).
class Hammer : public KProjection
{
public:
    Hammer();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
};

/// The half sphere ahead, seen from infinitely far.
class Orthographic : public KProjection
{
public:
    Orthographic();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
};

/// The half sphere ahead, seen from the sphere's farthest point.
class Stereographic : public KProjection
{
public:
    Stereographic();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
};

/// Onto a cylinder, then from a point behind its axis onto a plane, to 81 degrees on each side
/// (T. K. Sharpless, B. Postle, D. M. German, "Pannini: a new projection for rendering wide angle
/// perspective images", 2010). The parameter is the distance of that point, 1 at first: 0 gives
/// Planar. A negative one lays the cylinder down, for pictures that are tall.
class Panini : public KProjection
{
public:
    Panini();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    QVector<ParameterInfo> parameterInfo() const override;
    void getExtent(double *width, double *height) const override;
    bool keepsVerticals() const override { return parameter(0) >= 0; }
};

/// From a point behind the sphere's centre onto a plane (vertical perspective), to 81 degrees on
/// each side. The parameter is the distance of that point, 1 at first: 0 gives Planar, 1 the
/// stereographic projection. Negative ones count as 0.
class Azimutal : public KProjection
{
public:
    Azimutal();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    QVector<ParameterInfo> parameterInfo() const override;
    void getExtent(double *width, double *height) const override;
    bool keepsVerticals() const override { return parameter(0) <= 0; }
};

/// The half sphere ahead at distances proportional to the angle (azimuthal equidistant).
class Fisheye : public KProjection
{
public:
    Fisheye();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
};

/// Equirect of a sphere twisted about its upright axis by one radian for each radian of latitude
/// (A. H. Barr, "Global and local deformations of solid primitives", SIGGRAPH 1984).
class Twist : public KProjection
{
public:
    Twist();
    void forward(double longitude, double latitude, double *x, double *y) const override;
    void inverse(double x, double y, double *longitude, double *latitude) const override;
    void getExtent(double *width, double *height) const override;
    bool isFullLongitude() const override { return true; }
    bool isFullLatitude() const override { return true; }
};

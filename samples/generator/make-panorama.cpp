// Draws the sample panorama: a plaza between hills with a coloured cube in each of the four
// directions, a compass on the ground, and labelled meridians and parallels, so that one sees at
// once where one looks and whether the picture stands upright and unmirrored.
//
// Usage: make-panorama OUTPUT WIDTH   (equirectangular, WIDTH by WIDTH / 2; yaw 0 in the middle)

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kPi = 3.14159265358979323846;

struct Vec
{
    double x, y, z;
};
Vec operator+(Vec a, Vec b)
{
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
Vec operator-(Vec a, Vec b)
{
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
Vec operator*(Vec a, double s)
{
    return {a.x * s, a.y * s, a.z * s};
}
Vec operator*(Vec a, Vec b)
{
    return {a.x * b.x, a.y * b.y, a.z * b.z};
}
double dot(Vec a, Vec b)
{
    return a.x * b.x + a.y * b.y + a.z * b.z;
}
Vec unit(Vec a)
{
    return a * (1 / std::sqrt(dot(a, a)));
}
Vec mix(Vec a, Vec b, double t)
{
    return a * (1 - t) + b * t;
}
double step(double from, double to, double v)
{
    const double t = std::clamp((v - from) / (to - from), 0.0, 1.0);
    return t * t * (3 - 2 * t);
}
Vec rgb(unsigned c)
{
    return {((c >> 16) & 255) / 255.0, ((c >> 8) & 255) / 255.0, (c & 255) / 255.0};
}

double hash(int x, int y, int z)
{
    unsigned h = unsigned(x) * 374761393U + unsigned(y) * 668265263U + unsigned(z) * 2246822519U;
    h = (h ^ (h >> 13)) * 1274126177U;
    return ((h ^ (h >> 16)) & 0xFFFFFF) / double(0xFFFFFF);
}

double noise(Vec p)
{
    const int x = int(std::floor(p.x)), y = int(std::floor(p.y)), z = int(std::floor(p.z));
    const auto ease = [](double t) { return t * t * (3 - 2 * t); };
    const double u = ease(p.x - x), v = ease(p.y - y), w = ease(p.z - z);
    const auto lerp = [](double a, double b, double t) { return a + (b - a) * t; };
    const auto row = [&](int dy, int dz) {
        return lerp(hash(x, y + dy, z + dz), hash(x + 1, y + dy, z + dz), u);
    };
    return lerp(lerp(row(0, 0), row(1, 0), v), lerp(row(0, 1), row(1, 1), v), w);
}

double fractal(Vec p, int octaves)
{
    double sum = 0, weight = 0.5;
    for (int i = 0; i < octaves; ++i, weight /= 2, p = p * 2.03)
        sum += weight * noise(p);
    return sum;
}

// Right-handed frame: x right, y up, looking along -z at yaw 0.
const Vec kSun = unit({0.75, 0.62, -0.55});
constexpr double kEyeHeight = 1.7;

struct Box
{
    Vec centre;
    double half;
    Vec colour;
};
const Box kBoxes[] = {{{0, 1.3 - kEyeHeight, -9}, 1.3, rgb(0xE4453A)},
                      {{9, 1.3 - kEyeHeight, 0}, 1.3, rgb(0x3FA34D)},
                      {{0, 1.3 - kEyeHeight, 9}, 1.3, rgb(0x2F6FDE)},
                      {{-9, 1.3 - kEyeHeight, 0}, 1.3, rgb(0xF2B632)}};

/// Distance along @p d from @p o to the box, or -1; @p normal of the side that is hit.
double hitBox(const Box &box, Vec o, Vec d, Vec *normal, double *edge)
{
    const Vec p = o - box.centre;
    const double ps[3] = {p.x, p.y, p.z}, ds[3] = {d.x, d.y, d.z};
    double near = -1e30, far = 1e30;
    int axis = 0;
    for (int i = 0; i < 3; ++i) {
        const double inverse = 1 / (std::abs(ds[i]) < 1e-12 ? 1e-12 : ds[i]);
        double a = (-box.half - ps[i]) * inverse, b = (box.half - ps[i]) * inverse;
        if (a > b)
            std::swap(a, b);
        if (a > near) {
            near = a;
            axis = i;
        }
        far = std::min(far, b);
    }
    if (near > far || near < 1e-6)
        return -1;
    if (normal) {
        const double s = ds[axis] > 0 ? -1 : 1;
        *normal = {axis == 0 ? s : 0, axis == 1 ? s : 0, axis == 2 ? s : 0};
        const Vec h = p + d * near;
        const double hs[3] = {h.x, h.y, h.z};
        double rim = 1;
        for (int i = 0; i < 3; ++i) {
            if (i != axis)
                rim = std::min(rim, box.half - std::abs(hs[i]));
        }
        *edge = rim;
    }
    return near;
}

Vec sky(Vec d)
{
    const double height = std::max(d.y, 0.0);
    Vec colour = mix(rgb(0xF6D9B8), rgb(0x8CBCE8), step(0, 0.28, height));
    colour = mix(colour, rgb(0x2A62B8), step(0.2, 1.0, height));
    const double sun = std::max(dot(d, kSun), 0.0);
    colour = colour + rgb(0xFFE2A8) * (0.35 * std::pow(sun, 24) + 0.5 * std::pow(sun, 400));
    colour = mix(colour, {1, 0.98, 0.9}, step(0.9985, 0.9991, sun));
    const Vec p{d.x / (height + 0.18) * 1.3, 4, d.z / (height + 0.18) * 1.3};
    const double cover = step(0.47, 0.72, fractal(p, 6)) * step(0.02, 0.25, height);
    const double lit = 0.82 + 0.25 * (fractal(p + Vec{0.25, 0, -0.2}, 4) - 0.5);
    return mix(colour, Vec{lit, lit, lit * 1.02}, 0.85 * cover);
}

/// Height of a range of hills above the horizon; periodic, since it follows a circle.
double ridge(double yaw, double radius, double seed, double height)
{
    const double n = fractal({std::cos(yaw) * radius, seed, std::sin(yaw) * radius}, 6);
    return height * (0.25 + 1.3 * std::max(n - 0.28, 0.0));
}

bool inShadow(Vec p)
{
    return std::any_of(std::begin(kBoxes), std::end(kBoxes),
                       [&](const Box &box) { return hitBox(box, p, kSun, nullptr, nullptr) > 0; });
}

Vec ground(Vec p, Vec d)
{
    const double radius = std::hypot(p.x, p.z);
    const double yaw = std::atan2(p.x, -p.z);
    const Vec fine{p.x * 3, 0, p.z * 3};
    Vec colour = mix(rgb(0x55732F), rgb(0x8DA14B), fractal({p.x * 0.4, 1, p.z * 0.4}, 5) * 1.2);
    colour = colour * (0.85 + 0.3 * noise(fine * 3));
    if (radius < 13) {
        const int ring = int(radius / 1.3);
        const int stones = std::max(6, ring * 10);
        const double angle = (yaw / (2 * kPi) + 0.5 + ring * 0.037) * stones;
        const double tone = 0.9 + 0.18 * (hash(ring, int(angle), 7) - 0.5);
        const double joint = std::min({std::fmod(radius, 1.3), 1.3 - std::fmod(radius, 1.3),
                                       (angle - std::floor(angle)) * 2 * kPi * radius / stones});
        colour = rgb(0xC9BBA3) * tone * (0.93 + 0.12 * noise(fine * 4));
        colour = colour * (joint < 0.035 ? 0.72 : 1.0);
        if (radius > 12.4)
            colour = rgb(0x8F8472) * tone;
        // Compass: four long and four short points; the red one shows yaw 0.
        if (radius < 4.2) {
            const double sector = std::remainder(yaw, kPi / 2);
            const double half = std::remainder(yaw + kPi / 4, kPi / 2);
            const auto inPoint = [radius](double a, double length, double width) {
                return std::abs(a) < width * (1 - radius / length) && radius < length;
            };
            if (inPoint(half, 2.6, 0.45))
                colour = half > 0 ? rgb(0x6F6A62) : rgb(0xE9E2D3);
            if (inPoint(sector, 4.1, 0.6)) {
                const bool front = std::abs(yaw) < kPi / 4;
                colour = sector > 0 ? rgb(front ? 0xA51E17 : 0x2B3440)
                                    : rgb(front ? 0xE4453A : 0xF4EFE4);
            }
            if (radius < 0.35)
                colour = rgb(0xD9A441);
        }
    }
    const double light = inShadow(p) ? 0.5 : 1.0;
    colour = colour * Vec{light, light, light + (light < 1 ? 0.08 : 0)};
    const double haze = 1 - std::exp(-radius / 260);
    return mix(colour, sky({d.x, 0.02, d.z}), haze);
}

Vec trace(Vec d)
{
    double nearest = 1e30;
    Vec colour{0, 0, 0};
    for (const Box &box : kBoxes) {
        Vec normal{0, 1, 0};
        double edge = 1;
        const double t = hitBox(box, {0, 0, 0}, d, &normal, &edge);
        if (t < 0 || t > nearest)
            continue;
        nearest = t;
        const double light = 0.55 + 0.45 * std::max(dot(normal, kSun), 0.0);
        colour = edge < 0.07 ? mix(box.colour, {1, 1, 1}, 0.55) * light : box.colour * light;
    }
    if (nearest < 1e30)
        return colour;
    const double yaw = std::atan2(d.x, -d.z);
    const double pitch = std::asin(std::clamp(d.y, -1.0, 1.0));
    if (d.y < 0)
        return ground(d * (-kEyeHeight / d.y), d);
    const struct
    {
        double radius, seed, height;
        unsigned colour;
    } ranges[] = {{3, 9, 0.10, 0x4C5F3A}, {2.2, 5, 0.17, 0x6E8494}, {1.6, 2, 0.24, 0x9DB2C6}};
    for (const auto &range : ranges) {
        const double top = ridge(yaw, range.radius, range.seed, range.height);
        if (pitch < top) {
            const double shade = 0.86 + 0.3 * fractal({yaw * 30, pitch * 60, range.seed}, 4);
            return mix(rgb(range.colour) * shade, rgb(0xE9D9C4), 0.35 * (1 - pitch / top));
        }
    }
    return sky(d);
}

void drawText(QPainter &painter, double x, double y, const QString &text, int pixels, bool bold)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(pixels);
    font.setBold(bold);
    painter.setFont(font);
    const QRectF box = QRectF(0, 0, 4000, pixels * 1.4).translated(x - 2000, y - pixels * 0.7);
    painter.setPen(QColor(0, 0, 0, 170));
    painter.drawText(box.translated(pixels * 0.06, pixels * 0.06), Qt::AlignCenter, text);
    painter.setPen(QColor(255, 255, 255, 235));
    painter.drawText(box, Qt::AlignCenter, text);
}

void drawGraticule(QImage &image)
{
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double w = image.width(), h = image.height();
    const double unitLength = w / 4096;
    for (int degree = -180; degree < 180; degree += 30) {
        const double x = (degree / 360.0 + 0.5) * w;
        painter.setPen(QPen(QColor(255, 255, 255, degree % 90 ? 70 : 130), 2 * unitLength));
        painter.drawLine(QPointF(x, h / 12), QPointF(x, h * 11 / 12));
    }
    for (int degree = -60; degree <= 60; degree += 30) {
        const double y = (0.5 - degree / 180.0) * h;
        painter.setPen(QPen(QColor(255, 255, 255, degree ? 70 : 130), 2 * unitLength));
        painter.drawLine(QPointF(0, y), QPointF(w, y));
    }
    const auto sign = [](int degree) {
        return QStringLiteral("%1%2°")
            .arg(degree > 0 ? QStringLiteral("+") : QString())
            .arg(degree);
    };
    for (int degree = -150; degree <= 180; degree += 30) {
        // The label of the meridian behind the viewer is drawn on both sides of the seam.
        for (const double x : {(degree / 360.0 + 0.5) * w, (degree / 360.0 - 0.5) * w}) {
            drawText(painter, x, h * 0.5 - 26 * unitLength, sign(degree), int(34 * unitLength),
                     false);
            if (degree % 90)
                continue;
            for (int parallel = -60; parallel <= 60; parallel += 30) {
                if (parallel) {
                    drawText(painter, x, (0.5 - parallel / 180.0) * h, sign(parallel),
                             int(30 * unitLength), false);
                }
            }
        }
    }
    const struct
    {
        double degree;
        const char *name;
    } sides[] = {{0, "FRONT"}, {90, "RIGHT"}, {180, "BACK"}, {-180, "BACK"}, {-90, "LEFT"}};
    for (const auto &side : sides) {
        const double x = (side.degree / 360 + 0.5) * w;
        drawText(painter, x, h * 0.5 + 20 * unitLength, QLatin1String(side.name),
                 int(58 * unitLength), true);
    }
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    const int width = argc == 3 ? std::atoi(argv[2]) : 0;
    if (width < 64 || width > 16384 || width % 2) {
        std::fprintf(stderr, "usage: make-panorama OUTPUT WIDTH\n");
        return 2;
    }
    const int height = width / 2;
    QImage image(width, height, QImage::Format_RGB32);
    constexpr int kSamples = 2; // on each axis
#pragma omp parallel for schedule(dynamic, 8)
    for (int y = 0; y < height; ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.bits() + y * image.bytesPerLine());
        for (int x = 0; x < width; ++x) {
            Vec sum{0, 0, 0};
            for (int s = 0; s < kSamples * kSamples; ++s) {
                const double u = (x + (s % kSamples + 0.5) / kSamples) / width;
                const double v = (y + (s / kSamples + 0.5) / kSamples) / height;
                const double yaw = (u - 0.5) * 2 * kPi, pitch = (0.5 - v) * kPi;
                sum = sum + trace({std::sin(yaw) * std::cos(pitch), std::sin(pitch),
                                   -std::cos(yaw) * std::cos(pitch)});
            }
            const auto level = [](double value) {
                return int(std::clamp(value / (kSamples * kSamples), 0.0, 1.0) * 255 + 0.5);
            };
            line[x] = qRgb(level(sum.x), level(sum.y), level(sum.z));
        }
    }
    drawGraticule(image);
    if (!image.save(QString::fromLocal8Bit(argv[1]), nullptr, 88)) {
        std::fprintf(stderr, "cannot write %s\n", argv[1]);
        return 1;
    }
    return 0;
}

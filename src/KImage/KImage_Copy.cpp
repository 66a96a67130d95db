#include "KImage/KImage_Copy.h"

#include "KImage/KImageErrors.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace KImage_Copy {

namespace {

/// sRGB transfer curve (IEC 61966-2-1) from linear light and back, both on 0 to 1.
double encoded(double linear)
{
    return linear <= 0.0031308 ? 12.92 * linear : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
}

double decoded(double value)
{
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

/// Fine enough that no 8-bit value is off by more than a rounding.
constexpr int kCurveSteps = 1 << 16;

const std::array<quint16, kCurveSteps + 1> &encodeCurve()
{
    static const auto curve = [] {
        std::array<quint16, kCurveSteps + 1> values{};
        for (int i = 0; i <= kCurveSteps; ++i)
            values[std::size_t(i)] = quint16(std::lround(encoded(double(i) / kCurveSteps) * 65535));
        return values;
    }();
    return curve;
}

const std::array<float, 65536> &decodeCurve()
{
    static const auto curve = [] {
        std::array<float, 65536> values{};
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = float(decoded(double(i) / 65535));
        return values;
    }();
    return curve;
}

/// Colour values between source and target: 8 bits where both ends have no more, 16 bits of the
/// sRGB curve between integers, linear floats where both ends are floats.
template <class Value>
struct Colour
{
    Value red;
    Value green;
    Value blue;
    Value alpha;
};

template <class To, class From>
To channel(From value)
{
    if constexpr (std::is_same_v<To, From>)
        return value;
    else if constexpr (std::is_same_v<To, quint8> && std::is_same_v<From, quint16>)
        return quint8((value * 255U + 32895U) >> 16); // rounds v / 257
    else if constexpr (std::is_same_v<To, quint16> && std::is_same_v<From, quint8>)
        return quint16(value * 257U);
    else if constexpr (std::is_same_v<From, float>) {
        // Written so that no-numbers become 0.
        const float cut = value > 0.0F ? std::min(value, 1.0F) : 0.0F;
        return channel<To>(encodeCurve()[std::size_t(cut * kCurveSteps + 0.5F)]);
    } else
        return decodeCurve()[channel<quint16>(value)];
}

/// Alpha has no curve.
template <class To, class From>
To alphaChannel(From value)
{
    if constexpr (std::is_same_v<To, From> ||
                  (!std::is_same_v<To, float> && !std::is_same_v<From, float>))
        return channel<To>(value);
    else if constexpr (std::is_same_v<From, float>) {
        const float cut = value > 0.0F ? std::min(value, 1.0F) : 0.0F;
        return To(cut * float(std::numeric_limits<To>::max()) + 0.5F);
    } else
        return float(value) / float(std::numeric_limits<From>::max());
}

template <class Value>
constexpr Value opaque()
{
    if constexpr (std::is_same_v<Value, float>)
        return 1.0F;
    else
        return std::numeric_limits<Value>::max();
}

template <class Value>
Value grayOf(const Colour<Value> &colour)
{
    // The integer weights are 65536 times those of the floats.
    if constexpr (std::is_same_v<Value, float>)
        return 0.2126F * colour.red + 0.7152F * colour.green + 0.0722F * colour.blue;
    else
        return Value((13933U * colour.red + 46871U * colour.green + 4732U * colour.blue + 32768U) >>
                     16);
}

quint8 multiplied(quint8 value, quint8 alpha)
{
    return quint8((value * alpha + 127) / 255);
}

quint8 divided(quint8 value, quint8 alpha)
{
    return alpha == 0 ? 0 : quint8(std::min((value * 255 + alpha / 2) / alpha, 255));
}

template <class Value, int Channels>
struct Straight
{
    using Channel = Value;
    static constexpr int channels = Channels;

    static Colour<Value> read(const Value *pixel)
    {
        if constexpr (Channels == 1)
            return {pixel[0], pixel[0], pixel[0], opaque<Value>()};
        else if constexpr (Channels == 3)
            return {pixel[0], pixel[1], pixel[2], opaque<Value>()};
        else
            return {pixel[0], pixel[1], pixel[2], pixel[3]};
    }
    static void write(Value *pixel, const Colour<Value> &colour)
    {
        if constexpr (Channels == 1) {
            pixel[0] = grayOf(colour);
        } else {
            pixel[0] = colour.red;
            pixel[1] = colour.green;
            pixel[2] = colour.blue;
            if constexpr (Channels == 4)
                pixel[3] = colour.alpha;
        }
    }
};

struct BgraPremultiplied
{
    using Channel = quint8;
    static constexpr int channels = 4;

    static Colour<quint8> read(const quint8 *pixel)
    {
        const quint8 alpha = pixel[3];
        if (alpha == 255)
            return {pixel[2], pixel[1], pixel[0], alpha};
        return {divided(pixel[2], alpha), divided(pixel[1], alpha), divided(pixel[0], alpha),
                alpha};
    }
    static void write(quint8 *pixel, const Colour<quint8> &colour)
    {
        pixel[0] = multiplied(colour.blue, colour.alpha);
        pixel[1] = multiplied(colour.green, colour.alpha);
        pixel[2] = multiplied(colour.red, colour.alpha);
        pixel[3] = colour.alpha;
    }
};

/// Calls @p function with the layout type of @p format.
template <class Function>
void withLayout(PixelFormat format, Function function)
{
    switch (format) {
    case PixelFormat::Gray8:
        return function(Straight<quint8, 1>());
    case PixelFormat::Rgb8:
        return function(Straight<quint8, 3>());
    case PixelFormat::Rgba8:
        return function(Straight<quint8, 4>());
    case PixelFormat::Bgra8Premultiplied:
        return function(BgraPremultiplied());
    case PixelFormat::Gray16:
        return function(Straight<quint16, 1>());
    case PixelFormat::Rgb16:
        return function(Straight<quint16, 3>());
    case PixelFormat::Rgba16:
        return function(Straight<quint16, 4>());
    case PixelFormat::GrayFloat:
        return function(Straight<float, 1>());
    case PixelFormat::RgbFloat:
        return function(Straight<float, 3>());
    case PixelFormat::RgbaFloat:
        return function(Straight<float, 4>());
    }
}

template <class Source, class Target>
void convertRow(const typename Source::Channel *source, typename Target::Channel *target, int width)
{
    using To = typename Target::Channel;
    for (int x = 0; x < width; ++x) {
        const auto from = Source::read(source);
        Target::write(target, {channel<To>(from.red), channel<To>(from.green),
                               channel<To>(from.blue), alphaChannel<To>(from.alpha)});
        source += Source::channels;
        target += Target::channels;
    }
}

enum class Order { Rgba, Bgra };

/// An opaque pixel in memory order from 0x00BBGGRR.
template <Order order>
quint32 opaquePixel(quint32 rgb)
{
    if constexpr (order == Order::Rgba)
        return rgb | 0xFF000000U;
    else
        return qbswap(rgb << 8) | 0xFF000000U;
}

/// The usual way of a photograph to the screen, four pixels at a time: nothing to multiply.
template <Order order>
void widenRow(const uchar *source, uchar *target, int width)
{
    constexpr int kStep = 4;
    int x = 0;
    for (; x + kStep <= width; x += kStep) {
        quint32 words[3];
        for (int i = 0; i < 3; ++i)
            words[i] = qFromLittleEndian<quint32>(source + 4 * i);
        const quint32 pixels[kStep] = {
            opaquePixel<order>(words[0] & 0xFFFFFFU),
            opaquePixel<order>((words[0] >> 24 | words[1] << 8) & 0xFFFFFFU),
            opaquePixel<order>((words[1] >> 16 | words[2] << 16) & 0xFFFFFFU),
            opaquePixel<order>(words[2] >> 8)};
        for (int i = 0; i < kStep; ++i)
            qToLittleEndian(pixels[i], target + 4 * i);
        source += 3 * kStep;
        target += 4 * kStep;
    }
    using Target = std::conditional_t<order == Order::Rgba, Straight<quint8, 4>, BgraPremultiplied>;
    convertRow<Straight<quint8, 3>, Target>(source, target, width - x);
}

} // namespace

void Row(const void *source, PixelFormat sourceFormat, void *target, PixelFormat targetFormat,
         int width)
{
    if (sourceFormat == targetFormat) {
        std::memcpy(target, source, std::size_t(width) * std::size_t(bytesPerPixel(sourceFormat)));
        return;
    }
    const auto *bytes = static_cast<const uchar *>(source);
    if (sourceFormat == PixelFormat::Rgb8 && targetFormat == PixelFormat::Rgba8)
        return widenRow<Order::Rgba>(bytes, static_cast<uchar *>(target), width);
    if (sourceFormat == PixelFormat::Rgb8 && targetFormat == PixelFormat::Bgra8Premultiplied)
        return widenRow<Order::Bgra>(bytes, static_cast<uchar *>(target), width);
    withLayout(sourceFormat, [&](auto from) {
        using Source = decltype(from);
        withLayout(targetFormat, [&](auto to) {
            using Target = decltype(to);
            convertRow<Source, Target>(static_cast<const typename Source::Channel *>(source),
                                       static_cast<typename Target::Channel *>(target), width);
        });
    });
}

void Copy(const KBitmap &source, const QRect &area, KBitmap &target, const QPoint &position)
{
    if (!source.isValid() || !target.isValid())
        K_THROW(KImageErrors::invalidBitmap());
    const QRect placed(position, area.size());
    if (area.isEmpty() || !QRect(QPoint(), source.size()).contains(area) ||
        !QRect(QPoint(), target.size()).contains(placed))
        K_THROW(KImageErrors::invalidParameter());

    const qint64 sourceOffset = qint64(area.x()) * bytesPerPixel(source.format());
    const qint64 targetOffset = qint64(position.x()) * bytesPerPixel(target.format());
    // In small shares, so that a processor that others use does not keep the rest waiting.
#pragma omp parallel for schedule(dynamic, 32)
    for (int y = 0; y < area.height(); ++y)
        Row(source.line(area.y() + y) + sourceOffset, source.format(),
            target.line(position.y() + y) + targetOffset, target.format(), area.width());
}

} // namespace KImage_Copy

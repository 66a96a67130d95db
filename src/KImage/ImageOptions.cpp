#include "KImage/ImageOptions.h"

#include "settings/KernelSettingsReader.h"

#include <tuple>

namespace {

/// Numbers outside of [least, most] and those that are none take the default.
double number(KernelSettingsReader &settings, const char *key, double defaultValue, double least,
              double most)
{
    const double value = settings.GetDouble(QLatin1String(key), defaultValue);
    return value >= least && value <= most ? value : defaultValue;
}

int number(KernelSettingsReader &settings, const char *key, int defaultValue, int least, int most)
{
    const int value = settings.GetInt(QLatin1String(key), defaultValue);
    return value >= least && value <= most ? value : defaultValue;
}

} // namespace

bool RawOptions::operator==(const RawOptions &other) const
{
    const auto values = [](const RawOptions &o) {
        return std::tie(o.automaticBalance, o.cameraBalance, o.highlight, o.autoBright, o.gamma,
                        o.brightness, o.redScaling, o.blueScaling);
    };
    return values(*this) == values(other);
}

ImageOptions ImageOptions::read(KernelSettingsReader &settings)
{
    constexpr double kMostFocal = 100000;
    constexpr double kMostCoefficient = 1000;
    constexpr double kLeastFactor = 0.01;
    constexpr double kMostFactor = 100;

    const ImageOptions defaults;
    ImageOptions options;
    options.exifMode = ExifMode(number(settings, "image/exifMode", int(defaults.exifMode),
                                       int(ExifMode::Exif), int(ExifMode::Forced)));
    options.defaultFocal35mm = number(settings, "image/exifDefaultFocal35mm",
                                      defaults.defaultFocal35mm, kLeastFactor, kMostFocal);
    options.defaultLensModel =
        settings.GetString(QStringLiteral("image/exifDefaultLensModel"), QString());
    options.forcedFocal35mm = number(settings, "image/exifForcedFocal35mm",
                                     defaults.forcedFocal35mm, kLeastFactor, kMostFocal);
    options.forcedLensModel =
        settings.GetString(QStringLiteral("image/exifForcedLensModel"), QString());
    options.forcedK1 =
        number(settings, "image/exifForcedK1", 0.0, -kMostCoefficient, kMostCoefficient);
    options.forcedK2 =
        number(settings, "image/exifForcedK2", 0.0, -kMostCoefficient, kMostCoefficient);
    options.forcedK3 =
        number(settings, "image/exifForcedK3", 0.0, -kMostCoefficient, kMostCoefficient);

    RawOptions &raw = options.raw;
    raw.automaticBalance = settings.GetBool(QStringLiteral("image/rawUseAutomaticBalance"),
                                            defaults.raw.automaticBalance);
    raw.cameraBalance =
        settings.GetBool(QStringLiteral("image/rawUseCameraBalance"), defaults.raw.cameraBalance);
    raw.highlight = number(settings, "image/rawHighlight", defaults.raw.highlight, 0, 9);
    raw.autoBright =
        settings.GetBool(QStringLiteral("image/rawAutoBright"), defaults.raw.autoBright);
    raw.gamma = number(settings, "image/rawGamma", defaults.raw.gamma, 0.1, 10.0);
    raw.brightness =
        number(settings, "image/rawBrightness", defaults.raw.brightness, kLeastFactor, kMostFactor);
    raw.redScaling =
        number(settings, "image/rawRedScaling", defaults.raw.redScaling, kLeastFactor, kMostFactor);
    raw.blueScaling = number(settings, "image/rawBlueScaling", defaults.raw.blueScaling,
                             kLeastFactor, kMostFactor);
    return options;
}

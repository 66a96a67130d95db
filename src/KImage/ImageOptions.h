#pragma once

// The user's options for stills, as plain values that any thread may copy.

#include <QString>

class KernelSettingsReader;

/// Where lens values come from.
enum class ExifMode { Exif = 0, Default = 1, Forced = 2 };

/// For camera raws.
struct RawOptions
{
    bool automaticBalance = false;
    bool cameraBalance = true; ///< the white balance that the camera noted
    int highlight = 0;         ///< 0 clip, 1 unclip, 2 blend, 3 to 9 rebuild
    bool autoBright = true;
    double gamma = 2.2;
    double brightness = 1.0;
    double redScaling = 1.0;
    double blueScaling = 1.0;

    bool operator==(const RawOptions &other) const;
};

struct ImageOptions
{
    ExifMode exifMode = ExifMode::Exif;
    double defaultFocal35mm = 50.0;
    QString defaultLensModel;
    double forcedFocal35mm = 50.0;
    QString forcedLensModel;
    double forcedK1 = 0.0; ///< lens distortion coefficients
    double forcedK2 = 0.0;
    double forcedK3 = 0.0;
    RawOptions raw;

    /// From the keys "image/...". Values outside of what makes sense take the default.
    static ImageOptions read(KernelSettingsReader &settings);
};

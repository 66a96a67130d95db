#pragma once

// What a movie file says about its geometry, as the map that the scene's players carry. A free
// function on values.

#include <QVariantMap>

/// Keys "Texture size", "Frame width", "Frame height", "Video frame rate", "Orvex file", "Initial
/// yaw", "Initial pitch", "Initial roll" (degrees), "Projection" (0 standard, 1 equirectangular,
/// 256 cube map), "Stereoscopy" (0 none, 1 side by side, 2 over under), and "Writing Tool" where
/// the file names one. Empty for a file that is no movie or holds no picture.
QVariantMap readMovieMetadata(const QString &path);

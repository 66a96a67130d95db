#pragma once

// Choices made from what a medium is called and what it says about itself: its kind by suffix, its
// projection and stereo mode where the settings leave them automatic. Free functions on values.

#include <QStringList>
#include <QUrl>
#include <QVariantMap>

#include <optional>

namespace MediaChoice {

/// Lower-case suffix of the last path component of @p url's text.
QString suffix(const QUrl &url);

/// URL of what a person typed or a shell passed: stream and file URLs as they are, else a path.
QUrl urlFromText(const QString &text);

/// Suffixes of films; raw video has none of them.
QStringList videoSuffixes();

/// A KShaderCodeBuilder::StereoMode from the stereo text of a playlist entry or, where that is
/// empty, from the metadata. Nothing for a text that names no mode: the mode then stays.
std::optional<int> stereoMode(const QString &playListText, const QVariantMap &metadata);

/// A KShaderCodeBuilder::InputProjection from the metadata; equirectangular where it says nothing.
int inputProjection(const QVariantMap &metadata);

/// The metadata as lines of text for people.
QString report(const QVariant &url, const QVariantMap &metadata);

} // namespace MediaChoice

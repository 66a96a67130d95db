#pragma once

// The part of the image library that stands on libvips and LibRaw, as a plug-in: the hundred
// libraries under these two take as long to load as the rest of the program, and a plain JPEG needs
// none of them. One object for the whole run, any thread; used by ImageLoader, ImageFormats and
// KImage only.

#include "KImage/ImageRequest.h"
#include "KImage/KBitmap.h"

#include <QByteArray>
#include <QStringList>
#include <QtPlugin>

/// Takes a picture row by row, on any thread and on several at once.
class PixelSink
{
public:
    virtual ~PixelSink() = default;
    /// Before the first row, once: size and format of what comes.
    [[nodiscard]] virtual ImageError begin(const QSize &size, PixelFormat format) = 0;
    /// @p width pixels of row @p y from @p x on. False when nobody waits for them any longer.
    [[nodiscard]] virtual bool write(int x, int y, const void *pixels, int width) = 0;
};

class StillCodecs
{
public:
    virtual ~StillCodecs() = default;

    /// Suffixes in lower case of the formats that libvips may have been built without.
    virtual QStringList suffixes() = 0;
    /// Whether a loader in use knows the file's contents.
    virtual bool reads(const QString &path) = 0;
    [[nodiscard]] virtual ImageError describe(const QString &path, ImageInfo &info) = 0;
    /// Shrinks while decoding where the format can; the whole picture is never in memory unless the
    /// format cannot be read in strips, which is checked before. In the file's own format; where
    /// one is asked for, mostly in 8 bits and fitted into the limit, else left larger.
    [[nodiscard]] virtual ImageError load(const QString &path, const LoadRequest &request,
                                          PixelSink &sink) = 0;

    [[nodiscard]] virtual ImageError describeRaw(const QString &path, ImageInfo &info) = 0;
    /// 16 bits for a channel, at half size where the limit allows it.
    [[nodiscard]] virtual ImageError loadRaw(const QString &path, const LoadRequest &request,
                                             PixelSink &sink) = 0;

    /// @p source at another size. Colours of transparent pixels do not bleed into their neighbours.
    [[nodiscard]] virtual ImageError resize(const KBitmap &source, const QSize &size,
                                            PixelSink &sink) = 0;
    /// File bytes of @p bitmap in the format "jpeg" (8-bit RGB or gray; @p quality 1 to 100),
    /// "tiff" (any but premultiplied) or "hdri" (float RGB).
    [[nodiscard]] virtual ImageError encode(const KBitmap &bitmap, const QString &format,
                                            int quality, QByteArray &bytes) = 0;
};

#define StillCodecs_iid "com.orvex.OrbilensPlayer.StillCodecs/1.0"
Q_DECLARE_INTERFACE(StillCodecs, StillCodecs_iid)

/// Loaded on first use from "stillcodecs" in the folders of QCoreApplication::libraryPaths(); null,
/// and a warning, where it is not there.
StillCodecs *stillCodecs();

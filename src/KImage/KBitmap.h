#pragma once

// A picture in memory. Owned by whoever holds it and moved, never shared; threads hand it over.

#include "KImage/PixelFormat.h"

#include <QImage>
#include <QSize>

#include <cstdlib>
#include <memory>

struct KPoolMemBloc;

class KBitmap
{
public:
    /// An unusable one, which every operation refuses.
    KBitmap() = default;
    /// Black (and transparent) pixels. Throws a KException: "Invalid Parameter" for a side that is
    /// not positive, "Not enough memory" beyond ImageLimits or when the heap has no more.
    KBitmap(int width, int height, PixelFormat format);
    /// The pixels of @p image without a copy; RGBA8888 or ARGB32_Premultiplied, an unusable bitmap
    /// for another format and for a null image.
    explicit KBitmap(QImage image);
    ~KBitmap();
    KBitmap(KBitmap &&other) noexcept;
    KBitmap &operator=(KBitmap &&other) noexcept;

    bool isValid() const { return m_data != nullptr; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    QSize size() const { return {m_width, m_height}; }
    PixelFormat format() const { return m_format; }
    /// Rows follow each other without gaps.
    qint64 bytesPerLine() const { return qint64(m_width) * bytesPerPixel(m_format); }
    qint64 byteCount() const { return bytesPerLine() * m_height; }
    uchar *line(int y) { return m_data + y * bytesPerLine(); }
    const uchar *line(int y) const { return m_data + y * bytesPerLine(); }

    /// The same pixels as an image that owns them, without a copy; this one is unusable afterwards.
    /// Null for 16-bit and float pixels without a like in QImage.
    QImage takeImage();

private:
    struct FreeMemory
    {
        void operator()(uchar *memory) const { std::free(memory); }
    };

    int m_width = 0;
    int m_height = 0;
    PixelFormat m_format = PixelFormat::Rgba8;
    uchar *m_data = nullptr; ///< lies in one of the three below
    std::unique_ptr<uchar, FreeMemory> m_heap;
    KPoolMemBloc *m_bloc = nullptr;
    QImage m_image;
};

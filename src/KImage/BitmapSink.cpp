#include "KImage/BitmapSink.h"

#include "KImage/KImage_Copy.h"

BitmapSink::BitmapSink(std::optional<PixelFormat> format, const std::atomic<bool> *cancelled)
    : m_wanted(format)
    , m_cancelled(cancelled)
{}

ImageError BitmapSink::begin(const QSize &size, PixelFormat format)
{
    m_source = format;
    try {
        m_bitmap = KBitmap(size.width(), size.height(), m_wanted.value_or(format));
    } catch (const KException &) {
        return ImageError::NoMemory;
    }
    return ImageError::None;
}

bool BitmapSink::write(int x, int y, const void *pixels, int width)
{
    if (m_cancelled && *m_cancelled)
        return false;
    KImage_Copy::Row(pixels, m_source,
                     m_bitmap.line(y) + qint64(x) * bytesPerPixel(m_bitmap.format()),
                     m_bitmap.format(), width);
    return true;
}

#include "KImage/KBitmap.h"

#include "KImage/ImageLimits.h"
#include "KImage/KImageErrors.h"
#include "foundation/KHeap.h"
#include "foundation/KPoolMemManager.h"

#include <cstring>
#include <optional>
#include <utility>

namespace {

std::optional<QImage::Format> imageFormat(PixelFormat format)
{
    switch (format) {
    case PixelFormat::Gray8:
        return QImage::Format_Grayscale8;
    case PixelFormat::Rgb8:
        return QImage::Format_RGB888;
    case PixelFormat::Rgba8:
        return QImage::Format_RGBA8888;
    case PixelFormat::Bgra8Premultiplied:
        return QImage::Format_ARGB32_Premultiplied;
    case PixelFormat::Gray16:
        return QImage::Format_Grayscale16;
    case PixelFormat::Rgba16:
        return QImage::Format_RGBA64;
    default:
        return std::nullopt;
    }
}

} // namespace

KBitmap::KBitmap(int width, int height, PixelFormat format)
    : m_width(width)
    , m_height(height)
    , m_format(format)
{
    if (width <= 0 || height <= 0)
        K_THROW(KImageErrors::invalidParameter());
    if (!ImageLimits::acceptable(width, height) || byteCount() > ImageLimits::kMaxPixelBytes)
        K_THROW(KImageErrors::notEnoughMemory());

    KPoolMemManager *pool = KPoolMemManager::Instance();
    if (pool && byteCount() <= pool->BlocSize())
        m_bloc = pool->Take();
    if (m_bloc) {
        m_data = m_bloc->memory.get();
        std::memset(m_data, 0, std::size_t(byteCount()));
        return;
    }
    m_heap.reset(static_cast<uchar *>(std::calloc(std::size_t(byteCount()), 1)));
    m_data = m_heap.get();
    if (!m_data)
        K_THROW(KImageErrors::notEnoughMemory());
    KHeap::UseWhole(m_data, std::size_t(byteCount()));
}

KBitmap::KBitmap(QImage image)
{
    if (image.format() == QImage::Format_RGBA8888)
        m_format = PixelFormat::Rgba8;
    else if (image.format() == QImage::Format_ARGB32_Premultiplied)
        m_format = PixelFormat::Bgra8Premultiplied;
    else
        return;
    m_width = image.width();
    m_height = image.height();
    m_image = std::move(image);
    m_data = m_image.bits();
}

KBitmap::~KBitmap()
{
    KPoolMemManager *pool = KPoolMemManager::Instance();
    if (m_bloc && pool)
        pool->GiveBack(m_bloc);
}

KBitmap::KBitmap(KBitmap &&other) noexcept
{
    *this = std::move(other);
}

KBitmap &KBitmap::operator=(KBitmap &&other) noexcept
{
    std::swap(m_width, other.m_width);
    std::swap(m_height, other.m_height);
    std::swap(m_format, other.m_format);
    std::swap(m_data, other.m_data);
    std::swap(m_heap, other.m_heap);
    std::swap(m_bloc, other.m_bloc);
    m_image.swap(other.m_image);
    return *this;
}

QImage KBitmap::takeImage()
{
    const std::optional<QImage::Format> format = imageFormat(m_format);
    if (!isValid() || !format || bytesPerLine() > std::numeric_limits<int>::max())
        return QImage();
    auto *kept = new KBitmap(std::move(*this));
    const auto release = [](void *owner) { delete static_cast<KBitmap *>(owner); };
    return QImage(kept->line(0), kept->width(), kept->height(), int(kept->bytesPerLine()), *format,
                  release, kept);
}

#pragma once

// Makes a bitmap of the rows that a decoder hands out. On the stack of whoever asks the decoder,
// whose threads write.

#include "KImage/StillCodecs.h"

#include <atomic>
#include <optional>

class BitmapSink : public PixelSink
{
public:
    /// Into @p format, or as the pixels come; ended by @p cancelled unless that is null.
    explicit BitmapSink(std::optional<PixelFormat> format,
                        const std::atomic<bool> *cancelled = nullptr);

    /// ImageError::NoMemory where the bitmap cannot be had.
    [[nodiscard]] ImageError begin(const QSize &size, PixelFormat format) override;
    [[nodiscard]] bool write(int x, int y, const void *pixels, int width) override;

    /// What has been written; to be asked for once, when all rows are there.
    KBitmap takeBitmap() { return std::move(m_bitmap); }

private:
    const std::optional<PixelFormat> m_wanted;
    const std::atomic<bool> *const m_cancelled;
    PixelFormat m_source = PixelFormat::Rgba8;
    KBitmap m_bitmap;
};

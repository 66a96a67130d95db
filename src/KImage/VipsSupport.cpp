// Before any Qt header.
#include "KImage/VipsSupport.h"

#include "KImage/KImage_Copy.h"

#include <QByteArray>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(imageLog, "kimage", QtWarningMsg)

namespace VipsCodec {

namespace {

/// libvips complains about each flaw of a file; people look at the picture instead.
void logQuietly(const gchar *, GLogLevelFlags, const gchar *message, gpointer)
{
    qCDebug(imageLog) << message;
}
struct Sink
{
    KBitmap &target;
    PixelFormat source;
    const std::atomic<bool> *cancelled;
};

int writeRows(VipsRegion *region, VipsRect *area, void *context)
{
    const Sink &sink = *static_cast<Sink *>(context);
    if (sink.cancelled && *sink.cancelled)
        return -1;
    for (int y = area->top; y < area->top + area->height; ++y)
        KImage_Copy::Row(VIPS_REGION_ADDR(region, area->left, y), sink.source,
                         sink.target.line(y) + area->left * bytesPerPixel(sink.target.format()),
                         sink.target.format(), area->width);
    return 0;
}
} // namespace

bool start()
{
    static const bool started = [] {
        if (VIPS_INIT("orbilens-player") != 0)
            return false;
        g_log_set_handler("VIPS", GLogLevelFlags(G_LOG_LEVEL_WARNING | G_LOG_LEVEL_MESSAGE),
                          logQuietly, nullptr);
        // Results are remembered by file name, so a changed file would come back as it was.
        vips_cache_set_max(0);
        vips_block_untrusted_set(TRUE);
        // Radiance and OpenEXR are what panoramas of high dynamic range come in.
        vips_operation_block_set("VipsForeignLoadRad", FALSE);
        vips_operation_block_set("VipsForeignLoadOpenexr", FALSE);
        return true;
    }();
    return started;
}
ImageError lastError()
{
    const QByteArray text(vips_error_buffer());
    vips_error_clear();
    qCDebug(imageLog) << text;
    return text.contains("out of memory") || text.contains("unable to allocate")
               ? ImageError::NoMemory
               : ImageError::FileRead;
}
bool toFormat(Image &image, VipsBandFormat format)
{
    if (image->BandFmt == format)
        return true;
    return apply(image, [format](VipsImage *in, VipsImage **out) {
        return vips_cast(in, out, format, nullptr);
    });
}
ImageError intoBitmap(VipsImage *image, std::optional<PixelFormat> source,
                      std::optional<PixelFormat> format, const std::atomic<bool> *cancelled,
                      KBitmap &bitmap)
{
    if (!source)
        return ImageError::BadBitmap;
    KBitmap result(image->Xsize, image->Ysize, format.value_or(*source));
    Sink sink{result, *source, cancelled};
    if (vips_sink_disc(image, writeRows, &sink) != 0)
        return lastError();
    bitmap = std::move(result);
    return ImageError::None;
}
} // namespace VipsCodec

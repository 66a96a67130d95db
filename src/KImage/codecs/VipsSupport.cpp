// Before any Qt header.
#include "KImage/codecs/VipsSupport.h"

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
int writeRows(VipsRegion *region, VipsRect *area, void *context)
{
    auto &sink = *static_cast<PixelSink *>(context);
    for (int y = area->top; y < area->top + area->height; ++y) {
        if (!sink.write(area->left, y, VIPS_REGION_ADDR(region, area->left, y), area->width))
            return -1;
    }
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
ImageError into(PixelSink &sink, VipsImage *image, std::optional<PixelFormat> format)
{
    if (!format)
        return ImageError::BadBitmap;
    const ImageError error = sink.begin(QSize(image->Xsize, image->Ysize), *format);
    if (error != ImageError::None)
        return error;
    return vips_sink_disc(image, writeRows, &sink) == 0 ? ImageError::None : lastError();
}
} // namespace VipsCodec

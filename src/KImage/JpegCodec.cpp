#include "KImage/JpegCodec.h"

#include "KImage/ExifOrientation.h"
#include "KImage/ImageLimits.h"

#include <QFile>

#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>

namespace JpegCodec {

namespace {

constexpr int kExifMarker = JPEG_APP0 + 1;
constexpr int kProfileMarker = JPEG_APP0 + 2;
constexpr unsigned kWholeSegment = 0xFFFF;
constexpr JDIMENSION kRowsAtOnce = 16;

/// One file at libjpeg, whose errors come as jumps: no function that sets a jump holds an object
/// that would have to be destroyed.
class Reader
{
public:
    explicit Reader(const QString &path)
        : m_file(std::fopen(QFile::encodeName(path).constData(), "rb"))
    {
        m_info.err = jpeg_std_error(&m_errors.base);
        m_errors.base.error_exit = leave;
        m_errors.base.output_message = [](j_common_ptr) {};
        m_created = setjmp(m_errors.place) == 0;
        if (m_created)
            jpeg_create_decompress(&m_info);
    }
    ~Reader()
    {
        if (m_created)
            jpeg_destroy_decompress(&m_info);
        if (m_file)
            std::fclose(m_file);
    }
    Reader(const Reader &) = delete;
    Reader &operator=(const Reader &) = delete;

    /// The header, of a file that is plain.
    bool open() { return m_file && m_created && readHeader() && isPlain(); }

    QSize size() const { return {int(m_info.image_width), int(m_info.image_height)}; }
    bool isGray() const { return m_info.jpeg_color_space == JCS_GRAYSCALE; }

    bool decode(KBitmap &bitmap, const std::atomic<bool> *cancelled)
    {
        if (setjmp(m_errors.place) != 0)
            return false;
        m_info.out_color_space =
            bitmap.format() == PixelFormat::Rgba8 ? JCS_EXT_RGBA : JCS_EXT_BGRA;
        jpeg_start_decompress(&m_info);
        while (m_info.output_scanline < m_info.output_height) {
            if (cancelled && *cancelled)
                return false;
            JSAMPROW rows[kRowsAtOnce];
            for (JDIMENSION i = 0; i < kRowsAtOnce; ++i)
                rows[i] = bitmap.line(
                    int(std::min(m_info.output_scanline + i, JDIMENSION(bitmap.height() - 1))));
            jpeg_read_scanlines(
                &m_info, rows,
                std::min(kRowsAtOnce, m_info.output_height - m_info.output_scanline));
        }
        jpeg_finish_decompress(&m_info);
        return m_info.err->num_warnings == 0;
    }

private:
    struct Errors
    {
        jpeg_error_mgr base;
        std::jmp_buf place;
    };

    [[noreturn]] static void leave(j_common_ptr info)
    {
        std::longjmp(reinterpret_cast<Errors *>(info->err)->place, 1);
    }

    bool readHeader()
    {
        if (setjmp(m_errors.place) != 0)
            return false;
        jpeg_stdio_src(&m_info, m_file);
        jpeg_save_markers(&m_info, kExifMarker, kWholeSegment);
        jpeg_save_markers(&m_info, kProfileMarker, kWholeSegment);
        return jpeg_read_header(&m_info, TRUE) == JPEG_HEADER_OK;
    }

    bool isPlain()
    {
        const J_COLOR_SPACE colours = m_info.jpeg_color_space;
        return m_info.err->num_warnings == 0 && !jpeg_has_multiple_scans(&m_info) &&
               m_info.data_precision == 8 &&
               (colours == JCS_YCbCr || colours == JCS_RGB || colours == JCS_GRAYSCALE) &&
               isUprightWithoutProfile();
    }

    bool isUprightWithoutProfile() const
    {
        static const char kExif[] = "Exif\0";
        constexpr unsigned kExifBytes = sizeof kExif;
        bool seen = false;
        for (auto *marker = m_info.marker_list; marker; marker = marker->next) {
            if (marker->marker == kProfileMarker)
                return false;
            if (marker->data_length < kExifBytes ||
                std::memcmp(marker->data, kExif, kExifBytes) != 0)
                continue; // XMP
            if (seen ||
                exifOrientation(marker->data + kExifBytes, marker->data_length - kExifBytes) != 1)
                return false;
            seen = true;
        }
        return true;
    }

    std::FILE *const m_file;
    Errors m_errors{};
    jpeg_decompress_struct m_info{};
    bool m_created = false;
};

} // namespace

bool describe(const QString &path, ImageInfo &info)
{
    Reader reader(path);
    if (!reader.open())
        return false;
    info.size = reader.size();
    info.formatName = QStringLiteral("JPEG");
    info.gray = reader.isGray();
    return true;
}

bool load(const QString &path, PixelFormat format, const std::atomic<bool> *cancelled,
          KBitmap &bitmap)
{
    Reader reader(path);
    if (!reader.open() || !ImageLimits::acceptable(reader.size().width(), reader.size().height()))
        return false;
    KBitmap result(reader.size().width(), reader.size().height(), format);
    if (!reader.decode(result, cancelled))
        return false;
    bitmap = std::move(result);
    return true;
}

} // namespace JpegCodec

#pragma once

// What the files of VipsCodec share: owned images of libvips, its start, its errors, and the way
// into a sink. Not to be included elsewhere, and before any Qt header, because glib has a member
// called "signals". Free functions, any thread.

#include <vips/vips.h>

#include "KImage/StillCodecs.h"

#include <memory>

namespace VipsCodec {

struct Unref
{
    void operator()(VipsImage *image) const { g_object_unref(image); }
};
using Image = std::unique_ptr<VipsImage, Unref>;
/// Once, on first use: false when the library cannot run.
bool start();

/// Takes the error of libvips, told apart by what the file still allows.
ImageError lastError();

/// Runs @p operation, which makes a new image from the old one; false leaves no image.
template <class Operation>
bool apply(Image &image, Operation operation)
{
    VipsImage *result = nullptr;
    if (operation(image.get(), &result) != 0) {
        image.reset();
        return false;
    }
    image.reset(result);
    return true;
}
bool toFormat(Image &image, VipsBandFormat format);

/// Computes @p image, whose pixels are @p format, row by row.
ImageError into(PixelSink &sink, VipsImage *image, std::optional<PixelFormat> format);

} // namespace VipsCodec

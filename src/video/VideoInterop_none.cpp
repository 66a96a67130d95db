#include "video/VideoInterop.h"

std::unique_ptr<VideoInterop> VideoInterop::open(int, int, VlcPixelFormat, WId)
{
    return nullptr;
}

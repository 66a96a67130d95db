#pragma once

// Move-only owners of libvlc's objects, for members and locals of whoever made or retained them.

#include <vlc/vlc.h>

#include <memory>

template <auto Release>
struct VlcRelease
{
    template <class Object>
    void operator()(Object *object) const
    {
        Release(object);
    }
};

using VlcInstanceHandle = std::unique_ptr<libvlc_instance_t, VlcRelease<libvlc_release>>;
using VlcPlayerHandle =
    std::unique_ptr<libvlc_media_player_t, VlcRelease<libvlc_media_player_release>>;
using VlcMediaHandle = std::unique_ptr<libvlc_media_t, VlcRelease<libvlc_media_release>>;

#pragma once

// What the panorama view needs to know of a headset; implemented beside the devices, owned by
// Application, asked on the scene graph's render thread.

#include <QMatrix4x4>

#include <optional>

class HeadsetView
{
public:
    /// Layers of the interface shown inside the headset, drawn in this order.
    enum InterfaceLayer { Panel = 0, Foreground = 1 };

    virtual ~HeadsetView() = default;

    /// The headset drives the view.
    virtual bool isActivated() const = 0;

    /// Camera to world; nothing while the device tracks no head.
    virtual std::optional<QMatrix4x4> pose() const = 0;

    /// The interface is shown inside the headset.
    virtual bool isInterfaceActive() const = 0;

    /// The frame in which the panel stands: multiplied from the left to the view's rotation.
    virtual QMatrix4x4 interfaceOrientation() const = 0;

    /// Name of a layer's texture, 0 while there is none.
    virtual int interfaceTextureId(InterfaceLayer layer) const = 0;

protected:
    HeadsetView() = default;
    HeadsetView(const HeadsetView &) = delete;
    HeadsetView &operator=(const HeadsetView &) = delete;
};

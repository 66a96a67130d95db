#pragma once

// VideoInterop over Direct3D 9Ex and WGL_NV_DX_interop; made by VideoInterop::open on libvlc's
// video thread and used on it alone.

#include "video/Dx9ShareDevice_windows.h"
#include "video/VideoInterop.h"

#include <memory>

class Dx9VideoInterop final : public VideoInterop
{
public:
    Dx9VideoInterop() = default;
    ~Dx9VideoInterop() override;

    /// Makes device, surfaces and shared texture; false when any of them fails.
    [[nodiscard]] bool start(int width, int height, HWND window);

    int pitch() const override { return m_pitch; }
    LockedSurface lock() override;
    void unlockAndConvert() override;
    void beginReading() override;
    void endReading() override;
    GLuint texture() const override { return m_texture; }

private:
    bool shareTexture();

    std::unique_ptr<Dx9ShareDevice> m_device;
    GLuint m_texture = 0;
    HANDLE m_interopDevice = nullptr;
    HANDLE m_interopObject = nullptr;
    int m_pitch = 0;
};

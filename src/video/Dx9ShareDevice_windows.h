#pragma once

// A Direct3D 9Ex device whose surfaces can be shared with OpenGL; owned by the interop road of
// the player, used on libvlc's video thread.

#include "video/ComOwner_windows.h"

#include <d3d9.h>
#include <dxva2api.h>

#include <array>

class Dx9ShareDevice
{
public:
    Dx9ShareDevice() = default;
    ~Dx9ShareDevice();
    Dx9ShareDevice(const Dx9ShareDevice &) = delete;
    Dx9ShareDevice &operator=(const Dx9ShareDevice &) = delete;

    /// Makes the device for frames of this size in pixels; the first failure is returned at once.
    [[nodiscard]] HRESULT init(int width, int height, UINT adapter, HMODULE moduleHandle,
                               HWND window);
    /// Surface @p index (0 to 5) in the format of a four-character code, with a share handle.
    [[nodiscard]] bool createSurface(int width, int height, DWORD fourcc, int index);
    /// The same in the format of the back buffer.
    [[nodiscard]] bool createBackBufferSurface(int width, int height, int index);
    /// A window of its own for a device without one; null when it cannot be made.
    HWND createWindow(int width, int height, HMODULE moduleHandle);

    IDirect3DSurface9 *surface(int index) const { return m_surfaces[std::size_t(index)].get(); }
    HANDLE shareHandle(int index) const { return m_shareHandles[std::size_t(index)]; }
    int width() const { return m_width; }
    int height() const { return m_height; }
    IDirect3DDevice9Ex *device() const { return m_device.get(); }
    IDirect3D9Ex *d3d() const { return m_d3d.get(); }
    IDirect3DSurface9 *backBuffer() const { return m_backBuffer.get(); }
    IDirect3DDeviceManager9 *deviceManager() const { return m_deviceManager.get(); }

private:
    static LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam);

    D3DPRESENT_PARAMETERS m_presentParameters{};
    ComOwner<IDirect3D9Ex> m_d3d;
    ComOwner<IDirect3DDevice9Ex> m_device;
    ComOwner<IDirect3DSurface9> m_backBuffer;
    D3DSURFACE_DESC m_backBufferDescription{};
    std::array<ComOwner<IDirect3DSurface9>, 6> m_surfaces;
    std::array<HANDLE, 6> m_shareHandles{};
    int m_width = 0;
    int m_height = 0;
    ComOwner<IDirect3DDeviceManager9> m_deviceManager;
    HMODULE m_moduleHandle = nullptr;
};

#include "video/Dx9ShareDevice_windows.h"

namespace {
// D3D_SDK_VERSION, with the bit that asks for the 9Ex interfaces of the debug-free runtime.
constexpr UINT kSdkVersion = 0x80000020;
constexpr LONG kTrackLimit = 2000;
constexpr DWORD kWindowStyle = 0xCF0000;
constexpr UINT kClassStyle = 3;
} // namespace

Dx9ShareDevice::~Dx9ShareDevice()
{
    for (auto &surface : m_surfaces)
        surface.reset();
    m_backBuffer.reset();
    m_device.reset();
    m_d3d.reset();
    m_deviceManager.reset();
}

HRESULT Dx9ShareDevice::init(int width, int height, UINT adapter, HMODULE moduleHandle, HWND window)
{
    m_width = width;
    m_height = height;
    m_moduleHandle = moduleHandle;
    m_presentParameters = {};
    m_presentParameters.BackBufferFormat = D3DFMT_X8R8G8B8;
    m_presentParameters.SwapEffect = D3DSWAPEFFECT_DISCARD;
    m_presentParameters.Windowed = TRUE;
    m_presentParameters.hDeviceWindow = window;

    IDirect3D9Ex *d3d = nullptr;
    HRESULT result = Direct3DCreate9Ex(kSdkVersion, &d3d);
    if (FAILED(result))
        return result;
    m_d3d.reset(d3d);

    IDirect3DDevice9Ex *device = nullptr;
    result = d3d->CreateDeviceEx(adapter, D3DDEVTYPE_HAL, nullptr,
                                 D3DCREATE_HARDWARE_VERTEXPROCESSING | D3DCREATE_MULTITHREADED,
                                 &m_presentParameters, nullptr, &device);
    if (FAILED(result))
        return result;
    m_device.reset(device);

    IDirect3DSurface9 *backBuffer = nullptr;
    result = device->GetRenderTarget(0, &backBuffer);
    if (FAILED(result))
        return result;
    m_backBuffer.reset(backBuffer);
    result = backBuffer->GetDesc(&m_backBufferDescription);
    if (FAILED(result))
        return result;

    result = device->SetRenderState(D3DRS_LIGHTING, FALSE);
    if (FAILED(result))
        return result;
    result = device->SetRenderState(D3DRS_CULLMODE, D3DCULL_NONE);
    if (FAILED(result))
        return result;

    result = device->ResetEx(&m_presentParameters, nullptr);
    if (FAILED(result))
        return result;
    result = device->Clear(0, nullptr, D3DCLEAR_TARGET, 0xFF000000, 1.0F, 0);
    if (FAILED(result))
        return result;

    UINT token = 0;
    IDirect3DDeviceManager9 *manager = nullptr;
    result = DXVA2CreateDirect3DDeviceManager9(&token, &manager);
    if (FAILED(result))
        return result;
    m_deviceManager.reset(manager);
    return manager->ResetDevice(device, token);
}

bool Dx9ShareDevice::createSurface(int width, int height, DWORD fourcc, int index)
{
    IDirect3DSurface9 *surface = nullptr;
    HANDLE handle = nullptr;
    const HRESULT result = m_device->CreateOffscreenPlainSurface(
        UINT(width), UINT(height), D3DFORMAT(fourcc), D3DPOOL_DEFAULT, &surface, &handle);
    if (FAILED(result))
        return false;
    m_surfaces[std::size_t(index)].reset(surface);
    m_shareHandles[std::size_t(index)] = handle;
    return true;
}

bool Dx9ShareDevice::createBackBufferSurface(int width, int height, int index)
{
    return createSurface(width, height, DWORD(m_backBufferDescription.Format), index);
}

HWND Dx9ShareDevice::createWindow(int width, int height, HMODULE moduleHandle)
{
    m_moduleHandle = moduleHandle;
    WNDCLASSEXA description{};
    description.cbSize = sizeof(description);
    description.style = kClassStyle;
    description.lpfnWndProc = windowProcedure;
    description.hInstance = moduleHandle;
    description.hCursor = LoadCursor(nullptr, IDC_ARROW);
    description.lpszClassName = "WindowClass";
    RegisterClassExA(&description);

    RECT area{0, 0, width, height};
    AdjustWindowRect(&area, kWindowStyle, FALSE);
    return CreateWindowExA(0, "WindowClass", "Shared Resource Test - DX", kWindowStyle,
                           CW_USEDEFAULT, CW_USEDEFAULT, area.right - area.left,
                           area.bottom - area.top, nullptr, nullptr, moduleHandle, nullptr);
}

LRESULT CALLBACK Dx9ShareDevice::windowProcedure(HWND window, UINT message, WPARAM wParam,
                                                 LPARAM lParam)
{
    switch (message) {
    case WM_GETMINMAXINFO: {
        auto *limits = reinterpret_cast<MINMAXINFO *>(lParam);
        limits->ptMinTrackSize = {kTrackLimit, kTrackLimit};
        limits->ptMaxTrackSize = {kTrackLimit, kTrackLimit};
        return 0;
    }
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return DefWindowProcA(window, message, wParam, lParam);
    }
}

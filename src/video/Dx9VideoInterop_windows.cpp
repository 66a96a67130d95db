#include "video/Dx9VideoInterop_windows.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <GL/wglext.h>

namespace {

constexpr DWORD kYv12 = MAKEFOURCC('Y', 'V', '1', '2');
// Only dynamic surfaces may be locked for discarding; this one is written all the same, since no
// copy of it is kept in step.
constexpr DWORD kLockFlags = D3DLOCK_READONLY | D3DLOCK_NOSYSLOCK;
constexpr GLenum kReadOnly = 0; // WGL_ACCESS_READ_ONLY_NV

void complain(const char *text)
{
    MessageBoxA(nullptr, text, "failed", MB_OK);
}

// Looked up at each use: the pointers belong to whatever context is current then.
template <class EntryPoint>
EntryPoint entryPoint(const char *name)
{
    return reinterpret_cast<EntryPoint>(reinterpret_cast<void *>(wglGetProcAddress(name)));
}

} // namespace

std::unique_ptr<VideoInterop> VideoInterop::open(int width, int height, VlcPixelFormat format,
                                                 WId window)
{
    if (!QOpenGLContext::currentContext() || format != VlcPixelFormat::Yv12)
        return nullptr;
    auto interop = std::make_unique<Dx9VideoInterop>();
    if (!interop->start(width, height, reinterpret_cast<HWND>(window)))
        return nullptr;
    return interop;
}

bool Dx9VideoInterop::start(int width, int height, HWND window)
{
    m_device = std::make_unique<Dx9ShareDevice>();
    if (FAILED(m_device->init(width, height, 0, GetModuleHandle(nullptr), window)))
        return false;
    if (FAILED(m_device->d3d()->CheckDeviceFormatConversion(0, D3DDEVTYPE_HAL, D3DFORMAT(kYv12),
                                                            D3DFMT_X8R8G8B8)))
        return false;
    if (!m_device->createSurface(width, height, kYv12, 0) ||
        !m_device->createBackBufferSurface(width, height, 1))
        return false;
    if (!shareTexture())
        return false;

    D3DLOCKED_RECT locked{};
    if (FAILED(m_device->surface(0)->LockRect(&locked, nullptr, kLockFlags)))
        return false;
    m_pitch = locked.Pitch;
    m_device->surface(0)->UnlockRect();
    return true;
}

bool Dx9VideoInterop::shareTexture()
{
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    gl->glGenTextures(1, &m_texture);
    gl->glBindTexture(GL_TEXTURE_2D, m_texture);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, m_device->width(), m_device->height(), 0, GL_RGBA,
                     GL_UNSIGNED_BYTE, nullptr);
    gl->glBindTexture(GL_TEXTURE_2D, 0);

    const auto setShareHandle =
        entryPoint<PFNWGLDXSETRESOURCESHAREHANDLENVPROC>("wglDXSetResourceShareHandleNV");
    const auto openDevice = entryPoint<PFNWGLDXOPENDEVICENVPROC>("wglDXOpenDeviceNV");
    const auto registerObject = entryPoint<PFNWGLDXREGISTEROBJECTNVPROC>("wglDXRegisterObjectNV");
    if (!setShareHandle || !openDevice || !registerObject)
        return false;
    m_interopDevice = openDevice(m_device->device());
    if (!m_interopDevice)
        return false;
    if (!setShareHandle(m_device->surface(1), m_device->shareHandle(1)))
        return false;
    m_interopObject =
        registerObject(m_interopDevice, m_device->surface(1), m_texture, GL_TEXTURE_2D, kReadOnly);
    return m_interopObject != nullptr;
}

Dx9VideoInterop::~Dx9VideoInterop()
{
    if (!QOpenGLContext::currentContext())
        return;
    if (m_interopObject) {
        if (const auto unregister =
                entryPoint<PFNWGLDXUNREGISTEROBJECTNVPROC>("wglDXUnregisterObjectNV"))
            unregister(m_interopDevice, m_interopObject);
    }
    if (m_interopDevice) {
        if (const auto close = entryPoint<PFNWGLDXCLOSEDEVICENVPROC>("wglDXCloseDeviceNV"))
            close(m_interopDevice);
    }
    if (m_texture != 0)
        QOpenGLContext::currentContext()->functions()->glDeleteTextures(1, &m_texture);
}

VideoInterop::LockedSurface Dx9VideoInterop::lock()
{
    D3DLOCKED_RECT locked{};
    if (FAILED(m_device->surface(0)->LockRect(&locked, nullptr, kLockFlags))) {
        complain("LockRect failed");
        return {};
    }
    return {static_cast<std::uint8_t *>(locked.pBits), locked.Pitch};
}

void Dx9VideoInterop::unlockAndConvert()
{
    if (FAILED(m_device->surface(0)->UnlockRect()))
        complain("UnlockRect() failed");
    IDirect3DDevice9Ex *device = m_device->device();
    if (FAILED(device->BeginScene()))
        complain("BeginScene() failed");
    if (FAILED(device->StretchRect(m_device->surface(0), nullptr, m_device->surface(1), nullptr,
                                   D3DTEXF_NONE)))
        complain("StretchRect() failed");
    if (FAILED(device->EndScene()))
        complain("EndScene() failed");
}

void Dx9VideoInterop::beginReading()
{
    if (!QOpenGLContext::currentContext())
        complain("updateTexture : makeCurrent() failed");
    const auto lockObjects = entryPoint<PFNWGLDXLOCKOBJECTSNVPROC>("wglDXLockObjectsNV");
    if (!lockObjects || !lockObjects(m_interopDevice, 1, &m_interopObject))
        complain("updateTexture : wglDXLockObjectsNV() failed");
}

void Dx9VideoInterop::endReading()
{
    const auto unlockObjects = entryPoint<PFNWGLDXUNLOCKOBJECTSNVPROC>("wglDXUnlockObjectsNV");
    if (!unlockObjects || !unlockObjects(m_interopDevice, 1, &m_interopObject))
        complain("updateTexture : wglDXUnlockObjectsNV failed");
}

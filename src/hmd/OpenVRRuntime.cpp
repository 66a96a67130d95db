#include "hmd/OpenVRRuntime.h"

#include <QCoreApplication>

using namespace openvr;

namespace {

// The loader adds the platform's prefix and suffix.
const char *const kLibraryName = "openvr_api";

} // namespace

OpenVRRuntime::~OpenVRRuntime()
{
    close();
}

bool OpenVRRuntime::bind()
{
    // Programs bring their own copy with them; else the system's.
    m_library.setFileName(QCoreApplication::applicationDirPath() + QLatin1Char('/') +
                          QLatin1String(kLibraryName));
    if (!m_library.load()) {
        m_library.setFileName(QLatin1String(kLibraryName));
        if (!m_library.load()) {
            m_error = m_library.errorString();
            return false;
        }
    }
    const auto resolve = [this](auto &function, const char *name) {
        function = reinterpret_cast<std::decay_t<decltype(function)>>(m_library.resolve(name));
        if (!function && m_error.isEmpty())
            m_error = m_library.errorString();
    };
    m_error.clear();
    resolve(m_init, "VR_InitInternal");
    resolve(m_shutdown, "VR_ShutdownInternal");
    resolve(m_isRuntimeInstalled, "VR_IsRuntimeInstalled");
    resolve(m_getGenericInterface, "VR_GetGenericInterface");
    resolve(m_isInterfaceVersionValid, "VR_IsInterfaceVersionValid");
    resolve(m_getInitToken, "VR_GetInitToken");
    resolve(m_describe, "VR_GetVRInitErrorAsEnglishDescription");
    return m_error.isEmpty();
}

QString OpenVRRuntime::describe(std::int32_t code) const
{
    const char *text = m_describe(code);
    return text ? QString::fromUtf8(text) : QString::number(code);
}

bool OpenVRRuntime::open()
{
    if (!bind())
        return false;
    // Client libraries of this release crash in the next step where no runtime is installed.
    if (!m_isRuntimeInstalled()) {
        m_error = describe(kErrorPathRegistryNotFound);
        return false;
    }
    std::int32_t code = kErrorNone;
    m_init(&code, kApplicationScene);
    if (code == kErrorNone && !m_isInterfaceVersionValid(kSystemVersion))
        code = kErrorInterfaceNotFound;
    if (code != kErrorNone) {
        m_error = describe(code);
        m_shutdown();
        return false;
    }
    m_open = true;
    m_token = m_getInitToken();
    return true;
}

void OpenVRRuntime::close()
{
    forgetTables();
    if (m_open)
        m_shutdown();
    m_open = false;
}

void OpenVRRuntime::forgetTables()
{
    m_system = nullptr;
    m_compositor = nullptr;
    m_renderModels = nullptr;
}

template <class Table>
bool OpenVRRuntime::fetch(const Table *&table, const char *version, const char *name)
{
    std::int32_t code = kErrorNone;
    const QByteArray request = QByteArray(kTablePrefix) + version;
    const void *const found = m_getGenericInterface(request.constData(), &code);
    table = code == kErrorNone ? static_cast<const Table *>(found) : nullptr;
    if (table)
        return true;
    m_error = describe(code == kErrorNone ? kErrorInterfaceNotFound : code);
    m_missingInterface = QLatin1String(name);
    return false;
}

bool OpenVRRuntime::fetchTables()
{
    return fetch(m_renderModels, kRenderModelsVersion, "render model") &&
           fetch(m_system, kSystemVersion, "system") &&
           fetch(m_compositor, kCompositorVersion, "compositor");
}

void OpenVRRuntime::renewTables()
{
    const std::uint32_t token = m_getInitToken();
    if (token == m_token)
        return;
    m_token = token;
    forgetTables();
    // A runtime that is starting again may not have them yet: the session then has no device.
    if (!fetchTables())
        forgetTables();
}

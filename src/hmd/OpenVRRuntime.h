#pragma once

// The OpenVR client library, found and bound by name at run time, and the interfaces of one
// session with its runtime; owned by the OpenVR thread and used on it only.

#include "hmd/OpenVRTypes.h"

#include <QLibrary>
#include <QString>

class OpenVRRuntime
{
public:
    OpenVRRuntime() = default;
    ~OpenVRRuntime();
    OpenVRRuntime(const OpenVRRuntime &) = delete;
    OpenVRRuntime &operator=(const OpenVRRuntime &) = delete;

    /// Loads the library and opens a session as a program that shows a scene. False with the reason
    /// in error().
    [[nodiscard]] bool open();

    /// Ends the session; every table is dead afterwards.
    void close();

    /// What the last failure was, in the runtime's or the loader's English.
    QString error() const { return m_error; }

    /// Asks for the tables. False, with the reason in error() and what is missing ("render model",
    /// "system", "compositor") in missingInterface(), when one is not to be had.
    [[nodiscard]] bool fetchTables();

    QString missingInterface() const { return m_missingInterface; }

    /// Takes the tables anew when the runtime has begun another session since they were fetched.
    /// Once in each frame: until then the accessors below give null.
    void renewTables();

    /// Null when there is none, or when the runtime has begun another session since it was fetched:
    /// compare at each call, as the runtime asks its clients to.
    const openvr::SystemTable *system() const { return current(m_system); }
    const openvr::CompositorTable *compositor() const { return current(m_compositor); }

private:
    [[nodiscard]] bool bind();
    QString describe(std::int32_t code) const;
    void forgetTables();
    template <class Table>
    [[nodiscard]] bool fetch(const Table *&table, const char *version, const char *name);

    template <class Table>
    const Table *current(const Table *fetched) const
    {
        return m_open && m_getInitToken() == m_token ? fetched : nullptr;
    }

    QLibrary m_library;
    openvr::InitInternal m_init = nullptr;
    openvr::ShutdownInternal m_shutdown = nullptr;
    openvr::IsRuntimeInstalled m_isRuntimeInstalled = nullptr;
    openvr::GetGenericInterface m_getGenericInterface = nullptr;
    openvr::IsInterfaceVersionValid m_isInterfaceVersionValid = nullptr;
    openvr::GetInitToken m_getInitToken = nullptr;
    openvr::GetInitErrorAsEnglishDescription m_describe = nullptr;

    bool m_open = false;
    std::uint32_t m_token = 0; // of the session that the tables belong to
    const openvr::SystemTable *m_system = nullptr;
    const openvr::CompositorTable *m_compositor = nullptr;
    const openvr::RenderModelsTable *m_renderModels = nullptr;
    QString m_error;
    QString m_missingInterface;
};

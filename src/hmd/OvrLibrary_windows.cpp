#include "hmd/OvrLibrary.h"

#include <QDir>
#include <QFileInfo>

#include <windows.h>

#include <softpub.h>
#include <wintrust.h>

namespace OvrLibrary {

namespace {

QString systemDirectory()
{
    wchar_t path[MAX_PATH];
    const UINT length = GetSystemDirectoryW(path, MAX_PATH);
    return length > 0 && length < MAX_PATH ? QString::fromWCharArray(path, int(length)) : QString();
}

} // namespace

const char *fileNameFormat()
{
    return "%lsLibOVRRT%hs_%d.dll";
}

QStringList standardDirectories()
{
    // The installer names its folder in this variable and adds the runtime's to the search path.
    QStringList directories;
    const QString base = qEnvironmentVariable("OculusBase");
    if (!base.isEmpty())
        directories.append(QDir(base).filePath(QStringLiteral("Support/oculus-runtime")));
    const QString system = systemDirectory();
    if (!system.isEmpty())
        directories.append(system);
    const QStringList path =
        qEnvironmentVariable("PATH").split(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QString &directory : path) {
        // What a relative entry means depends on the current directory, which anyone may fill.
        if (QDir::isAbsolutePath(directory))
            directories.append(directory);
    }
    return directories;
}

CodeSignature codeSignature(const QString &path)
{
    const std::wstring file = QDir::toNativeSeparators(path).toStdWString();
    WINTRUST_FILE_INFO fileInfo = {};
    fileInfo.cbStruct = sizeof(fileInfo);
    fileInfo.pcwszFilePath = file.c_str();

    WINTRUST_DATA data = {};
    data.cbStruct = sizeof(data);
    data.dwUIChoice = WTD_UI_NONE;
    data.fdwRevocationChecks = WTD_REVOKE_NONE;
    data.dwUnionChoice = WTD_CHOICE_FILE;
    data.pFile = &fileInfo;
    data.dwStateAction = WTD_STATEACTION_VERIFY;
    // A start without a network must not wait for one.
    data.dwProvFlags = WTD_CACHE_ONLY_URL_RETRIEVAL;

    GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    const HWND noWindow = static_cast<HWND>(INVALID_HANDLE_VALUE);
    const LONG verdict = WinVerifyTrust(noWindow, &action, &data);
    data.dwStateAction = WTD_STATEACTION_CLOSE;
    WinVerifyTrust(noWindow, &action, &data);
    return verdict == ERROR_SUCCESS ? CodeSignature::Trusted : CodeSignature::Untrusted;
}

} // namespace OvrLibrary

#pragma once

// Which video backends a platform offers and which one a first run takes; plain functions for
// KVideoPlugin on the GUI thread.

#include <QString>
#include <QStringList>

#include <vector>

struct VideoBackend
{
    QString identifier; ///< stored in the settings
    QString label;
    QString description;
};

/// In the order in which the settings screen shows them.
std::vector<VideoBackend> videoBackends();

/// What a run without a stored choice takes.
QString defaultVideoBackend();

/// Windows: its own media service from Windows 10 onward, libvlc before. @p version is
/// QSysInfo's number, 0xC0 for Windows 10.
QString defaultVideoBackendOnWindows(int version);

/// Where a backend's media service lies below the program's folder, so that Qt Multimedia finds
/// that one alone; empty for a backend without one.
QString mediaServiceFolder(const QString &programFolder, const QString &backend);

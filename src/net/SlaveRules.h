#pragma once

// What a slave does with a packet, and which role a player takes at its start, as free functions on
// values; KUdpSocket carries the answers out. No object, no socket, no thread.

#include "net/SyncPacket.h"

#include <QUrl>

#include <functional>
#include <optional>

enum class SyncRole { Off, Master, Slave };

/// How a slave turns the master's url into one of its own.
enum class SlaveUrl {
    Absolute = 0, ///< as it stands
    Movies = 1,   ///< the file of that name in the folder of films
    Desktop = 2,  ///< the file of that name on the desktop
    Off = 3       ///< media are not followed
};

/// @p option wins over @p setting when it is not empty; any other text, and a @p port outside 1 to
/// 65535, is off.
SyncRole syncRole(const QString &option, const QString &setting, qint64 port);

QString syncRoleName(SyncRole role);

/// Milliseconds between two packets, at least 1.
int syncInterval(int rate);

/// Finds a file by its bare name in a folder; empty when there is none.
using FileLocator = std::function<QString(const QString &fileName)>;

/// The url that a slave opens for the master's @p url; empty for none. Absolute takes the schemes
/// that media come from (file, http, https, rtsp, udp) and no other; names that are looked up are
/// reduced to their last component, so that no packet reaches outside the folder.
QUrl slaveUrl(const QString &url, SlaveUrl mode, const FileLocator &locate);

/// The slave's side of the comparison.
struct SlaveState
{
    int stereoMode = 0;
    int playbackState = 0;
    qint64 position = 0; ///< milliseconds
    qint64 duration = 0; ///< milliseconds, 0 while it is not known
    bool seekAllowed = true;
};

/// What has to change; an empty field means that nothing does.
struct SlaveActions
{
    std::optional<int> stereoMode;
    std::optional<int> playbackState;
    std::optional<int> seekTo; ///< milliseconds
};

/// A position further off than this is caught up by a jump, milliseconds.
constexpr int kSeekTolerance = 3000;

/// Modes and states that do not exist are left out; the position is kept inside the medium.
SlaveActions slaveActions(const SyncPacket &packet, const SlaveState &slave,
                          int seekTolerance = kSeekTolerance);

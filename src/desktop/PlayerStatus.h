#pragma once

// What the desktop around the player may know of it: what is shown, how it plays, what can be asked
// of it. A plain value, made by the player's shell on the GUI thread.

#include <QString>
#include <QUrl>

struct PlayerStatus
{
    enum class Playback { Stopped, Playing, Paused };
    enum class Loop { None, Medium, List };

    Playback playback = Playback::Stopped;
    Loop loop = Loop::None;
    /// Counts the media of this run, so that one shown twice can be told from itself.
    int track = 0;
    QUrl medium;      ///< empty while nothing is shown
    QString title;    ///< for people
    QUrl artwork;     ///< a small picture of the medium; empty without one
    int duration = 0; ///< milliseconds; 0 for stills and streams
    bool film = false;
    bool canGoNext = false;
    bool canGoPrevious = false;
    bool fullScreen = false;
    bool windowVisible = false;
    double volume = 0; ///< 0 to 1

    bool hasMedium() const { return !medium.isEmpty(); }
    bool canSeek() const { return film && duration > 0; }
    /// A screen that goes dark in the middle of a film helps nobody; stills and pauses may end so.
    bool keepsScreenAwake() const { return film && windowVisible && playback == Playback::Playing; }
};

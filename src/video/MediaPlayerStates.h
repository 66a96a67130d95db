#pragma once

// How any player of the scene says what it does and how far its medium is: Qt Multimedia's two
// enumerations by value and name, without the sound libraries that its QML module brings to every
// start. The scene has them as MediaPlayer of "KMedia 1.0"; values only.

#include <QObject>

namespace MediaPlayerStates {

Q_NAMESPACE

enum PlaybackState { StoppedState, PlayingState, PausedState };
Q_ENUM_NS(PlaybackState)

enum Status {
    UnknownStatus,
    NoMedia,
    Loading,
    Loaded,
    Stalled,
    Buffering,
    Buffered,
    EndOfMedia,
    InvalidMedia
};
Q_ENUM_NS(Status)

} // namespace MediaPlayerStates

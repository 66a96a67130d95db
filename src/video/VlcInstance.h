#pragma once

// The one libvlc instance of the process, the arguments it starts with, and what sound outputs it
// offers. Made at first use on the GUI thread, released by Application after the view is gone.

#include <QStringList>

struct VlcConfig;
struct libvlc_instance_t;

/// Null when libvlc refused its arguments; then it is not tried again.
libvlc_instance_t *vlcInstance();
/// No player may live any more.
void releaseVlcInstance();

QStringList vlcDefaultInstanceArguments();
QStringList vlcDefaultMediaOptions();

/// What libvlc starts with: the default or, in custom mode, the user's list; at most 64 texts.
QStringList vlcInstanceArguments(const VlcConfig &config);
/// What each media gets: the default or, in custom mode, the user's list.
QStringList vlcMediaOptions(const VlcConfig &config);

/// A device of one of libvlc's sound outputs.
struct VlcAudioDevice
{
    QString output; ///< libvlc's name of the output
    QString device; ///< libvlc's identifier of the device
    QString label;  ///< "output: device", as people read it
};

/// Empty without an instance.
QList<VlcAudioDevice> vlcAudioDevices();

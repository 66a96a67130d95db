#pragma once

// The process-wide "vlc/" settings; made and published by main, loaded and saved by Application,
// changed by KVideoPlugin. Belongs to the GUI thread: the player copies what its threads need.

#include <QString>

class KernelSettingsReader;
class KernelSettingsWriter;

struct VlcConfig
{
    bool hardwareDecoding = false; ///< stored and announced; no argument of libvlc follows from it
    bool disableAudio = false;
    QString customInstanceArguments; ///< separated by ",", for custom mode
    QString customMediaOptions;      ///< separated by ",", for custom mode
    bool customMode = false;         ///< of this run alone, from the command line
    bool shaderColorConversion = true;
    int audioDelay = 0; ///< milliseconds

    void load(KernelSettingsReader &reader);
    void save(KernelSettingsWriter &writer) const;

    /// The published configuration, else one with the defaults.
    static VlcConfig &current();
    /// @p config stays its maker's; null takes it back.
    static void publish(VlcConfig *config);
};

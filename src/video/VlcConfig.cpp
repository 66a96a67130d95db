#include "video/VlcConfig.h"

#include "settings/KernelSettingsReader.h"
#include "settings/KernelSettingsWriter.h"

namespace {

VlcConfig *published = nullptr;

const QString kHardwareDecoding = QStringLiteral("vlc/hardwareDecoding");
const QString kDisableAudio = QStringLiteral("vlc/disableAudio");
const QString kCustomInstanceArguments = QStringLiteral("vlc/customInstanceArguments");
const QString kCustomMediaOptions = QStringLiteral("vlc/customMediaOptions");
const QString kShaderColorConversion = QStringLiteral("vlc/shaderColorConversion");
const QString kAudioDelay = QStringLiteral("vlc/audioDelay");

} // namespace

void VlcConfig::load(KernelSettingsReader &reader)
{
    const VlcConfig defaults;
    hardwareDecoding = reader.GetBool(kHardwareDecoding, defaults.hardwareDecoding);
    disableAudio = reader.GetBool(kDisableAudio, defaults.disableAudio);
    customInstanceArguments =
        reader.GetString(kCustomInstanceArguments, defaults.customInstanceArguments);
    customMediaOptions = reader.GetString(kCustomMediaOptions, defaults.customMediaOptions);
    shaderColorConversion = reader.GetBool(kShaderColorConversion, defaults.shaderColorConversion);
    audioDelay = reader.GetInt(kAudioDelay, defaults.audioDelay);
}

void VlcConfig::save(KernelSettingsWriter &writer) const
{
    writer.Set(kHardwareDecoding, hardwareDecoding);
    writer.Set(kDisableAudio, disableAudio);
    writer.Set(kCustomInstanceArguments, customInstanceArguments);
    writer.Set(kCustomMediaOptions, customMediaOptions);
    writer.Set(kShaderColorConversion, shaderColorConversion);
    writer.Set(kAudioDelay, audioDelay);
}

VlcConfig &VlcConfig::current()
{
    static VlcConfig defaults;
    return published ? *published : defaults;
}

void VlcConfig::publish(VlcConfig *config)
{
    published = config;
}

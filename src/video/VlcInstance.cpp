#include "video/VlcInstance.h"

#include "video/VlcConfig.h"
#include "video/VlcHandles.h"

#include <vector>

namespace {

constexpr int kMaximumArguments = 64;

struct Instance
{
    VlcInstanceHandle handle;
    bool tried = false;
};

Instance &theInstance()
{
    static Instance instance;
    return instance;
}

QStringList splitByComma(const QString &text)
{
    return text.split(QLatin1Char(','), Qt::KeepEmptyParts);
}

} // namespace

libvlc_instance_t *vlcInstance()
{
    Instance &instance = theInstance();
    if (instance.tried)
        return instance.handle.get();
    instance.tried = true;

    std::vector<QByteArray> texts;
    for (const QString &argument : vlcInstanceArguments(VlcConfig::current()))
        texts.push_back(argument.toLatin1());
    std::vector<const char *> arguments;
    arguments.reserve(texts.size());
    for (const QByteArray &text : texts)
        arguments.push_back(text.constData());
    instance.handle.reset(libvlc_new(int(arguments.size()), arguments.data()));
    return instance.handle.get();
}

void releaseVlcInstance()
{
    theInstance() = {};
}

QStringList vlcDefaultInstanceArguments()
{
    QStringList arguments{QStringLiteral("--verbose=0"), QStringLiteral("--quiet"),
                          QStringLiteral("--intf=dummy"), QStringLiteral("--ignore-config"),
                          QStringLiteral("no-plugins-cache")};
    if (VlcConfig::current().disableAudio)
        arguments.append(QStringLiteral("--noaudio"));
    return arguments;
}

QStringList vlcDefaultMediaOptions()
{
    return {QStringLiteral(":cineform-output-formats=YUYV"),
            QStringLiteral(":cineform-skip-frames=true"), QStringLiteral("no-plugins-cache")};
}

QStringList vlcInstanceArguments(const VlcConfig &config)
{
    const QStringList arguments = config.customMode ? splitByComma(config.customInstanceArguments)
                                                    : vlcDefaultInstanceArguments();
    return arguments.mid(0, kMaximumArguments);
}

QStringList vlcMediaOptions(const VlcConfig &config)
{
    return config.customMode ? splitByComma(config.customMediaOptions) : vlcDefaultMediaOptions();
}

QList<VlcAudioDevice> vlcAudioDevices()
{
    QList<VlcAudioDevice> result;
    libvlc_instance_t *instance = vlcInstance();
    if (!instance)
        return result;
    libvlc_audio_output_t *outputs = libvlc_audio_output_list_get(instance);
    for (auto *output = outputs; output; output = output->p_next) {
        auto *devices = libvlc_audio_output_device_list_get(instance, output->psz_name);
        for (auto *device = devices; device; device = device->p_next) {
            VlcAudioDevice entry;
            entry.output = QString::fromUtf8(output->psz_name);
            entry.device = QString::fromUtf8(device->psz_device);
            entry.label = QStringLiteral("%1").arg(QString::fromUtf8(output->psz_description)) +
                          QStringLiteral(": %1").arg(QString::fromUtf8(device->psz_description));
            result.append(entry);
        }
        libvlc_audio_output_device_list_release(devices);
    }
    libvlc_audio_output_list_release(outputs);
    return result;
}

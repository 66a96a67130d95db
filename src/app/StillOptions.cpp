#include "app/StillOptions.h"

#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "settings/KSettingsReaders.h"

StillOptions::StillOptions(KSettings *settings, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
{
    take();
    connect(m_settings, &KSettings::storeChanged, this, [this](const QString &key) {
        if (key.startsWith(QLatin1String("image/")))
            take();
    });
}

void StillOptions::refresh()
{
    // A store that cannot be read keeps the values that are known.
    if (m_settings->settingsManager()->Flush())
        take();
}

void StillOptions::take()
{
    KSRFromKSettingsManager reader(m_settings->settingsManager());
    const RawOptions before = m_options.raw;
    m_options = ImageOptions::read(reader);
    if (m_options.raw == before)
        return;
    emit optionsChanged();
    ++m_edition;
    emit editionChanged();
}

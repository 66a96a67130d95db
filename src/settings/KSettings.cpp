#include "settings/KSettings.h"

#include "foundation/KVersion.h"
#include "settings/KSettingsManager.h"

#include <QUrl>
#include <QtMath>

namespace {

const QLatin1String kPersistentScope("application");
const QLatin1String kRunScope("instance");

QString twinOf(const QString &key)
{
    return QString(key).replace(kPersistentScope, kRunScope);
}

#ifdef QT_NO_DEBUG
void diagnose(const char *, const QString &) {}
#else
void diagnose(const char *text, const QString &key)
{
    qWarning("%s", qPrintable(QString::fromLatin1(text).arg(key)));
}
#endif

/// @p value as a bool, number or text like @p pattern; @p pattern where it does not convert.
QVariant convertedLike(const QVariant &pattern, const QVariant &value)
{
    bool converts = false;
    switch (pattern.type()) {
    case QVariant::Bool: {
        if (value.type() == QVariant::Bool)
            return value;
        const QString text = value.toString().toLower();
        if (text == QLatin1String("true") || text == QLatin1String("1"))
            return true;
        if (text == QLatin1String("false") || text == QLatin1String("0"))
            return false;
        return pattern;
    }
    case QVariant::Int: {
        // By way of double, so that "30", 30.0 and "3e1" are one number and no overflow passes.
        const double number = value.toDouble(&converts);
        const bool fits = converts && qAbs(number) <= std::numeric_limits<int>::max();
        return fits ? QVariant(qRound(number)) : pattern;
    }
    case QVariant::Double: {
        const double number = value.toDouble(&converts);
        return converts && qIsFinite(number) ? QVariant(number) : pattern;
    }
    default:
        return value.canConvert<QString>() ? QVariant(value.toString()) : pattern;
    }
}

} // namespace

KSettings::KSettings(const QString &applicationName, QObject *parent)
    : QObject(parent)
    , m_settingsManager(std::make_unique<KSettingsManager>(QSettings::UserScope,
                                                           KVersion::makerName(), applicationName))
{
    m_settingsManager->SetListener([this](const QString &key) { emit storeChanged(key); });
    init();
}

KSettings::~KSettings() = default;

void KSettings::init()
{
    enum class Change { AtOnce, NeedsRestart };
    const struct
    {
        const char *key;
        QVariant defaultValue;
        Change change = Change::AtOnce;
    } table[] = {
        {"application/hmd/hmdMode", false},
        {"application/volume", 0.5},
        {"application/playlist/imageDisplayDuration", 30},
        {"application/playlist/imageDisplayDurationNone", false},
        {"application/oculus/mac/useSDK", true},
        {"application/oculus/mac/dynamicPrediction", true},
        {"application/oculus/mac/usePrediction", true},
        {"application/oculus/mac/vsync", true},
        {"application/oculus/mac/overdrive", true},
        {"application/oculus/mac/fullscreen", true},
        {"application/hmd/sdk", "auto", Change::NeedsRestart},
        {"application/hmd/gazeUI", false, Change::NeedsRestart},
        {"application/realsense/feedbackScreen", true},
        {"application/leapmotion/ghostHands", true},
        {"application/communication/state", "off", Change::NeedsRestart},
        {"application/communication/port", 7755, Change::NeedsRestart},
        {"application/communication/rate", 20, Change::NeedsRestart},
        {"application/communication/format", 0, Change::NeedsRestart},
        {"application/communication/ipMode", "localhost", Change::NeedsRestart},
        {"application/communication/ipCustom", "192.168.1.1", Change::NeedsRestart},
        {"application/communication/urlMode", 0, Change::NeedsRestart},
        {"application/communication/orientationMode", 0, Change::NeedsRestart},
        {"application/input/projection", 0},
        {"application/input/stereoscopy", 5},
        {"application/output/projection", 0},
        {"application/output/display", "standard"},
        {"application/general/loopMode", 1},
        {"application/general/touchMode", true},
        {"application/general/enableAnalytics", true, Change::NeedsRestart},
        {"application/general/yprRadUnit", false},
        {"application/general/cameraMoveSteps", 90.0},
        {"application/general/cameraInertia", 400},
        // "toBeDefine" stands for a folder that the settings screen has yet to choose.
        {"application/general/fileDialogLastFolder", "toBeDefine"},
        {"application/general/printSavePath", "toBeDefine"},
        {"application/advanced/forceopengl", false, Change::NeedsRestart},
        {"application/advanced/sharedmemory", false, Change::NeedsRestart},
        {"application/window/width", 1000},
        {"application/window/height", 600},
    };
    for (const auto &row : table) {
        const QString key = QString::fromLatin1(row.key);
        m_defaultValues[key] = row.defaultValue;
        if (row.change == Change::NeedsRestart)
            m_needRestartValues[key] = QString();
    }
}

void KSettings::load()
{
    for (auto entry = m_defaultValues.cbegin(); entry != m_defaultValues.cend(); ++entry) {
        const QString &key = entry.key();
        QVariant value = m_settingsManager->GetVariant(key, entry.value());
        // The INI format gives booleans back as text.
        if (value.type() == QVariant::String) {
            const QString text = value.toString();
            if (text == QLatin1String("true"))
                value = true;
            else if (text == QLatin1String("false"))
                value = false;
        }
        m_values[key] = value;
        m_values[twinOf(key)] = value;
        if (m_needRestartValues.contains(key))
            m_needRestartValues[key] = value;
    }
}

void KSettings::save()
{
    // A start that ended before loading has nothing to say about the store.
    if (m_values.isEmpty())
        return;
    for (auto entry = m_defaultValues.cbegin(); entry != m_defaultValues.cend(); ++entry)
        m_settingsManager->Set(entry.key(), m_values.value(entry.key()));
}

KSettingsManager *KSettings::settingsManager() const
{
    return m_settingsManager.get();
}

void KSettings::set(QString key, QVariant value)
{
    if (!m_values.contains(key)) {
        diagnose("ERROR in KSetting::Set() : key '%1'' does not exist, ensure to set it in "
                 "KSettings::init() function.",
                 key);
        return;
    }
    if (value.type() == QVariant::Url)
        value = value.toUrl().toString();

    m_values[key] = value;
    emit settingsChanged(key);
    if (key.startsWith(kPersistentScope)) {
        const QString twin = twinOf(key);
        m_values[twin] = value;
        emit settingsChanged(twin);
    }
    const auto initial = m_needRestartValues.constFind(key);
    if (initial != m_needRestartValues.constEnd())
        emit settingsNeedRestartChanged(key, value, initial.value());
}

void KSettings::toggle(QString key)
{
    const auto entry = m_values.constFind(key);
    if (entry == m_values.constEnd()) {
        diagnose("ERROR in KSetting::Toggle() : key '%1'' does not exist, ensure to set it in "
                 "KSettings::init() function.",
                 key);
    } else if (entry->type() != QVariant::Bool) {
        diagnose("ERROR in KSetting::Toggle() : key '%1'' is not a boolean, ensure to call toggle "
                 "only with boolean value",
                 key);
    } else {
        set(key, !entry->toBool());
    }
}

QVariant KSettings::get(QString key) const
{
    const auto entry = m_values.constFind(key);
    if (entry == m_values.constEnd()) {
        diagnose("ERROR in KSetting::Get() : key '%1'' does not exist, ensure to set it in "
                 "KSettings::init() function.",
                 key);
        return {};
    }
    return entry.value();
}

QVariant KSettings::getTyped(QString key) const
{
    const QVariant value = get(key);
    if (key.startsWith(kRunScope))
        key.replace(0, kRunScope.size(), kPersistentScope);
    return convertedLike(m_defaultValues.value(key), value);
}

void KSettings::resetDefaultValue(QString key)
{
    const auto entry = m_defaultValues.constFind(key);
    if (entry == m_defaultValues.constEnd()) {
        diagnose("ERROR in KSetting::resetDefaultValue() : key '%1'' does not exist.", key);
        return;
    }
    set(key, entry.value());
}

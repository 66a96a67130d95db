#include "settings/KSettings.h"

#include "settings/StoreFile.h"
#include "support/WarningGuard.h"

#include <QUrl>

namespace {

/// Keys below "application/" that share a default and whether a change needs a restart.
// clang-format off
const struct
{
    QVariant value;
    bool needsRestart;
    const char *keys;
} kTable[] = {
    {false, true, "advanced/forceopengl advanced/sharedmemory hmd/gazeUI"},
    {true, true, "general/enableAnalytics"},
    {0, true, "communication/format communication/orientationMode communication/urlMode"},
    {20, true, "communication/rate"}, {7755, true, "communication/port"},
    {"192.168.1.1", true, "communication/ipCustom"},
    {"localhost", true, "communication/ipMode"}, {"off", true, "communication/state"},
    {"auto", true, "hmd/sdk"},
    {false, false, "general/yprRadUnit hmd/hmdMode playlist/imageDisplayDurationNone"},
    {true, false, "general/touchMode leapmotion/ghostHands realsense/feedbackScreen"},
    {true, false, "oculus/mac/dynamicPrediction oculus/mac/fullscreen oculus/mac/overdrive"},
    {true, false, "oculus/mac/usePrediction oculus/mac/useSDK oculus/mac/vsync"},
    {0, false, "input/projection output/projection"}, {1, false, "general/loopMode"},
    {5, false, "input/stereoscopy"}, {30, false, "playlist/imageDisplayDuration"},
    {400, false, "general/cameraInertia"}, {600, false, "window/height"},
    {1000, false, "window/width"}, {0.5, false, "volume"},
    {90.0, false, "general/cameraMoveSteps"}, {"standard", false, "output/display"},
    {"toBeDefine", false, "general/fileDialogLastFolder general/printSavePath"}};
// clang-format on

QString twin(QString key)
{
    return key.replace("application", "instance");
}

/// Settings with a store of their own and everything they signal, in order.
struct Session
{
    explicit Session(const test::StoreFile &file)
        : settings(file.application)
    {
        settings.load();
        QObject::connect(&settings, &KSettings::settingsChanged, [this](const QString &key) {
            signalled += key + '=' + settings.get(key).toString() + ';';
        });
        QObject::connect(&settings, &KSettings::settingsNeedRestartChanged,
                         [this](const QString &key, const QVariant &now, const QVariant &initial) {
                             signalled += "restart " + key + ' ' + now.toString() + ' ' +
                                          initial.toString() + ';';
                         });
    }
    std::string take() { return std::exchange(signalled, QString()).toStdString(); }

    KSettings settings;
    QString signalled;
};

void expectRow(Session &run, const QStringList &keys, const QVariant &value, bool needsRestart)
{
    const QString key = keys.last();
    const auto change = [&](const QString &now) {
        const QString restart = "restart " + key + ' ' + now + ' ' + value.toString() + ';';
        return key + '=' + now + ';' + twin(key) + '=' + now + ';' + (needsRestart ? restart : "");
    };
    SCOPED_TRACE(key.toStdString());
    for (const QString &each : {key, twin(key)}) {
        EXPECT_EQ(run.settings.get(each), value);
        EXPECT_EQ(run.settings.get(each).type(), value.type());
    }
    run.settings.set(key, "x");
    run.settings.resetDefaultValue(key);
    EXPECT_EQ(run.take(), (change("x") + change(value.toString())).toStdString());
}

} // namespace

TEST(Settings, TableOfKeysDefaultsAndRestarts)
{
    const test::StoreFile file;
    QStringList keys;
    {
        Session run(file);
        for (const auto &row : kTable) {
            for (const QString &name : QString(row.keys).split(' '))
                expectRow(run, keys << "application/" + name, row.value, row.needsRestart);
        }
        EXPECT_TRUE(file.text().isEmpty());
        run.settings.save();
    }
    // Exactly these keys, defaults included and no twins.
    QStringList stored = QSettings(file.path, QSettings::IniFormat).allKeys();
    stored.sort();
    keys.sort();
    EXPECT_EQ(keys.size(), 38);
    EXPECT_EQ(stored.join(' ').toStdString(), keys.join(' ').toStdString());
}

TEST(Settings, ReadBackWhatAnEarlierRunLeft)
{
    const test::StoreFile file;
    {
        Session earlier(file);
        earlier.settings.set("application/volume", 0.25);
        earlier.settings.set("application/general/loopMode", 2);
        earlier.settings.set("application/general/touchMode", false);
        earlier.settings.set("application/general/printSavePath", QUrl("file:///tmp/a b"));
        earlier.settings.set("instance/window/width", 1);
        earlier.settings.save();
    }
    EXPECT_TRUE(file.text().contains("general\\loopMode=2")) << file.text().toStdString();
    Session run(file);
    // Booleans come back as such, numbers as text.
    EXPECT_EQ(run.settings.get("application/general/touchMode").type(), QVariant::Bool);
    EXPECT_FALSE(run.settings.get("instance/general/touchMode").toBool());
    EXPECT_EQ(run.settings.get("application/volume").toDouble(), 0.25);
    EXPECT_EQ(run.settings.getTyped("instance/volume"), QVariant(0.25));
    EXPECT_EQ(run.settings.getTyped("application/general/loopMode").type(), QVariant::Int);
    EXPECT_EQ(run.settings.getTyped("application/general/loopMode"), QVariant(2));
    EXPECT_EQ(run.settings.get("application/general/printSavePath"), QVariant("file:///tmp/a b"));
    EXPECT_EQ(run.settings.get("application/window/width").toInt(), 1000);
}

TEST(Settings, DamagedValuesGiveTheDefaultWhereTyped)
{
    const test::StoreFile file;
    file.write("[application]\nvolume=nan\nwindow\\width=99999999999\nwindow\\height=1e2\n"
               "general\\loopMode=@Invalid()\ngeneral\\touchMode=False\nhmd\\gazeUI=perhaps\n"
               "output\\display=\"3d, x\"\ninput\\projection=2, 3\nhmd\\hmdMode=false\n");
    Session run(file);
    // clang-format off
    const struct
    {
        const char *key;
        QVariant expected;
    } rows[] = {
        {"volume", 0.5}, {"window/width", 1000}, {"window/height", 100}, {"general/loopMode", 1},
        {"general/touchMode", false}, {"hmd/gazeUI", false}, {"output/display", "3d, x"},
        {"input/projection", 0}, {"hmd/hmdMode", false}};
    // clang-format on
    for (const auto &row : rows) {
        const QVariant value = run.settings.getTyped(QString("instance/") + row.key);
        EXPECT_EQ(value, row.expected) << row.key << ' ' << value.toString().toStdString();
        EXPECT_EQ(value.type(), row.expected.type()) << row.key;
    }
    EXPECT_EQ(run.settings.get("application/general/touchMode"), QVariant("False"));
    EXPECT_EQ(run.settings.get("application/hmd/hmdMode").type(), QVariant::Bool);
}

TEST(Settings, TwinsTogglesAndSignals)
{
    const test::StoreFile file;
    Session run(file);
    KSettings &settings = run.settings;

    settings.set("instance/general/loopMode", 2);
    EXPECT_EQ(run.take(), "instance/general/loopMode=2;");
    EXPECT_EQ(settings.get("application/general/loopMode"), QVariant(1));
    settings.set("instance/hmd/sdk", "oculus");
    EXPECT_EQ(run.take(), "instance/hmd/sdk=oculus;");

    settings.toggle("instance/general/touchMode");
    EXPECT_EQ(run.take(), "instance/general/touchMode=false;");
    EXPECT_EQ(settings.get("application/general/touchMode"), QVariant(true));
    settings.toggle("application/general/touchMode");
    EXPECT_EQ(run.take(), "application/general/touchMode=false;instance/general/touchMode=false;");

    // What changes nothing and says nothing to anybody but a developer.
    test::WarningGuard guard({"^ERROR in KSetting::\\w+\\(\\) : key '.*'' "});
    settings.toggle("application/volume");
    settings.toggle("application/hmd/sdk");
    settings.toggle("application/unknown");
    settings.set("application/unknown", 1);
    settings.resetDefaultValue("instance/general/loopMode");
    EXPECT_FALSE(settings.get("application/unknown").isValid());
    EXPECT_FALSE(settings.getTyped("application/unknown").isValid());
    EXPECT_EQ(run.take(), "");
    EXPECT_EQ(settings.get("instance/general/loopMode"), QVariant(2));
}

TEST(Settings, StartThatEndsBeforeLoadingLeavesTheStoreAlone)
{
    const test::StoreFile file;
    file.write("[application]\nvolume=0.75\n");
    KSettings(file.application).save();
    EXPECT_EQ(file.text().toStdString(), "[application]\nvolume=0.75\n");
}

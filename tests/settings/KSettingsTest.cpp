#include "settings/KSettings.h"

#include "settings/StoreFile.h"
#include "support/WarningGuard.h"

#include <QRegularExpression>
#include <QUrl>

namespace {

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

} // namespace

TEST(Settings, AChangeTellsTheKeyItsTwinAndTheRestart)
{
    // clang-format off
    const std::tuple<QString, QVariant, bool> rows[] = {
        {"application/communication/port", 7755, true}, {"application/hmd/sdk", "auto", true},
        {"application/general/enableAnalytics", true, true},
        {"application/volume", 0.5, false}, {"application/general/printSavePath", "toBeDefine", false}};
    // clang-format on
    const test::StoreFile file;
    Session run(file);
    for (const auto &[key, value, needsRestart] : rows) {
        for (const QString &each : {key, twin(key)}) {
            EXPECT_EQ(run.settings.get(each), value);
            EXPECT_EQ(run.settings.get(each).type(), value.type());
        }
        run.settings.set(key, "x");
        run.settings.resetDefaultValue(key);
        QString expected;
        for (const QString &now : {QStringLiteral("x"), value.toString()}) {
            expected += key + '=' + now + ';' + twin(key) + '=' + now + ';';
            if (needsRestart)
                expected += "restart " + key + ' ' + now + ' ' + value.toString() + ';';
        }
        EXPECT_EQ(run.take(), expected.toStdString());
    }
}

TEST(Settings, ARunLeavesEveryKeyAndNoTwin)
{
    const test::StoreFile file;
    Session run(file);
    EXPECT_TRUE(file.text().isEmpty());
    run.settings.save();
    const QStringList stored = QSettings(file.path, QSettings::IniFormat).allKeys();
    EXPECT_EQ(stored.size(), 38);
    EXPECT_EQ(stored.filter(QRegularExpression("^application/")).size(), 38);
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
    const std::tuple<const char *, QVariant> rows[] = {
        {"volume", 0.5}, {"window/width", 1000}, {"window/height", 100}, {"general/loopMode", 1},
        {"general/touchMode", false}, {"hmd/gazeUI", false}, {"output/display", "3d, x"},
        {"input/projection", 0}, {"hmd/hmdMode", false}};
    // clang-format on
    for (const auto &[key, expected] : rows) {
        const QVariant value = run.settings.getTyped(QString("instance/") + key);
        EXPECT_EQ(value, expected) << key << ' ' << value.toString().toStdString();
        EXPECT_EQ(value.type(), expected.type()) << key;
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

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "input/KSensor.h"
#include "input/SensorStart.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>
#include <limits>

namespace {

constexpr SensorMatrix kIdentity{1, 0, 0, 0, 1, 0, 0, 0, 1};

/// A turn about the vertical axis.
SensorMatrix turn(float angle)
{
    const float c = std::cos(angle);
    const float s = std::sin(angle);
    return {c, 0, -s, 0, 1, 0, s, 0, c};
}

/// A service that fails at a step, with sensors of which some have the right type.
class Service : public SensorService
{
public:
    enum Step { Manager, Collection, Choice, Field, Connection, Nothing };
    Step failing = Nothing;
    std::vector<bool> sensors{true};
    int chosen = -1;

    bool createManager() override { return failing != Manager; }
    bool openOrientationSensors() override { return failing != Collection; }
    int sensorCount() override { return int(sensors.size()); }
    bool isAggregatedOrientation(int index) override { return sensors[std::size_t(index)]; }
    bool chooseSensor(int index) override
    {
        chosen = index;
        return failing != Choice;
    }
    bool supportsRotationMatrix() override { return failing != Field; }
    bool connectToSensor() override { return failing != Connection; }
};

class AvailableSensor : public KSensor
{
public:
    explicit AvailableSensor(KGlobalObject *globalObject)
        : KSensor(globalObject)
    {
        setAvailable(true);
    }
};

} // namespace

TEST(Sensor, TheSearchEndsWithItsWords)
{
    const std::string closing = "Sensor initialization failed.\n";
    const std::tuple<Service::Step, std::vector<bool>, std::string, int> rows[] = {
        {Service::Manager, {true}, "Error : cannot initialize sensor manager.\n" + closing, -1},
        {Service::Collection,
         {true},
         "Error : cannot initialize sensor collection.\n" + closing,
         -1},
        {Service::Nothing, {}, "Error : no orientation sensor found.\n" + closing, -1},
        {Service::Nothing, {false}, "Error : cannot find a sensor with supported type.\n", -1},
        {Service::Choice, {true}, "Error : cannot find a sensor with supported type.\n", 0},
        {Service::Field, {true}, "Error : sensor data type is not supported.\n", 0},
        {Service::Connection, {true}, "Error : cannot connect to sensor.\n", 0},
        {Service::Nothing, {true}, "Sensor initialization succeeded.\n", 0},
        {Service::Nothing, {false, true, true}, "Sensor initialization succeeded.\n", 1}};
    for (const auto &[failing, sensors, text, chosen] : rows) {
        Service service;
        service.failing = failing;
        service.sensors = sensors;
        const SensorStart start = startSensor(service);
        EXPECT_EQ(start.logMessage.toStdString(), text);
        EXPECT_EQ(start.available, text.find("succeeded") != std::string::npos);
        EXPECT_EQ(service.chosen, chosen);
    }
}

TEST(Sensor, OnlyVectorsOfNineFloatsAreReports)
{
    SensorMatrix numbers = kIdentity;
    const std::tuple<quint16, std::size_t, float, bool> rows[] = {
        {0x1011, 36, 1, true},
        {0x1011, 64, 1, true},
        {0x1011, 35, 1, false},
        {0x1011, 0, 1, false},
        {0x0011, 36, 1, false},
        {0x1004, 36, 1, false},
        {0x1011, 36, std::numeric_limits<float>::quiet_NaN(), false},
        {0x1011, 36, std::numeric_limits<float>::infinity(), false}};
    for (const auto &[type, count, last, taken] : rows) {
        numbers[8] = last;
        std::array<char, 64> bytes{};
        std::copy_n(reinterpret_cast<const char *>(numbers.data()), 36, bytes.begin());
        EXPECT_EQ(sensorMatrixFromReport(type, bytes.data(), count).has_value(), taken)
            << type << " " << count;
    }
    EXPECT_FALSE(sensorMatrixFromReport(0x1011, nullptr, 36));
}

TEST(Sensor, TurnsTheViewRelativeToThePoseAtActivation)
{
    auto *application = static_cast<Application *>(qApp);
    application->setGlobalObject(std::make_unique<KGlobalObject>(application));
    KGlobalObject *view = application->globalObject();
    AvailableSensor sensor(view);
    view->setYaw(0.5F);

    sensor.takeMatrix(turn(1));
    EXPECT_FLOAT_EQ(view->yaw(), 0.5F) << "off, it is not heard";
    for (const float start : {1.0F, -2.0F}) {
        sensor.setActivated(true);
        sensor.takeMatrix(turn(start));
        EXPECT_NEAR(view->yaw(), 0, 1e-6);
        sensor.takeMatrix(turn(start + 0.25F));
        EXPECT_NEAR(view->yaw(), 0.25F, 1e-6);
        sensor.setActivated(false);
        EXPECT_EQ(view->rotationMatrix(), QMatrix4x4());
        EXPECT_EQ(view->yaw(), 0);
    }
    application->setGlobalObject(nullptr);
    sensor.setActivated(true);
    sensor.takeMatrix(kIdentity);
}

TEST(Sensor, WithoutOneItStaysOff)
{
    const auto sensor = KSensor::create(nullptr);
    QSignalSpy changed(sensor.get(), &KSensor::activatedChanged);
    sensor->setActivated(true);
    EXPECT_FALSE(sensor->activated());
    EXPECT_TRUE(changed.isEmpty());
    EXPECT_FALSE(sensor->isSupported());
    EXPECT_FALSE(sensor->available());
}

#include "render/KShaderCodeBuilder.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "settings/KSettings.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

using B = KShaderCodeBuilder;

class Builder : public ::testing::Test
{
protected:
    Builder()
    {
        application->settings()->set("instance/output/projection", B::FISHEYE);
        application->settings()->set("instance/input/projection", B::CUBEMAP);
        application->settings()->set("instance/input/stereoscopy", "2"); // as the store gives it
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<KShaderCodeBuilder>(application));
        builder = application->shaderBuilder();
    }

    ~Builder() override
    {
        application->setOption("adobeplugin", false);
        application->setShaderBuilder(nullptr);
        application->setGlobalObject(nullptr);
    }

    Application *application = static_cast<Application *>(qApp);
    KShaderCodeBuilder *builder = nullptr;
};

TEST_F(Builder, StartsWithTheSettingsOfThisRun)
{
    EXPECT_EQ(builder->projection(), B::FISHEYE);
    EXPECT_EQ(builder->projectionSource(), B::CUBEMAP);
    EXPECT_EQ(builder->stereoMode(), B::STEREO_3D_SIDEBYSIDE);
}

TEST_F(Builder, EachPropertySignalsItsChangesAlone)
{
    const struct
    {
        const char *property;
        const char *signal;
        QVariant value;
    } cases[] = {
        {"hmdMode", SIGNAL(hmdModeChanged()), true},
        {"effect", SIGNAL(effectChanged()), 3},
        {"projection", SIGNAL(projectionChanged()), 1},
        {"stereoMode", SIGNAL(stereoModeChanged()), 4},
        {"projectionSource", SIGNAL(projectionSourceChanged()), 3},
        {"rotationSource", SIGNAL(rotationSourceChanged()), 2},
        {"invertedColors", SIGNAL(invertedColorsChanged()), true},
        {"texturePixelFormat", SIGNAL(texturePixelFormatChanged()), "I420"},
    };
    for (const auto &c : cases) {
        QSignalSpy spy(builder, c.signal);
        for (int i = 0; i < 2; ++i)
            builder->setProperty(c.property, c.value);
        EXPECT_EQ(builder->property(c.property), c.value) << c.property;
        EXPECT_EQ(spy.count(), 1) << c.property;
    }
}

TEST_F(Builder, StepsThroughEffectsAndProjections)
{
    for (const int expected : {1, 2, 3, 4, 5, 6, 7, 0}) {
        builder->setNextEffect();
        EXPECT_EQ(builder->effect(), expected);
    }
    for (const int expected : {B::ORVEX, B::RECTILINEAR, B::LITTLE_PLANET, B::FISHEYE}) {
        builder->setNextProjection();
        EXPECT_EQ(application->settings()->get("instance/output/projection").toInt(), expected);
        EXPECT_EQ(builder->projection(), expected) << "comes back through the setting";
    }
}

TEST_F(Builder, ExchangesTheEyesOfStereoSourcesOnly)
{
    const int exchanged[] = {0, 3, 4, 1, 2, 5};
    for (int mode = 0; mode <= B::STEREO_AUTO; ++mode) {
        builder->setStereoMode(mode);
        QSignalSpy spy(builder, &KShaderCodeBuilder::stereoModeChanged);
        builder->switchEyeStereoscopy();
        EXPECT_EQ(builder->stereoMode(), exchanged[mode]);
        EXPECT_EQ(spy.count(), exchanged[mode] == mode ? 0 : 1);
    }
}

TEST_F(Builder, AHostApplicationsFramesAreBlueFirstAndBottomUp)
{
    const QString plain = builder->fragmentShaderCode(false, false, false);
    EXPECT_TRUE(plain.contains("color = texture2D(uSampler,a).rgb;"));
    EXPECT_FALSE(plain.contains("a.y = 1.0 - a.y;"));

    QSignalSpy spy(builder, &KShaderCodeBuilder::invertedColorsChanged);
    application->setOption("adobeplugin", true);
    const QString host = builder->fragmentShaderCode(false, false, false);
    EXPECT_TRUE(host.contains("color = texture2D(uSampler,a).bgr;"));
    EXPECT_TRUE(host.contains("a.y = 1.0 - a.y;"));
    EXPECT_TRUE(builder->invertedColors());
    EXPECT_EQ(spy.count(), 0);
}

TEST_F(Builder, OnlyTwoTurnsFisheyeInput)
{
    builder->setProjectionSource(B::FISHEYE_CIRCLE);
    for (const int rotation : {0, 1, 2, 3}) {
        builder->setRotationSource(rotation);
        EXPECT_EQ(builder->fragmentShaderCode(false, false, false).contains("pt.x = ty;"),
                  rotation == 2);
    }
}

} // namespace

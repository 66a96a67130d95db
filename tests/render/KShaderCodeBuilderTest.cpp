#include "render/KShaderCodeBuilder.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "settings/KSettings.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

using B = KShaderCodeBuilder;

struct Builder : ::testing::Test
{
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

TEST_F(Builder, StepsThroughEffectsAndProjections)
{
    for (const int expected : {1, 2, 3, 4, 5, 6, 7, 0}) {
        builder->setNextEffect();
        EXPECT_EQ(builder->effect(), expected);
    }
    EXPECT_EQ(builder->projection(), B::FISHEYE) << "by the setting of this run";
    for (const int expected : {B::ORVEX, B::RECTILINEAR, B::LITTLE_PLANET, B::FISHEYE}) {
        builder->setNextProjection();
        EXPECT_EQ(builder->projection(), expected) << "comes back through the setting";
    }
}

TEST_F(Builder, ExchangesTheEyesOfStereoSourcesOnly)
{
    EXPECT_EQ(builder->stereoMode(), B::STEREO_3D_SIDEBYSIDE);
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
    QSignalSpy spy(builder, &KShaderCodeBuilder::invertedColorsChanged);
    for (const bool host : {false, true}) {
        application->setOption("adobeplugin", host);
        const QString text = builder->fragmentShaderCode(false, false, false);
        EXPECT_EQ(text.contains("color = texture2D(uSampler,a).bgr;"), host);
        EXPECT_EQ(text.contains("a.y = 1.0 - a.y;"), host);
        EXPECT_EQ(builder->blitShaderCode().contains("color.b,color.g,color.r"), host);
    }
    EXPECT_EQ(spy.count(), 0);
}

} // namespace

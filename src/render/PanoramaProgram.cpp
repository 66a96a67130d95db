#include "render/PanoramaProgram.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

bool PanoramaProgram::build(const QString &vertexText, const QString &fragmentText)
{
    if (!m_quad.build(vertexText, fragmentText))
        return false;

    const struct
    {
        int Locations::*location;
        const char *name;
    } uniforms[] = {
        {&Locations::sampler, "uSampler"},
        {&Locations::matViewInverse, "uMatViewInverse"},
        {&Locations::viewportSize, "uViewportSize"},
        {&Locations::viewportSizeMin, "uViewportSizeMin"},
        {&Locations::viewportSizeRatio, "uViewportSizeRatio"},
        {&Locations::fov, "uFov"},
        {&Locations::yawMin, "uYawMin"},
        {&Locations::yawMax, "uYawMax"},
        {&Locations::pitchMin, "uPitchMin"},
        {&Locations::pitchMax, "uPitchMax"},
        {&Locations::colorMatrix, "uColorMatrix"},
        {&Locations::brightness, "uBrightness"},
        {&Locations::contrast, "uContrast"},
        {&Locations::hue, "uHue"},
        {&Locations::saturation, "uSaturation"},
        {&Locations::vibrance, "uVibrance"},
        {&Locations::vignettingRadius, "uVignettingRadius"},
        {&Locations::vignettingAmount, "uVignettingAmount"},
        {&Locations::scaleCorrector, "uScaleCorrector"},
        {&Locations::eye, "uEye"},
        {&Locations::cameraYaw, "uCameraYaw"},
        {&Locations::cameraPitch, "uCameraPitch"},
        {&Locations::projScale, "uProjScale"},
        {&Locations::projectionDistance, "uProjectionDistance"},
        {&Locations::time, "uTime"},
    };
    for (const auto &uniform : uniforms)
        m_at.*uniform.location = m_quad.uniformLocation(uniform.name);

    const QOpenGLContext *context = QOpenGLContext::currentContext();
    m_hasFixedFunctions =
        !context->isOpenGLES() && context->format().profile() != QSurfaceFormat::CoreProfile;
    return true;
}

void PanoramaProgram::draw(QOpenGLFunctions *functions, const PanoramaUniforms &uniforms,
                           GLuint texture)
{
    m_quad.bind();
    m_quad.set(m_at.matViewInverse, uniforms.matViewInverse);
    m_quad.set(m_at.sampler, 0);
    m_quad.set(m_at.eye, uniforms.eye);
    m_quad.set(m_at.viewportSize, uniforms.viewport.size);
    m_quad.set(m_at.viewportSizeMin, uniforms.viewport.sizeMin);
    m_quad.set(m_at.viewportSizeRatio, uniforms.viewport.sizeRatio);
    m_quad.set(m_at.fov, uniforms.fov);
    m_quad.set(m_at.scaleCorrector, uniforms.scaleCorrector);
    m_quad.set(m_at.yawMin, uniforms.yawMin);
    m_quad.set(m_at.yawMax, uniforms.yawMax);
    m_quad.set(m_at.pitchMin, uniforms.pitchMin);
    m_quad.set(m_at.pitchMax, uniforms.pitchMax);
    m_quad.set(m_at.colorMatrix, uniforms.colorMatrix);
    m_quad.set(m_at.brightness, uniforms.brightness);
    m_quad.set(m_at.contrast, uniforms.contrast);
    m_quad.set(m_at.hue, uniforms.hue);
    m_quad.set(m_at.saturation, uniforms.saturation);
    m_quad.set(m_at.vibrance, uniforms.vibrance);
    m_quad.set(m_at.time, uniforms.time);
    m_quad.set(m_at.vignettingRadius, uniforms.vignettingRadius);
    m_quad.set(m_at.vignettingAmount, uniforms.vignettingAmount);
    m_quad.set(m_at.cameraYaw, uniforms.cameraYaw);
    m_quad.set(m_at.cameraPitch, uniforms.cameraPitch);
    m_quad.set(m_at.projScale, uniforms.projScale);
    m_quad.set(m_at.projectionDistance, uniforms.projectionDistance);

    if (m_hasFixedFunctions)
        functions->glEnable(GL_TEXTURE_2D);
    functions->glActiveTexture(GL_TEXTURE0);
    functions->glBindTexture(GL_TEXTURE_2D, texture);
    // On every draw: the texture may be the scene graph's, which has its own idea of them.
    functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    functions->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    m_quad.draw(functions, uniforms.matrix);
}

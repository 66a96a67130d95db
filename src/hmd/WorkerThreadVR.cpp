#include "hmd/WorkerThreadVR.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "hmd/HeadMotion.h"
#include "hmd/HeadsetInterface.h"
#include "hmd/KHmd.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/ShaderText.h"
#include "settings/KSettings.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <chrono>

WorkerThreadVR::WorkerThreadVR(KHmd *hmd)
    : m_hmd(hmd)
    , m_application(hmd->application())
    , m_gazeUI(m_application->settings()->get(QStringLiteral("application/hmd/gazeUI")).toBool())
    , m_hmdPose(HeadMotion::noPose())
{
    followViewState();
    takeScene();
    dirtyShader();
}

WorkerThreadVR::~WorkerThreadVR() = default;

void WorkerThreadVR::followViewState()
{
    if (KShaderCodeBuilder *builder = m_application->shaderBuilder()) {
        builder->onTextChange(this, &WorkerThreadVR::dirtyShader);
        connect(builder, &KShaderCodeBuilder::projectionSourceChanged, this,
                &WorkerThreadVR::takeScene);
    }
    if (KGlobalObject *state = m_application->globalObject()) {
        for (auto changed :
             {&KGlobalObject::fovChanged, &KGlobalObject::yawChanged, &KGlobalObject::pitchChanged,
              &KGlobalObject::yawMinChanged, &KGlobalObject::yawMaxChanged,
              &KGlobalObject::pitchMinChanged, &KGlobalObject::pitchMaxChanged,
              &KGlobalObject::rotationMatrixChanged})
            connect(state, changed, this, &WorkerThreadVR::takeScene);
    }
}

void WorkerThreadVR::takeScene()
{
    const KGlobalObject *state = m_application->globalObject();
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!state || !builder)
        return;
    Scene scene;
    scene.offset = state->offsetMatrix();
    scene.fov = state->fov();
    scene.cameraYaw = state->yaw();
    scene.cameraPitch = state->clampPitch(state->pitch());
    scene.yawMin = state->yawMin();
    scene.yawMax = state->yawMax();
    scene.pitchMin = state->pitchMin();
    scene.pitchMax = state->pitchMax();
    scene.flat = builder->projectionSource() == KShaderCodeBuilder::STANDARD;
    {
        const std::lock_guard<PoseLock> lock(m_poseLock);
        m_scene = scene;
    }
    if (showsWholeSphere() != m_wholeSphere)
        dirtyShader();
}

bool WorkerThreadVR::showsWholeSphere() const
{
    const KGlobalObject *state = m_application->globalObject();
    return state && CameraMath::isWholeSphere(state->yawMin(), state->yawMax(), state->pitchMin(),
                                              state->pitchMax());
}

void WorkerThreadVR::dirtyShader()
{
    KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder)
        return;
    m_wholeSphere = showsWholeSphere();
    // A headset has no colour controls: they keep their neutral values for good.
    const shader::FixedUniforms fixed{true, m_wholeSphere};
    Texts texts;
    texts.vertex = builder->vertexShaderCode();
    texts.panorama =
        shader::withFixedUniforms(builder->fragmentShaderCode(true, false, false), fixed);
    texts.overlay = shader::withFixedUniforms(builder->fragmentShaderCode(true, true, true), fixed);
    const std::lock_guard<PoseLock> lock(m_poseLock);
    m_texts = texts;
    m_dirty = true;
}

bool WorkerThreadVR::prepareContext(QOpenGLContext *shareContext)
{
    if (!shareContext)
        return false;
    auto surface = std::make_unique<QOffscreenSurface>();
    surface->setFormat(shareContext->format());
    surface->create();
    auto context = std::make_unique<QOpenGLContext>();
    context->setShareContext(shareContext);
    context->setFormat(shareContext->format());
    if (!surface->isValid() || !context->create())
        return false;
    context->moveToThread(this);
    m_surface = std::move(surface);
    m_glContext = std::move(context);
    return true;
}

void WorkerThreadVR::stop()
{
    requestInterruption();
    wake();
}

void WorkerThreadVR::wake()
{
    const std::lock_guard<std::mutex> lock(m_sleepLock);
    m_woken = true;
    m_wake.notify_all();
}

QMatrix4x4 WorkerThreadVR::hmdPose() const
{
    const std::lock_guard<PoseLock> lock(m_poseLock);
    return m_hmdPose;
}

// --- Device thread ------------------------------------------------------------------------------

void WorkerThreadVR::sleepFor(int milliseconds)
{
    std::unique_lock<std::mutex> lock(m_sleepLock);
    if (!isInterruptionRequested() && !m_woken)
        m_wake.wait_for(lock, std::chrono::milliseconds(milliseconds));
    m_woken = false;
}

void WorkerThreadVR::log(const QString &text)
{
    QMetaObject::invokeMethod(
        m_hmd, [hmd = m_hmd, text] { hmd->setLogMessage(text); }, Qt::QueuedConnection);
}

bool WorkerThreadVR::makeCurrent()
{
    return m_glContext && m_glContext->makeCurrent(m_surface.get());
}

void WorkerThreadVR::releaseGraphics()
{
    if (makeCurrent()) {
        m_panorama.reset();
        m_overlay.reset();
        m_glContext->doneCurrent();
    }
    m_glContext.reset();
}

bool WorkerThreadVR::checkHmdMode(bool detected)
{
    // Settings and message boxes belong to the GUI thread, which may itself be waiting for this
    // thread to end: stop() wakes this wait.
    m_modeAnswer = ModeAnswer::None;
    QMetaObject::invokeMethod(
        this,
        [this, detected] {
            const bool goesOn = !m_hmd->agreeOnMode(detected);
            const std::lock_guard<std::mutex> lock(m_sleepLock);
            m_modeAnswer = goesOn ? ModeAnswer::GoesOn : ModeAnswer::Ends;
            m_wake.notify_all();
        },
        Qt::QueuedConnection);
    std::unique_lock<std::mutex> lock(m_sleepLock);
    m_wake.wait(lock,
                [this] { return m_modeAnswer != ModeAnswer::None || isInterruptionRequested(); });
    return m_modeAnswer == ModeAnswer::GoesOn;
}

void WorkerThreadVR::announceDevice()
{
    QMetaObject::invokeMethod(m_application, "initHmdUIManager", Qt::QueuedConnection);
}

void WorkerThreadVR::setEye(int eye, const QMatrix4x4 &projection, const QMatrix4x4 &eyeToHead,
                            const QSize &pixels)
{
    Eye &target = m_eyes[std::size_t(eye)];
    target.eyeToHead = HeadMotion::rotationOf(eyeToHead);
    if (target.viewport.pixels == pixels && target.projection == projection)
        return;
    target.projection = projection;
    target.viewport = viewportParameters(pixels, EyeLayout::Single, 1.0);
    target.quad = eyeQuad(projection, target.viewport.sizeRatio);
}

void WorkerThreadVR::storePose(const QMatrix4x4 &device)
{
    const QMatrix4x4 pose = HeadMotion::shiftedPose(device, m_hmd->shiftYaw());
    const std::lock_guard<PoseLock> lock(m_poseLock);
    m_hmdPose = pose;
}

void WorkerThreadVR::onFrameStart()
{
    const KTextureProvider *provider = m_application->textureProvider();
    if (!provider || provider->textureId() <= 0)
        return;
    HeadsetInterface *ui = m_interface;
    if (m_gazeUI && ui) {
        const QMatrix4x4 pose = hmdPose();
        std::array<float, 3> velocity{};
        headVelocity(velocity.data());
        if (HeadMotion::isPose(pose))
            queueGazeEvents(ui->detectTap(velocity, CameraMath::anglesFromMatrix(pose).pitch));
    }
    const int command = controllerCommand();
    // A button that is held acts once.
    if (command != 0 && command != m_lastCommand) {
        QMetaObject::invokeMethod(
            this,
            [this, command] {
                if (HeadsetInterface *current = m_interface)
                    current->buildEvents(command);
            },
            Qt::QueuedConnection);
    }
    m_lastCommand = command;
    m_frameTimer.start();
}

float WorkerThreadVR::secondsOfFrame() const
{
    constexpr float kNanosecondsPerSecond = 1e9F;
    return m_frameTimer.isValid() ? float(m_frameTimer.nsecsElapsed()) / kNanosecondsPerSecond : 0;
}

void WorkerThreadVR::queueGazeEvents(bool tap)
{
    // A scene that is slower than the head gets the newest gaze and loses no nod.
    if (tap)
        m_tapQueued = true;
    if (m_gazeQueued.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            m_gazeQueued = false;
            const bool tapped = m_tapQueued.exchange(false);
            if (HeadsetInterface *current = m_interface)
                current->buildGazeEvents(tapped);
        },
        Qt::QueuedConnection);
}

void WorkerThreadVR::rebuildPrograms()
{
    Texts texts;
    {
        const std::lock_guard<PoseLock> lock(m_poseLock);
        texts = m_texts;
    }
    m_panorama.build(texts.vertex, texts.panorama);
    m_overlay.build(texts.vertex, texts.overlay);
}

void WorkerThreadVR::renderEye(int eye)
{
    QOpenGLFunctions *functions = m_glContext->functions();
    const Eye &optics = m_eyes[std::size_t(eye)];
    functions->glViewport(0, 0, optics.viewport.pixels.width(), optics.viewport.pixels.height());
    functions->glClearColor(0, 0, 0, 1);
    functions->glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);

    if (m_dirty.exchange(false))
        rebuildPrograms();
    const KTextureProvider *provider = m_application->textureProvider();
    const int texture = provider ? provider->textureId() : 0;
    // A film that ends takes its texture away before its last word reaches the provider.
    if (texture <= 0 || !functions->glIsTexture(GLuint(texture)) || !m_panorama)
        return;

    QMatrix4x4 pose;
    Scene scene;
    {
        const std::lock_guard<PoseLock> lock(m_poseLock);
        if (HeadMotion::isPose(m_hmdPose))
            pose = m_hmdPose;
        scene = m_scene;
    }
    m_uniforms.matrix = optics.quad.matrix;
    m_uniforms.matViewInverse = scene.offset * pose * optics.eyeToHead;
    m_uniforms.viewport = optics.viewport;
    m_uniforms.eye = eye;
    m_uniforms.fov = scene.flat ? scene.fov : optics.quad.fov;
    m_uniforms.cameraYaw = scene.cameraYaw;
    m_uniforms.cameraPitch = scene.cameraPitch;
    m_uniforms.yawMin = scene.yawMin;
    m_uniforms.yawMax = scene.yawMax;
    m_uniforms.pitchMin = scene.pitchMin;
    m_uniforms.pitchMax = scene.pitchMax;
    const float corrector = m_hmd->scaleCorrector();
    m_uniforms.scaleCorrector = corrector != 0 ? corrector : 1;
    m_panorama.draw(functions, m_uniforms, GLuint(texture));

    HeadsetInterface *ui = m_interface;
    if (ui && m_overlay && ui->isShown())
        drawInterface(functions, ui, pose, optics);
}

void WorkerThreadVR::drawInterface(QOpenGLFunctions *functions, HeadsetInterface *ui,
                                   const QMatrix4x4 &pose, const Eye &eye)
{
    // The layers' colours come multiplied with their alpha, as the scene graph draws them.
    functions->glEnable(GL_BLEND);
    functions->glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    m_uniforms.fov = eye.quad.fov;
    m_uniforms.scaleCorrector = 1;
    for (const auto layer : {HeadsetView::Panel, HeadsetView::Foreground}) {
        const int texture = ui->textureId(layer);
        if (texture <= 0)
            continue;
        // The panel stands in the world, the foreground is fixed to the head.
        const QMatrix4x4 head =
            layer == HeadsetView::Panel ? ui->orientation() * pose : QMatrix4x4();
        m_uniforms.matViewInverse = head * eye.eyeToHead;
        m_overlay.draw(functions, m_uniforms, GLuint(texture));
    }
    functions->glDisable(GL_BLEND);
}

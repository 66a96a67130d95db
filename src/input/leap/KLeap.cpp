#include "input/leap/KLeap.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "foundation/KSignalStack.h"
#include "input/hands/HandDevices.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"

#include <QMouseEvent>
#include <QQmlContext>
#include <QQuickView>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kSilenceMs = 500;
constexpr double kLeastSensitivity = 0.01;
constexpr double kMostSensitivity = 0.8;
constexpr short kShortestJump = 1000;
constexpr short kLongestJump = 10000;
constexpr uchar kCalmestPointer = 10;

const char kGhostHands[] = "application/leapmotion/ghostHands";

/// What is kept from one run to the next, as properties and in the store.
constexpr const char *kKeptOptions[] = {"sensitivityYawPitch",
                                        "sensitivitySeekJump",
                                        "pitchInv",
                                        "yawInv",
                                        "rollMode",
                                        "fovMode",
                                        "seekGesture",
                                        "playPauseGesture",
                                        "pointerSensibility",
                                        "pointerInterpolation"};

QString storeKey(const char *option)
{
    return QStringLiteral("leapmotion/") + QLatin1String(option);
}

} // namespace

KLeap::KLeap(Application *application)
    : KLeap(application, &HandDevices::createTracker)
{}

KLeap::KLeap(Application *application, TrackerMaker makeTracker)
    : m_application(application)
    , m_makeTracker(std::move(makeTracker))
    , m_camera(application)
{
    // What the scene's connections to the painters carry.
    qRegisterMetaType<FingerList>("FingerList");
    qRegisterMetaType<KGlobalObject *>("KGlobalObject*");
    leapConnected(false);
    restoreOptions();
    onSettingsChanged(QLatin1String(kGhostHands));
    connect(application->settings(), &KSettings::settingsChanged, this, &KLeap::onSettingsChanged);
    if (const KShaderCodeBuilder *builder = application->shaderBuilder())
        connect(builder, &KShaderCodeBuilder::projectionChanged, this, &KLeap::onProjectionChanged);
    if (const QWindow *view = application->window()) {
        connect(view, &QWindow::widthChanged, this, &KLeap::resizeWidth);
        connect(view, &QWindow::heightChanged, this, &KLeap::resizeHeight);
        resizeWidth();
        resizeHeight();
    }
    m_silence.setSingleShot(true);
    m_silence.setInterval(kSilenceMs);
    connect(&m_silence, &QTimer::timeout, this, &KLeap::rest);
    start();
}

KLeap::~KLeap()
{
    wait();
    m_tracker.reset();
    if (m_wasAvailable)
        storeOptions();
}

void KLeap::run()
{
    const KSignalStack signalStack;
    m_tracker = m_makeTracker();
    if (!m_tracker)
        return;
    QObject *notifier = m_tracker->notifier();
    connect(notifier, SIGNAL(frameArrive()), this, SLOT(frameCaptured()), Qt::QueuedConnection);
    connect(notifier, SIGNAL(leapConnected(bool)), this, SLOT(leapConnected(bool)),
            Qt::QueuedConnection);
    m_tracker->open();
}

// --- Options ------------------------------------------------------------------------------------

template <class Value>
void KLeap::change(Value &field, const Value &value, void (KLeap::*changed)())
{
    if (field == value)
        return;
    field = value;
    emit(this->*changed)();
}

void KLeap::changeOption(bool &field, bool on, void (KLeap::*changed)())
{
    change(field, on, changed);
}

void KLeap::restoreOptions()
{
    KSettingsManager *store = m_application->settings()->settingsManager();
    for (const char *option : kKeptOptions) {
        const QVariant now = property(option);
        QVariant kept = store->GetVariant(storeKey(option), now);
        if (kept.convert(int(now.type())))
            setProperty(option, kept);
    }
}

void KLeap::storeOptions() const
{
    KSettingsManager *store = m_application->settings()->settingsManager();
    for (const char *option : kKeptOptions)
        store->Set(storeKey(option), property(option).toString());
}

void KLeap::setSensitivityYawPitch(double value)
{
    if (std::isfinite(value))
        change(m_options.sensitivity, std::clamp(value, kLeastSensitivity, kMostSensitivity),
               &KLeap::sensitivityYawPitchChanged);
}

void KLeap::setSensitivitySeekJump(short milliseconds)
{
    change(m_seekJump, std::clamp(milliseconds, kShortestJump, kLongestJump),
           &KLeap::sensitivitySeekJumpChanged);
}

void KLeap::setPitchInv(bool on)
{
    changeOption(m_options.pitchInverted, on, &KLeap::pitchInvChanged);
}

void KLeap::setYawInv(bool on)
{
    changeOption(m_options.yawInverted, on, &KLeap::yawInvChanged);
}

void KLeap::setRollMode(bool on)
{
    changeOption(m_options.roll, on, &KLeap::rollModeChanged);
}

void KLeap::setFovMode(bool on)
{
    changeOption(m_options.zoom, on, &KLeap::fovModeChanged);
}

void KLeap::setPlayPauseGesture(bool on)
{
    changeOption(m_options.playPause, on, &KLeap::playPauseGestureChanged);
}

void KLeap::setSeekGesture(bool on)
{
    changeOption(m_options.seek, on, &KLeap::seekGestureChanged);
}

void KLeap::setCameraMode(uchar mode)
{
    if (mode > uchar(HandCameraMode::Hands) || mode == cameraMode())
        return;
    m_options.mode = HandCameraMode(mode);
    // What a hand had begun means something else now.
    rest();
    emit cameraModeChanged();
}

void KLeap::setPointerSensibility(double value)
{
    if (std::isfinite(value))
        change(m_options.pointerSensibility, std::clamp(value, 0.1, 5.0),
               &KLeap::pointerSensibilityChanged);
}

void KLeap::setPointerInterpolation(uchar value)
{
    change(m_options.pointerInterpolation, int(std::min(value, kCalmestPointer)),
           &KLeap::pointerInterpolationChanged);
}

void KLeap::setMenuState(bool on)
{
    m_menuByPointer = m_menuByPointer && on;
    changeOption(m_options.menu, on, &KLeap::menuStateChanged);
}

void KLeap::setDrawHand(bool on)
{
    changeOption(m_drawHand, on, &KLeap::drawHandChanged);
    if (!on)
        drawHands({});
}

void KLeap::onSettingsChanged(QString key)
{
    if (key == QLatin1String(kGhostHands))
        setDrawHand(m_application->settings()->getTyped(key).toBool());
}

// --- The tracker --------------------------------------------------------------------------------

void KLeap::leapConnected(bool a)
{
    if (a) {
        setLog(tr("Leap Motion Device found.\n"), {});
        showText(tr("Leap Motion Controller Connected"));
    } else {
        const QString url = m_application->leapMotionSdkUrl();
        setLog(tr("Leap Motion device not found.\n\nWarning : Leap Motion SDK must be installed."),
               url.isEmpty() ? QString()
                             : QStringLiteral("<a href=\"%1\">%2</a>")
                                   .arg(url.toHtmlEscaped(), tr("Download the Leap Motion SDK")));
        showText(tr("Leap Motion Controller Disconnected"));
        setActivated(false);
    }
    m_wasAvailable = m_wasAvailable || a;
    change(m_available, a, &KLeap::availableChanged);
}

void KLeap::setActivated(bool activated)
{
    if (activated && !m_available)
        return;
    if (activated != m_activated)
        rest();
    change(m_activated, activated, &KLeap::activatedChanged);
    if (m_activated) {
        emit setGlobalObject(m_application->globalObject());
        setTutoState(m_tutoState); // one may have been asked for
    } else {
        setTutoState(LeapTutorial::kNone);
    }
}

void KLeap::resizeWidth()
{
    m_options.window.setWidth(m_application->window()->width());
}

void KLeap::resizeHeight()
{
    m_options.window.setHeight(m_application->window()->height());
}

void KLeap::frameCaptured()
{
    if (!m_tracker)
        return;
    // Taken even when nobody looks: the tracker tells of the next one only then.
    const HandFrame frame = m_tracker->frame();
    if (!m_activated)
        return;
    const std::optional<HandActions> actions = m_analysis.update(frame, m_options);
    if (!actions)
        return;
    m_silence.start();
    if (m_drawHand)
        drawHands(Hands::extendedFingers(Hands::usable(frame)));
    carryOut(*actions);
}

void KLeap::rest()
{
    m_silence.stop();
    m_analysis.reset();
    bringBack(m_camera.release());
    if (m_pressing) {
        HandActions letGo;
        letGo.released = true;
        letGo.pointer = m_pointer;
        driveMenu(letGo);
    }
    setMenuState(false);
    change(m_pointer, QVector4D(), &KLeap::pointerChanged);
    change(m_handOutZone, uchar(0), &KLeap::handOutZoneChanged);
    drawHands({});
}

void KLeap::drawHands(const FingerList &fingers)
{
    if (fingers.isEmpty() && !m_handsDrawn)
        return;
    m_handsDrawn = !fingers.isEmpty();
    if (activeHeadset())
        emit drawFingersSignalHmd(fingers);
    else
        emit drawFingersSignal(fingers);
}

QObject *KLeap::activeHeadset() const
{
    if (!m_application->window())
        return nullptr;
    auto *headset = m_application->window()
                        ->rootContext()
                        ->contextProperty(QStringLiteral("kHmdDevice"))
                        .value<QObject *>();
    return headset && headset->property("activated").toBool() ? headset : nullptr;
}

void KLeap::hmdActivated()
{
    // The hands are painted elsewhere from now on.
    if (m_handsDrawn) {
        emit drawFingersSignal({});
        emit drawFingersSignalHmd({});
        m_handsDrawn = false;
    }
    rest();
}

// --- What the hands ask -------------------------------------------------------------------------

void KLeap::carryOut(const HandActions &actions)
{
    change(m_handOutZone, uchar(actions.outZone), &KLeap::handOutZoneChanged);
    change(m_pointer, actions.pointer, &KLeap::pointerChanged);
    switchMenu(actions);
    driveMenu(actions);
    moveCamera(actions);
    if (actions.projectionStep != 0)
        changeProjection(actions.projectionStep);
    if (actions.seekSteps != 0)
        seek(actions.seekSteps);
    if (actions.playPause)
        togglePlayback();
    if (m_tutorial.update(actions.seen, m_analysis.seconds()))
        showTutorialPage();
}

void KLeap::moveCamera(const HandActions &actions)
{
    bringBack(m_camera.apply(actions, m_analysis.seconds(), activeHeadset()));
}

void KLeap::bringBack(const std::optional<HandCamera::Bounce> &bounce)
{
    if (bounce)
        emit pitchBounce(bounce->pitch, bounce->fov, bounce->roll);
}

void KLeap::animationFinished()
{
    m_camera.finishBounce();
}

void KLeap::switchMenu(const HandActions &actions)
{
    if (actions.menuToggled) {
        setMenuState(!menuState());
        showText(menuState() ? tr("Menu on") : tr("Menu off"));
        return;
    }
    if (m_options.mode != HandCameraMode::Finger || m_options.window.isEmpty())
        return;
    // Where the bar is, a finger means the bar, unless it holds the picture.
    const bool shown = actions.pointer.w() > 0;
    const double height = double(actions.pointer.y()) / m_options.window.height();
    if (!menuState() && shown && height > 0.8 && actions.pointer.z() < 0.6F) {
        setMenuState(true);
        m_menuByPointer = true;
    } else if (m_menuByPointer && (!shown || height < 0.75)) {
        setMenuState(false);
    }
}

void KLeap::driveMenu(const HandActions &actions)
{
    QQuickView *view = m_application->window();
    if (!view || (!menuState() && !m_pressing))
        return;
    const QPointF at(double(actions.pointer.x()), double(actions.pointer.y()));
    const auto post = [view, &at](QEvent::Type type, Qt::MouseButton button,
                                  Qt::MouseButtons buttons) {
        // Posted, since a click may open a window that runs an event loop of its own.
        QCoreApplication::postEvent(view, new QMouseEvent(type, at, view->mapToGlobal(at.toPoint()),
                                                          button, buttons, Qt::NoModifier));
    };
    if (actions.pointer.w() > 0)
        post(QEvent::MouseMove, Qt::NoButton, m_pressing ? Qt::LeftButton : Qt::NoButton);
    if (actions.pressed && menuState() && !m_pressing) {
        m_pressing = true;
        post(QEvent::MouseButtonPress, Qt::LeftButton, Qt::LeftButton);
    } else if (m_pressing && (actions.released || actions.pointer.w() == 0 || !menuState())) {
        m_pressing = false;
        post(QEvent::MouseButtonRelease, Qt::LeftButton, Qt::NoButton);
    }
}

void KLeap::changeProjection(int step)
{
    const KShaderCodeBuilder *builder = m_application->shaderBuilder();
    if (!builder || builder->projectionSource() == KShaderCodeBuilder::STANDARD)
        return;
    constexpr int kCount = KShaderCodeBuilder::LAST_VALUE_PROJECTION;
    onProjectionChangedByLeap();
    m_application->settings()->set(QStringLiteral("instance/output/projection"),
                                   (builder->projection() + step + kCount) % kCount);
}

void KLeap::onProjectionChangedByLeap()
{
    m_projectionByLeap = true;
}

void KLeap::onProjectionChanged()
{
    // The gesture that changed it goes on; after a change from elsewhere the camera is new.
    if (m_projectionByLeap)
        emit iconProjChange();
    else
        m_camera.forget();
    m_projectionByLeap = false;
}

void KLeap::seek(int steps)
{
    QObject *player = m_application->globalObject()->mediaPlayer();
    if (!player)
        return;
    QMetaObject::invokeMethod(player, "seekJump", Q_ARG(QVariant, steps * int(m_seekJump)));
    const double seconds = steps * m_seekJump / 1000.0;
    showText(
        QStringLiteral("%1%2 s").arg(seconds > 0 ? QStringLiteral("+") : QString()).arg(seconds));
}

void KLeap::togglePlayback()
{
    QObject *loader = m_application->globalObject()->mediaLoader();
    const QObject *player = m_application->globalObject()->mediaPlayer();
    if (!loader || !player)
        return;
    constexpr int kPlaying = 1; // MediaPlayer.PlayingState
    const bool played = player->property("playbackState").toInt() == kPlaying;
    QMetaObject::invokeMethod(loader, "playPause");
    showText(played ? tr("Pause") : tr("Play"));
}

// --- Feedback -----------------------------------------------------------------------------------

void KLeap::setTutoState(int state)
{
    if (state == LeapTutorial::kStartRequest && !m_activated) {
        change(m_tutoState, state, &KLeap::tutoStateChanged);
        return;
    }
    if (state == LeapTutorial::kStartRequest)
        m_tutorial.start(m_options);
    else if (state != m_tutorial.page())
        m_tutorial.show(state);
    change(m_tutoState, m_tutorial.page(), &KLeap::tutoStateChanged);
}

void KLeap::nextTutorialPage()
{
    if (m_tutorial.page() == LeapTutorial::kNone)
        return;
    m_tutorial.next();
    showTutorialPage();
}

void KLeap::showTutorialPage()
{
    if (m_tutorial.page() == LeapTutorial::kNone)
        showText(tr("End of tutorial"));
    change(m_tutoState, m_tutorial.page(), &KLeap::tutoStateChanged);
}

void KLeap::setPlayerImage(QObject *pi)
{
    m_playerImage = pi;
}

void KLeap::showText(const QString &text)
{
    if (m_playerImage)
        QMetaObject::invokeMethod(m_playerImage, "onShowPlayerText", Q_ARG(QVariant, text));
}

void KLeap::setLog(const QString &message, const QString &link)
{
    change(m_logMessage, message, &KLeap::logMessageChanged);
    change(m_logLink, link, &KLeap::logLinkChanged);
}

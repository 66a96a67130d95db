// Lets a test look into a running player and move it: a generic plugin that Qt loads into any
// program started with QT_QPA_GENERIC_PLUGINS=orbilensprobe, so that what is measured is the
// program itself, unchanged. It reaches everything through the scene's context properties.
//
// Reads commands from standard input, a line each, and answers each with a line:
// - get: camera, stereo mode and player as a JSON object; null before there is a player
// - set WHERE NAME JSON: a property of "view", "builder", "player" or "loader"; answers ok
// - call NAME [TEXT]: an invokable function of kGlobalObject with at most one text
// - loader NAME [NUMBER]: a function of the scene's media loader
// - pixel X Y: colour on the screen at a fraction of the window's size
// - first-frame: when the window first showed something, in nanoseconds of the steady clock
// - picture-frame: when it first showed a medium's picture, likewise; 0 until then
// - trace: from now on "yaw NANOSECONDS VALUE" at each change of the rotation
// - sweep COUNT MS: turns the camera by steps of a thousandth of a radian; with trace

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMatrix4x4>
#include <QPointer>
#include <QQmlContext>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace {

qint64 nanoseconds()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void answer(const QByteArray &line)
{
    std::fwrite(line.constData(), 1, std::size_t(line.size()), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

QQuickView *playerView()
{
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        auto *view = qobject_cast<QQuickView *>(window);
        if (view && view->rootObject())
            return view;
    }
    return nullptr;
}

class Probe : public QObject
{
    Q_OBJECT

public:
    Probe()
        : m_input(STDIN_FILENO, QSocketNotifier::Read)
    {
        connect(&m_input, &QSocketNotifier::activated, this, &Probe::readCommands);
        connect(&m_sweep, &QTimer::timeout, this, &Probe::step);
        qApp->installEventFilter(this);
    }

    /// Meets the window when it comes up.
    bool eventFilter(QObject *object, QEvent *event) override
    {
        auto *window = qobject_cast<QQuickView *>(object);
        if (window && event->type() == QEvent::Expose) {
            connect(
                window, &QQuickWindow::frameSwapped, window,
                [this] {
                    if (m_firstFrame == 0)
                        m_firstFrame = nanoseconds();
                    if (m_pictureFrame == 0 && m_drawsPicture)
                        m_pictureFrame = nanoseconds();
                },
                Qt::DirectConnection);
            // The view is drawn after this, with the picture that is there now.
            connect(
                window, &QQuickWindow::beforeRendering, window,
                [this] {
                    const QObject *provider =
                        m_pictureFrame == 0 ? context("kTextureProvider") : nullptr;
                    m_drawsPicture = provider && provider->property("textureId").toInt() > 0;
                },
                Qt::DirectConnection);
            qApp->removeEventFilter(this);
        }
        return QObject::eventFilter(object, event);
    }

private slots:
    void traceRotation()
    {
        answer("yaw " + QByteArray::number(nanoseconds()) + ' ' +
               QByteArray::number(view()->property("yaw").toDouble(), 'g', 9));
    }

private:
    static QObject *context(const char *name)
    {
        QQuickView *window = playerView();
        return window
                   ? window->rootContext()->contextProperty(QLatin1String(name)).value<QObject *>()
                   : nullptr;
    }
    static QObject *view() { return context("kGlobalObject"); }
    static QObject *loader()
    {
        // Asked for every few milliseconds while a start is measured.
        static QPointer<QObject> found;
        if (found)
            return found;
        for (QObject *item : playerView()->rootObject()->findChildren<QObject *>()) {
            if (item->metaObject()->indexOfProperty("mediaPlayer") >= 0 &&
                item->metaObject()->indexOfMethod(
                    "processFileSource(QVariant,QVariant,QVariant,QVariant)") >= 0)
                return found = item;
        }
        return nullptr;
    }
    static QObject *player()
    {
        const QObject *from = loader();
        return from ? from->property("mediaPlayer").value<QObject *>() : nullptr;
    }

    void readCommands()
    {
        char buffer[4096];
        const ssize_t got = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (got <= 0) {
            m_input.setEnabled(false);
            return;
        }
        m_pending.append(buffer, int(got));
        for (int end = m_pending.indexOf('\n'); end >= 0; end = m_pending.indexOf('\n')) {
            const QList<QByteArray> words = m_pending.left(end).split(' ');
            m_pending.remove(0, end + 1);
            answer(playerView() && player() ? execute(words) : QByteArray("null"));
        }
    }

    QByteArray execute(const QList<QByteArray> &words)
    {
        const QByteArray argument = words.size() > 1 ? words.at(1) : QByteArray();
        if (words.first() == "get")
            return state();
        if (words.first() == "set" && words.size() > 3)
            return set(argument, words.at(2), words.mid(3).join(' '));
        if (words.first() == "call") {
            if (words.size() > 2)
                QMetaObject::invokeMethod(
                    view(), argument.constData(),
                    Q_ARG(QString, QString::fromUtf8(words.mid(2).join(' '))));
            else
                QMetaObject::invokeMethod(view(), argument.constData());
            return "ok";
        }
        if (words.first() == "loader") {
            if (words.size() > 2)
                QMetaObject::invokeMethod(loader(), argument.constData(),
                                          Q_ARG(QVariant, words.at(2).toInt()));
            else
                QMetaObject::invokeMethod(loader(), argument.constData());
            return "ok";
        }
        if (words.first() == "pixel" && words.size() > 2) {
            // What stands on the screen; a frame drawn for the question could be another.
            const QQuickView *window = playerView();
            const QImage image = window->screen()->grabWindow(window->winId()).toImage();
            if (image.isNull())
                return "none"; // the window has not been drawn yet
            return image
                .pixelColor(int(argument.toDouble() * image.width()),
                            int(words.at(2).toDouble() * image.height()))
                .name()
                .toLatin1();
        }
        if (words.first() == "first-frame")
            return QByteArray::number(m_firstFrame);
        if (words.first() == "picture-frame")
            return QByteArray::number(m_pictureFrame);
        if (words.first() == "trace") {
            connect(view(), SIGNAL(rotationMatrixChanged()), this, SLOT(traceRotation()));
            return "ok";
        }
        if (words.first() == "sweep" && words.size() > 2) {
            m_steps = argument.toInt();
            m_sweep.setTimerType(Qt::PreciseTimer);
            m_sweep.start(words.at(2).toInt());
            return "ok";
        }
        return "unknown";
    }

    static QByteArray state()
    {
        QJsonObject state;
        for (const char *name : {"yaw", "pitch", "roll", "fov"})
            state.insert(QLatin1String(name), view()->property(name).toDouble());
        const auto matrix = view()->property("rotationMatrix").value<QMatrix4x4>();
        state.insert(QStringLiteral("direction"),
                     std::atan2(double(matrix(2, 0)), double(matrix(0, 0))));
        state.insert(QStringLiteral("stereoMode"),
                     context("kShaderCodeBuilder")->property("stereoMode").toInt());
        for (const char *name :
             {"mediaSource", "playbackState", "playerStatus", "position", "duration"})
            state.insert(QLatin1String(name), QJsonValue::fromVariant(player()->property(name)));
        state.insert(QStringLiteral("nanoseconds"), double(nanoseconds()));
        return QJsonDocument(state).toJson(QJsonDocument::Compact);
    }

    static QByteArray set(const QByteArray &where, const QByteArray &name, const QByteArray &json)
    {
        QObject *object = nullptr;
        if (where == "view")
            object = view();
        else if (where == "builder")
            object = context("kShaderCodeBuilder");
        else if (where == "player")
            object = player();
        else if (where == "loader")
            object = loader();
        const QVariant value = QJsonDocument::fromJson('[' + json + ']')[0].toVariant();
        return object && object->setProperty(name.constData(), value) ? "ok" : "refused";
    }

    void step()
    {
        view()->setProperty("yaw", view()->property("yaw").toFloat() + 0.001F);
        if (--m_steps <= 0)
            m_sweep.stop();
    }

    QSocketNotifier m_input;
    QByteArray m_pending;
    QTimer m_sweep;
    int m_steps = 0;
    std::atomic<qint64> m_firstFrame{0}; // written by the thread that draws, like the two below
    std::atomic<qint64> m_pictureFrame{0};
    std::atomic<bool> m_drawsPicture{false};
};

class ProbePlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "probe.json")

public:
    /// Qt deletes the object at its end.
    QObject *create(const QString &, const QString &) override { return new Probe; }
};

} // namespace

#include "ProbePlugin.moc"

// Lets a test look into a running player and move it: a generic plugin that Qt loads into any
// program started with QT_QPA_GENERIC_PLUGINS=orbilensprobe, so that what is measured is the
// program itself, unchanged. It reaches everything through the scene's context properties.
//
// Reads lines from standard input and answers each with a line. What is none of the following is an
// expression of the scene's root file, which sees its ids and context properties; its value comes
// back as JSON, null before there is a player or where it fails.
// - pixel X Y: colour on the screen at a fraction of the window's size
// - first-frame: when the window first showed something, in nanoseconds of the steady clock
// - picture-frame: when it first showed a medium's picture, likewise; 0 until then
// - trace: from now on "yaw NANOSECONDS VALUE" at each change of the rotation
// - sweep COUNT MS: turns the camera by steps of a thousandth of a radian; with trace

#include <QGenericPlugin>
#include <QGuiApplication>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQmlExpression>
#include <QQuickItem>
#include <QQuickView>
#include <QScreen>
#include <QSocketNotifier>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <memory>

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
            const QByteArray line = m_pending.left(end);
            m_pending.remove(0, end + 1);
            answer(playerView() ? execute(line) : QByteArray("null"));
        }
    }

    QByteArray execute(const QByteArray &line)
    {
        const QList<QByteArray> words = line.split(' ');
        if (words.first() == "pixel" && words.size() > 2) {
            // What stands on the screen; a frame drawn for the question could be another.
            const QQuickView *window = playerView();
            const QImage image = window->screen()->grabWindow(window->winId()).toImage();
            if (image.isNull())
                return "none"; // the window has not been drawn yet
            return image
                .pixelColor(int(words.at(1).toDouble() * image.width()),
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
            m_steps = words.at(1).toInt();
            m_sweep.setTimerType(Qt::PreciseTimer);
            m_sweep.start(words.at(2).toInt());
            return "ok";
        }
        return evaluated(line);
    }

    QByteArray evaluated(const QByteArray &line)
    {
        const QString expression = "JSON.stringify(" + QString::fromUtf8(line) + ')';
        // The same is asked every few milliseconds while a start is measured.
        if (!m_expression || m_expression->expression() != expression) {
            QObject *root = playerView()->rootObject();
            m_expression = std::make_unique<QQmlExpression>(QQmlEngine::contextForObject(root),
                                                            root, expression);
        }
        const QByteArray value = m_expression->evaluate().toString().toUtf8();
        return value.isEmpty() ? "null" : value;
    }

    void step()
    {
        view()->setProperty("yaw", view()->property("yaw").toFloat() + 0.001F);
        if (--m_steps <= 0)
            m_sweep.stop();
    }

    QSocketNotifier m_input;
    QByteArray m_pending;
    std::unique_ptr<QQmlExpression> m_expression; // of the last question
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

// Frames of a writer in another process as textures of this one, compared byte by byte.

#include "input/SharedMemoryThread.h"
#include "input/WriterProcess.h"
#include "video/GlContext.h"

#include <QOpenGLExtraFunctions>
#include <QOpenGLFramebufferObject>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr int kPatienceMs = 30000;
constexpr int kSize = 4 * 1024 * 1024;

struct Pixel
{
    int r, g, b;
};

/// What the texture holds for a pixel of the pattern: red and blue exchanged in both kinds, as the
/// panorama shader expects them.
Pixel expectedPixel(int x, int y, int kind, int seed)
{
    const auto byte = [y, seed](int column) {
        return int(test::patternByte(std::size_t(column), std::size_t(y), seed));
    };
    if (kind != 1)
        return {byte(4 * x), byte(4 * x + 1), byte(4 * x + 2)};
    const auto studio = [](int sample, double range) {
        return (16 + sample / 255.0 * range) / 255;
    };
    const double luma = 1.1643 * (studio(byte(2 * x), 219) - 0.0625);
    const double u = studio(byte(x / 2 * 4 + 1), 224) - 0.5;
    const double v = studio(byte(x / 2 * 4 + 3), 224) - 0.5;
    const auto level = [](double value) {
        return int(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    };
    return {level(luma + 1.793 * u), level(luma - 0.2126 * v - 0.534 * u), level(luma + 2.115 * v)};
}

class Thread : public ::testing::Test
{
protected:
    Thread()
    {
        share.setCurrent(false);
        view.setShareContext(&share.context());
        EXPECT_TRUE(view.create());
        surface.create();
        QObject::connect(&thread, &SharedMemoryThread::logTextChanged,
                         [this](const QString &text) { log = text; });
    }
    ~Thread() override
    {
        stop();
        view.doneCurrent();
    }

    void start() { thread.start(); }
    void stop()
    {
        thread.stop();
        thread.wait();
    }
    void write(int slot, int timestamp, int width, int height, int kind, int seed)
    {
        EXPECT_EQ(writer.ask(QStringLiteral("frame %1 %2 %3 %4 %5 %6")
                                 .arg(slot)
                                 .arg(timestamp)
                                 .arg(width)
                                 .arg(height)
                                 .arg(kind)
                                 .arg(seed)),
                  "ok");
    }
    bool eventually(const std::function<bool()> &condition)
    {
        return QTest::qWaitFor(condition, kPatienceMs);
    }
    bool isReady(int slot)
    {
        return writer.ask(QString("peek %1 2").arg(0x94 + 56 * slot + 0x30)) != "0";
    }

    /// Whether the published texture is the pattern, to one level of rounding.
    bool shows(int width, int height, int kind, int seed)
    {
        const int texture = published.textureId();
        if (texture == 0 || published.size() != QSize(width, height))
            return false;
        EXPECT_TRUE(view.makeCurrent(&surface));
        QOpenGLFunctions *gl = view.functions();
        GLuint target = 0;
        gl->glGenFramebuffers(1, &target);
        gl->glBindFramebuffer(GL_FRAMEBUFFER, target);
        gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D,
                                   GLuint(texture), 0);
        std::vector<std::uint8_t> pixels(std::size_t(width * height) * 4);
        const bool readable =
            gl->glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
        if (readable)
            gl->glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        gl->glDeleteFramebuffers(1, &target);
        bool same = readable;
        for (int i = 0; i < width * height && same; ++i) {
            const Pixel expected = expectedPixel(i % width, i / width, kind, seed);
            const std::uint8_t *pixel = &pixels[std::size_t(i) * 4];
            same = std::abs(pixel[0] - expected.r) <= 1 && std::abs(pixel[1] - expected.g) <= 1 &&
                   std::abs(pixel[2] - expected.b) <= 1;
        }
        return same;
    }

    test::WriterProcess writer;
    test::GlContext share;
    QOpenGLContext view;
    QOffscreenSurface surface;
    PublishedFrame published;
    QString log;
    SharedMemoryThread thread{writer.name(), &share.context(), &surface, &published};
};

} // namespace

TEST_F(Thread, ShowsEveryKindAndSizeByteByByte)
{
    start(); // long before there is a block
    EXPECT_EQ(published.textureId(), 0);
    writer.create(3, kSize);
    const struct
    {
        int width, height, kind;
    } rows[] = {{64, 32, 0}, {64, 32, 0},   {64, 32, 1},   {128, 16, 1}, {33, 17, 0},
                {64, 32, 1}, {322, 181, 0}, {322, 182, 1}, {16, 16, 5}};
    int timestamp = 0;
    for (const auto &row : rows) {
        const int slot = timestamp % 3;
        ++timestamp;
        write(slot, timestamp, row.width, row.height, row.kind, timestamp);
        EXPECT_TRUE(eventually([&] { return shows(row.width, row.height, row.kind, timestamp); }))
            << row.width << "x" << row.height << " kind " << row.kind;
        EXPECT_TRUE(eventually([&] { return !isReady(slot); }));
    }
    stop();
    EXPECT_EQ(published.textureId(), 0) << "its texture ended with its context";
    EXPECT_EQ(published.size(), QSize(-1, -1));
    EXPECT_EQ(log, QString());
}

TEST_F(Thread, KeepsThePictureOfAWriterThatDiesAndFollowsTheNext)
{
    writer.create(1, kSize);
    start();
    write(0, 1000, 64, 32, 0, 1);
    EXPECT_TRUE(eventually([&] { return shows(64, 32, 0, 1); }));
    writer.kill();
    QTest::qWait(1300);
    EXPECT_TRUE(shows(64, 32, 0, 1));

    // Another block under the name, with timestamps from the beginning.
    writer.start();
    writer.create(2, kSize);
    write(0, 1, 32, 32, 1, 2);
    EXPECT_TRUE(eventually([&] { return shows(32, 32, 1, 2); }));

    // The same block, its header made anew.
    write(1, 5000, 32, 32, 0, 3);
    EXPECT_TRUE(eventually([&] { return shows(32, 32, 0, 3); }));
    writer.ask("poke 132 4 0");
    write(0, 1, 16, 16, 0, 4);
    EXPECT_TRUE(eventually([&] { return shows(16, 16, 0, 4); }));
    EXPECT_EQ(log, QString());
}

TEST_F(Thread, FaultsAreInTheLogAndThePictureStays)
{
    writer.create(2, kSize);
    start();
    write(0, 1, 64, 32, 0, 1);
    EXPECT_TRUE(eventually([&] { return shows(64, 32, 0, 1); }));

    const auto faulty = [this](const QString &poke, const QString &text) {
        writer.ask(poke);
        writer.ask("poke 252 2 1"); // slot 1 is ready
        EXPECT_TRUE(eventually([&] { return log.contains(text); })) << text.toStdString();
        EXPECT_TRUE(shows(64, 32, 0, 1));
    };
    // Where the reader stands is slot 1; each fault moves it on, so slot 0 is filled behind it.
    write(1, 2, 64, 32, 0, 2);
    EXPECT_TRUE(eventually([&] { return shows(64, 32, 0, 2); }));
    write(0, 3, 64, 32, 0, 1);
    EXPECT_TRUE(eventually([&] { return shows(64, 32, 0, 1); }));
    faulty("poke 220 4 4294967295", "a frame does not lie inside the block (1 times)");
    write(0, 4, 64, 32, 0, 1);
    EXPECT_TRUE(eventually([&] { return !isReady(0); }));
    faulty("poke 228 2 0", "a frame has an impossible size (1 times)");

    EXPECT_EQ(writer.ask("truncate 100"), "ok");
    EXPECT_TRUE(eventually([&] { return log.contains("the slots do not lie inside the block"); }));
    EXPECT_TRUE(eventually([&] { return log.contains("the block is smaller than its header"); }));
    EXPECT_TRUE(shows(64, 32, 0, 1));

    writer.create(1, kSize, "AVRT_Shared_Memory1.3");
    EXPECT_TRUE(eventually([&] { return log.contains("the block has another version"); }));
    writer.create(1, kSize);
    write(0, 1, 64, 32, 1, 7);
    EXPECT_TRUE(eventually([&] { return shows(64, 32, 1, 7); }));
}

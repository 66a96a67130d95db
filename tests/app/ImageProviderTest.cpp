#include "app/KImageProvider.h"

#include "support/HttpServer.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QQuickTextureFactory>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QUrl>

#include <memory>

namespace {

/// What the scene's engine gets: the picture, or a text in @p error.
QImage answer(KImageProvider &provider, const QString &id, const QSize &requested, QString &error)
{
    const std::unique_ptr<QQuickImageResponse> response(
        provider.requestImageResponse(id, requested));
    QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
    EXPECT_TRUE(!finished.isEmpty() || finished.wait(20000));
    error = response->errorString();
    const std::unique_ptr<QQuickTextureFactory> factory(response->textureFactory());
    return factory ? factory->image() : QImage();
}

} // namespace

TEST(ImageProvider, DecodesAtTheRequestedSizeAndReportsErrors)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("a #?%41 é.png");
    QImage picture(64, 32, QImage::Format_RGB32);
    picture.fill(QColor(255, 128, 0));
    ASSERT_TRUE(picture.save(path));
    const QString id =
        QString::fromLatin1(QUrl::toPercentEncoding(QUrl::fromLocalFile(path).toString()));

    KImageProvider provider;
    const QSize rows[][2] = {{QSize(), {64, 32}}, {{0, 0}, {64, 32}},  {{16, 16}, {16, 8}},
                             {{0, 8}, {16, 8}},   {{32, 0}, {32, 16}}, {{1000, 1000}, {64, 32}}};
    for (const auto &[requested, expected] : rows) {
        QString error;
        const QImage image = answer(provider, id, requested, error);
        EXPECT_EQ(image.size(), expected) << error.toStdString();
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(image.pixelColor(1, 1), QColor(255, 128, 0));
    }
    // Whatever was decoded ahead: the answer is that of the file and of the size asked for.
    for (const auto &[requested, expected] : rows) {
        provider.expect(path);
        QString error;
        EXPECT_EQ(answer(provider, id, requested, error).size(), expected);
    }
    provider.expect(path);
    ASSERT_TRUE(QFile::remove(path));
    {
        QString error;
        EXPECT_TRUE(answer(provider, id, QSize(), error).isNull());
    }
    QString error;
    EXPECT_TRUE(answer(provider, "file:///absent.jpg", QSize(), error).isNull());
    EXPECT_TRUE(error.contains("GFL_ERROR_FILE_OPEN")) << error.toStdString();
    EXPECT_TRUE(answer(provider, "rtsp://localhost/a.jpg", QSize(), error).isNull());
    EXPECT_FALSE(error.isEmpty());
}

TEST(ImageProvider, TakesStillsOfAServerWithinTheSameLimits)
{
    QImage picture(64, 32, QImage::Format_RGB32);
    picture.fill(QColor(255, 128, 0));
    QBuffer png;
    ASSERT_TRUE(png.open(QIODevice::WriteOnly) && picture.save(&png, "png"));
    test::HttpServer server([&](const test::HttpServer::Request &request) {
        const QByteArray path = request.line.split(' ')[1];
        if (path == "/silent.png")
            return QByteArray();
        if (path == "/moved.png")
            return test::HttpServer::reply("302 Found\r\nLocation: /a%20b.png", "");
        // Larger than memory, in a few bytes.
        if (path == "/large.hdr")
            return test::HttpServer::reply(
                "200 OK", "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 100000 +X 100000\n");
        return path == "/a%20b.png" ? test::HttpServer::reply("200 OK", png.data())
                                    : test::HttpServer::reply("404 Not Found", png.data());
    });
    const auto id = [&](const char *path) {
        return QString::fromLatin1(
            QUrl::toPercentEncoding(server.address() + QString::fromLatin1(path)));
    };

    KImageProvider provider;
    const std::tuple<const char *, QSize, const char *> rows[] = {
        {"/a b.png", {16, 8}, ""},
        {"/moved.png", {16, 8}, ""},
        {"/absent.png", {0, 0}, "Not Found"},
        {"/large.hdr", {0, 0}, "GFL_ERROR_NO_MEMORY"}};
    for (const auto &[path, expected, expectedError] : rows) {
        QString error;
        EXPECT_EQ(answer(provider, id(path), {16, 16}, error).size(), expected) << path;
        EXPECT_TRUE(error.contains(expectedError) && error.isEmpty() != expected.isEmpty())
            << path << ": " << error.toStdString();
    }
    const std::unique_ptr<QQuickImageResponse> response(
        provider.requestImageResponse(id("/silent.png"), {}));
    QSignalSpy finished(response.get(), &QQuickImageResponse::finished);
    ASSERT_SOON(server.requests.last().line.contains("silent"));
    response->cancel();
    EXPECT_TRUE(!finished.isEmpty() || finished.wait(20000));
}

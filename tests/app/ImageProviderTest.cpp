#include "app/KImageProvider.h"

#include <gtest/gtest.h>

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
    const struct
    {
        QSize requested;
        QSize expected;
    } rows[] = {{QSize(), {64, 32}}, {{0, 0}, {64, 32}},  {{16, 16}, {16, 8}},
                {{0, 8}, {16, 8}},   {{32, 0}, {32, 16}}, {{1000, 1000}, {64, 32}}};
    for (const auto &row : rows) {
        QString error;
        const QImage image = answer(provider, id, row.requested, error);
        EXPECT_EQ(image.size(), row.expected) << error.toStdString();
        EXPECT_EQ(image.format(), QImage::Format_ARGB32_Premultiplied);
        EXPECT_EQ(image.pixelColor(1, 1), QColor(255, 128, 0));
    }
    // Whatever was decoded ahead: the answer is that of the file and of the size asked for.
    for (const auto &row : rows) {
        provider.expect(path);
        QString error;
        EXPECT_EQ(answer(provider, id, row.requested, error).size(), row.expected);
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
    EXPECT_TRUE(answer(provider, "http://localhost/a.jpg", QSize(), error).isNull());
    EXPECT_FALSE(error.isEmpty());
}

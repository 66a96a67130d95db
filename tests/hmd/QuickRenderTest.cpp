#include "hmd/KQuickRender.h"
#include "support/GlStage.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTemporaryDir>
#include <QTest>

namespace {

class QuickRender : public ::testing::Test
{
protected:
    QuickRender()
    {
        QSurfaceFormat format = QSurfaceFormat::defaultFormat();
        format.setDepthBufferSize(24);
        format.setStencilBufferSize(8);
        share.setFormat(format);
        share.create();
    }

    std::unique_ptr<KQuickRender> load(const QByteArray &text)
    {
        const QString path = folder.filePath("scene.qml");
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        engine.clearComponentCache();
        return std::make_unique<KQuickRender>(&share, &engine, QUrl::fromLocalFile(path));
    }

    /// A pixel of the newest picture, counted from its first row.
    QColor pixel(const KQuickRender &render, int x, int y)
    {
        return test::downloadTexture(&share, render.textureId(), render.textureSize())
            .pixelColor(x, y);
    }

    QTemporaryDir folder;
    QOpenGLContext share;
    QQmlEngine engine;
};

} // namespace

TEST_F(QuickRender, DrawsASceneUprightAndFollowsIt)
{
    test::WarningGuard guard;
    const auto render =
        load("import QtQuick 2.15\nItem { width: 40; height: 20\n"
             "Rectangle { objectName: 'top'; width: 40; height: 10; color: 'red' }}");
    ASSERT_TRUE(QTest::qWaitFor([&] { return render->textureId() > 0; }));
    EXPECT_EQ(render->size(), QSize(40, 20));
    EXPECT_EQ(render->textureSize(), QSize(40, 20));
    EXPECT_EQ(pixel(*render, 20, 2), QColor(Qt::red));
    EXPECT_EQ(pixel(*render, 20, 15).alpha(), 0);

    ASSERT_NE(render->rootItem(), nullptr);
    render->rootItem()->findChild<QQuickItem *>("top")->setProperty("color", "blue");
    EXPECT_TRUE(QTest::qWaitFor([&] { return pixel(*render, 20, 2) == QColor(Qt::blue); }, 5000));
}

TEST_F(QuickRender, SaysWhyThereIsNoScene)
{
    const struct
    {
        const char *text;
        const char *warning;
    } rows[] = {{"import QtQuick 2.15\nItem { nonsense }", "scene.qml"},
                {"import QtQml 2.15\nQtObject {}", "run: Not a QQuickItem"}};
    for (const auto &row : rows) {
        test::WarningGuard guard;
        const auto render = load(row.text);
        QTest::qWait(30); // longer than it takes to draw
        EXPECT_EQ(render->rootItem(), nullptr);
        EXPECT_EQ(render->textureId(), 0);
        EXPECT_TRUE(guard.take().join('\n').contains(row.warning)) << row.warning;
    }
}

#include "SceneFixture.h"
#include "app/KImageProvider.h"
#include "render/FrameSource.h"
#include "support/Soon.h"

#include <QQuickItem>
#include <QSGTextureProvider>
#include <QTemporaryDir>

namespace {

class FakeFrames : public FrameSource
{
public:
    int textureId() const override { return 77; }
    QSize textureSize() const override { return {12, 34}; }
};

struct TextureProvider : test::SceneFixture
{
    ~TextureProvider() override { scene.reset(); }

    /// A scene like that of the still player: an image that only its effect source shows.
    void showPicture(const QImage &picture, bool isImage)
    {
        if (!window->engine()->imageProvider(KImageProvider::Name()))
            window->engine()->addImageProvider(KImageProvider::Name(), new KImageProvider);
        QQmlComponent component(window->engine());
        component.setData("import QtQuick 2.9\n"
                          "Item { property alias source: image.source\n"
                          "property alias effect: effectSource\n"
                          "Image { id: image; cache: false }\n"
                          "ShaderEffectSource { id: effectSource; x: -1; width: 1; height: 1\n"
                          "sourceItem: image; hideSource: true; visible: copies }\n"
                          "property bool copies: true }",
                          QUrl());
        scene.reset(qobject_cast<QQuickItem *>(component.create()));
        ASSERT_TRUE(scene) << qPrintable(component.errorString());
        scene->setProperty("copies", !isImage);
        setPicture(picture);
        // Told before the item is in a window, as a completing scene does.
        effect = scene->property("effect").value<QQuickItem *>();
        provider->setShaderEffectSource(effect, isImage);
        scene->setParentItem(window->contentItem());
        show();
        waitForSize(picture.size());
    }

    void setPicture(const QImage &picture)
    {
        const QString path = folder.path() + QString("/%1.png").arg(++number);
        picture.save(path);
        const QByteArray url = QUrl::toPercentEncoding(QUrl::fromLocalFile(path).toString());
        scene->setProperty("source", QUrl("image://still/" + QString::fromLatin1(url)));
    }

    void waitForSize(const QSize &size)
    {
        EXPECT_SOON(provider->textureId() > 0 && provider->textureSize() == size);
    }

    QTemporaryDir folder;
    int number = 0;
    std::unique_ptr<QQuickItem> scene;
    QQuickItem *effect = nullptr;
};

TEST_F(TextureProvider, SharedFramesOverruleWhatTheSceneStates)
{
    KTextureProvider shared(application, true, true);
    shared.setTextureId(5);
    EXPECT_EQ(shared.textureId(), 0) << "no source of frames yet";
    shared.setFrameSource(std::make_unique<FakeFrames>());
    EXPECT_EQ(shared.textureId(), 77);
    EXPECT_EQ(shared.textureSize(), QSize(12, 34));
    EXPECT_TRUE(shared.isSharedMemory() && !provider->isSharedMemory());
}

TEST_F(TextureProvider, EachPictureIsShownUprightAndMovingOnesFromACopy)
{
    state->setPitch(-0.5F); // up and down differ
    for (const bool isImage : {true, false}) {
        showPicture(pattern, isImage);
        const int ofEffect = onRenderThread([&] {
            const QSGTexture *texture = effect->textureProvider()->texture();
            return texture ? texture->textureId() : -1;
        });
        EXPECT_EQ(ofEffect <= 0, isImage) << "nobody draws a still into a texture of its size";
        EXPECT_NE(provider->textureId(), ofEffect);
        expectPanorama(grab(), pattern, state->rotationMatrix());
        for (const QSize &size : {QSize(300, 150), QSize(256, 256)}) {
            const QImage next = test::directionPattern(size);
            setPicture(next);
            waitForSize(size);
            grab();
            expectPanorama(grab(), next, state->rotationMatrix());
        }
    }
}

TEST_F(TextureProvider, WithoutAnItemNothingIsFollowed)
{
    showPicture(pattern, true);
    provider->setShaderEffectSource(nullptr);
    grab();
    provider->setTextureId(0);
    setPicture(test::directionPattern(QSize(300, 150)));
    QTest::qWait(1500); // longer than the poll
    EXPECT_EQ(provider->textureId(), 0);
}

TEST_F(TextureProvider, AnItemThatDiesTakesItsTextureAlong)
{
    showPicture(pattern, true);
    scene.reset();
    EXPECT_SOON(provider->textureId() == 0);
}

TEST_F(TextureProvider, TheEndOfTheSceneGraphStopsThePollAndANewOneIsFollowed)
{
    showPicture(pattern, true);
    window.reset();
    QTest::qWait(1200); // longer than the poll
    EXPECT_EQ(provider->textureId(), 0);
    makeWindow();
    scene->setParentItem(window->contentItem());
    show();
    waitForSize(pattern.size());
    expectPanorama(grab(), pattern, {});
}

} // namespace

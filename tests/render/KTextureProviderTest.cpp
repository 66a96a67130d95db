#include "SceneFixture.h"
#include "render/FrameSource.h"

#include <QQmlContext>
#include <QQmlEngine>
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

class TextureProvider : public test::SceneFixture
{
protected:
    /// A scene like that of the still player: an image that only its effect source shows.
    void showStill(const QImage &picture, bool isImage)
    {
        window->setResizeMode(QQuickView::SizeRootObjectToView);
        QQmlComponent component(window->engine());
        component.setData("import QtQuick 2.9\n"
                          "Item { property alias source: image.source\n"
                          "property alias effect: effectSource\n"
                          "Image { id: image; cache: false }\n"
                          "ShaderEffectSource { id: effectSource; x: -1; width: 1; height: 1\n"
                          "sourceItem: image; hideSource: true } }",
                          QUrl());
        scene.reset(qobject_cast<QQuickItem *>(component.create()));
        ASSERT_TRUE(scene) << qPrintable(component.errorString());
        setSource(picture);
        // Told before the item is in a window, as a completing scene does.
        effect = scene->property("effect").value<QQuickItem *>();
        provider->setShaderEffectSource(effect, isImage);
        scene->setParentItem(window->contentItem());
        show();
    }

    void setSource(const QImage &picture)
    {
        const QString path = folder.path() + QString("/%1.png").arg(++number);
        picture.save(path);
        scene->setProperty("source", QUrl::fromLocalFile(path));
    }

    int textureOfEffect()
    {
        std::atomic<int> id{0};
        const auto read = connectOnce(&QQuickWindow::beforeSynchronizing, [this, &id] {
            id = effect->textureProvider()->texture()->textureId();
        });
        grab();
        QObject::disconnect(read);
        return id;
    }

    void waitForSize(const QSize &size)
    {
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return provider->textureId() > 0 && provider->textureSize() == size; }));
    }

    ~TextureProvider() override { scene.reset(); }

    QTemporaryDir folder;
    int number = 0;
    std::unique_ptr<QQuickItem> scene;
    QQuickItem *effect = nullptr;
};

TEST_F(TextureProvider, StatedValuesAreSignalledOnce)
{
    QSignalSpy id(provider, &KTextureProvider::textureIdChanged);
    QSignalSpy size(provider, &KTextureProvider::textureSizeChanged);
    EXPECT_EQ(provider->textureSize(), QSize(-1, -1));
    for (int i = 0; i < 2; ++i) {
        provider->setTextureId(5);
        provider->setTextureSize({4, 2});
    }
    EXPECT_EQ(provider->textureId(), 5);
    EXPECT_EQ(provider->textureSize(), QSize(4, 2));
    EXPECT_EQ(id.count(), 1);
    EXPECT_EQ(size.count(), 1);
    EXPECT_FALSE(provider->isSharedMemory());
}

TEST_F(TextureProvider, SharedFramesOverruleWhatTheSceneStates)
{
    KTextureProvider shared(application, true, true);
    shared.setTextureId(5);
    EXPECT_EQ(shared.textureId(), 0) << "no source of frames yet";
    shared.setFrameSource(std::make_unique<FakeFrames>());
    EXPECT_EQ(shared.textureId(), 77);
    EXPECT_EQ(shared.textureSize(), QSize(12, 34));
    EXPECT_TRUE(shared.isSharedMemory());
}

TEST_F(TextureProvider, AStillIsShownUprightAndDirectly)
{
    showStill(pattern, true);
    waitForSize(pattern.size());
    EXPECT_EQ(provider->textureId(), textureOfEffect());
    state->setPitch(-0.5F); // up and down differ
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

TEST_F(TextureProvider, AMovingPictureIsShownUprightFromACopy)
{
    showStill(pattern, false);
    waitForSize(pattern.size());
    EXPECT_NE(provider->textureId(), textureOfEffect());
    state->setPitch(-0.5F);
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

TEST_F(TextureProvider, EachNextPictureIsFollowed)
{
    for (const bool isImage : {true, false}) {
        showStill(pattern, isImage);
        waitForSize(pattern.size());
        for (const QSize &size : {QSize(300, 150), QSize(256, 256)}) {
            const QImage next = test::directionPattern(size);
            setSource(next);
            waitForSize(size);
            grab();
            expectPanorama(grab(), next, EyeLayout::Single, 0, state->rotationMatrix());
        }
    }
}

TEST_F(TextureProvider, WithoutAnItemNothingIsFollowed)
{
    showStill(pattern, true);
    waitForSize(pattern.size());
    provider->setShaderEffectSource(nullptr);
    grab();
    provider->setTextureId(0);
    setSource(test::directionPattern(QSize(300, 150)));
    QTest::qWait(1500); // longer than the poll
    EXPECT_EQ(provider->textureId(), 0);
}

TEST_F(TextureProvider, AnItemThatDiesTakesItsTextureAlong)
{
    showStill(pattern, true);
    waitForSize(pattern.size());
    scene.reset();
    EXPECT_TRUE(QTest::qWaitFor([&] { return provider->textureId() == 0; }));
    EXPECT_EQ(grab().pixel(80, 60), kClearColor);
}

TEST_F(TextureProvider, TheEndOfTheSceneGraphStopsThePollAndANewOneIsFollowed)
{
    showStill(pattern, true);
    waitForSize(pattern.size());
    window.reset();
    EXPECT_EQ(provider->textureId(), 0);
    QTest::qWait(1200); // longer than the poll
    EXPECT_EQ(provider->textureId(), 0);

    makeWindow();
    scene->setParentItem(window->contentItem());
    show();
    waitForSize(pattern.size());
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

} // namespace

#include "video/PlayerWindow.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QQmlComponent>

namespace test {

QUrl clip(const char *name)
{
    const QString folder = QStringLiteral(ORBILENS_BINARY_DIR "/tests/video/clips");
    static const int result = QProcess::execute(
        QStringLiteral(ORBILENS_SOURCE_DIR "/tests/video/make-clips.sh"), {folder});
    EXPECT_EQ(result, 0) << "the clips could not be made";
    if (!qstrncmp(name, "http", 4))
        return QUrl(QString::fromUtf8(name));
    return QUrl::fromLocalFile(folder + QLatin1Char('/') + QString::fromUtf8(name));
}

PlayerWindow::PlayerWindow(Shown shown)
{
    qmlRegisterType<KVlcPlayerQml>("VLCQt", 1, 0, "VlcVideoPlayer");
    m_view.resize(320, 160);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    auto *component = new QQmlComponent(m_view.engine(), &m_view);
    component->setData("import QtQuick 2.5\nimport VLCQt 1.0\n"
                       "Item { VlcVideoPlayer { width: parent.width; height: 160 } }",
                       {});
    m_view.setContent({}, component, component->create());
    m_player = m_view.rootObject()->findChild<KVlcPlayerQml *>();
    const auto record = [this](auto signal, auto list) {
        QObject::connect(m_player, signal, &m_view, [list](auto value) { list->append(value); });
    };
    record(&KVlcPlayerQml::vlcStateChanged, &states);
    record(&KVlcPlayerQml::positionChanged, &positions);
    record(&KVlcPlayerQml::durationChanged, &durations);
    record(&KVlcPlayerQml::errorStringChanged, &errors);
    QObject::connect(m_player, &KVlcPlayerQml::textureIdChanged, &m_view,
                     [this] { textures.append(m_player->textureId()); });
    if (shown == Shown::Never)
        return;
    m_view.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_view));
}

bool PlayerWindow::openAndShow(const QUrl &url)
{
    forget();
    m_player->openFile(url);
    return soon([this] { return m_player->textureId() != 0; });
}

void PlayerWindow::forget()
{
    states.clear();
    positions.clear();
    durations.clear();
    textures.clear();
    errors.clear();
}

} // namespace test

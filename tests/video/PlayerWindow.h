#pragma once

// A window with one player in it, a record of what the player reports, and the clips to play.

#include "video/KVlcPlayerQml.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QQuickView>

#include <functional>
#include <memory>
#include <vector>

namespace test {

/// A clip of make-clips.sh, which runs at the first call.
QUrl clip(const QString &name);

/// Lets events pass until @p condition holds; false after @p milliseconds.
bool waitUntil(const std::function<bool()> &condition, int milliseconds = 15000);

/// Lets events pass.
void passTime(int milliseconds);

/// RGBA bytes of a texture in the share group of all windows, its first row first.
struct Picture
{
    QSize size;
    std::vector<std::uint8_t> bytes;

    std::array<int, 3> at(int x, int y) const;
};
Picture readTexture(int textureId);

/// Textures, buffers, programs and shaders alive in the share group of all windows.
std::array<int, 4> liveGlObjects();

/// Threads of this process.
int threadCount();

class PlayerWindow
{
public:
    enum class Shown { Yes, Never };

    explicit PlayerWindow(Shown shown = Shown::Yes);
    ~PlayerWindow();

    KVlcPlayerQml &player() { return *m_player; }
    QQuickView &view() { return m_view; }

    /// Opens and waits for the second picture; false when none came.
    bool openAndShow(const QUrl &url);
    bool reached(KVlcPlayerQml::VlcState state) const { return states.contains(state); }
    void forget();

    bool wait(KVlcPlayerQml::VlcState state)
    {
        return waitUntil([&] { return reached(state); });
    }

    // In the order of their arrival on the GUI thread.
    QList<int> states;
    QList<int> positions;
    QList<int> durations;
    QList<int> textures;
    QStringList errors;

private:
    QQuickView m_view;
    KVlcPlayerQml *m_player = nullptr; ///< child of the view's content
};

} // namespace test

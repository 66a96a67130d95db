#pragma once

// A window with one player in it, a record of what the player reports, and the clips to play.

#include "support/Soon.h"
#include "video/KVlcPlayerQml.h"

#include <QQuickView>
#include <QTest>

namespace test {

/// A clip of make-clips.sh, which runs at the first call; a web address stays one.
QUrl clip(const char *name);

class PlayerWindow
{
public:
    enum class Shown { Yes, Never };

    explicit PlayerWindow(Shown shown = Shown::Yes);

    KVlcPlayerQml &player() { return *m_player; }
    QQuickView &view() { return m_view; }

    /// Opens and waits for the second picture; false when none came.
    bool openAndShow(const QUrl &url);
    bool reached(KVlcPlayerQml::VlcState state) const { return states.contains(state); }
    void forget();
    int lastPosition() const { return positions.isEmpty() ? 0 : positions.last(); }

    bool wait(KVlcPlayerQml::VlcState state)
    {
        return soon([&] { return reached(state); });
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

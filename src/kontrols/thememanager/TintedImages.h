#pragma once

// Gives the scene pictures in one colour, as "image://tinted/<colour>/<url>" with the colour as
// "rrggbb" or "aarrggbb" and the URL of a resource or file percent-encoded. The scene's engine owns
// it and asks on the GUI thread, or on its reader thread for asynchronous images.

#include <QQuickImageProvider>

class TintedImages : public QQuickImageProvider
{
public:
    TintedImages();

    /// Name under which the engine knows it.
    static QString Name();

    /// The picture fitted into @p requestedSize, its colours mixed with the one asked for by that
    /// one's alpha; a null image for what cannot be read.
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;
};

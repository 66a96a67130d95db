#pragma once

// The shared guard of image loading: one picture is decoded at a time, since each takes all cores
// and much memory. Made on the stack of any thread; not to be nested.

#include <QMutexLocker>

class ImageLoadGuard
{
public:
    /// Waits for its turn; @p label names the place in traces.
    explicit ImageLoadGuard(const char *label);
    ~ImageLoadGuard();
    ImageLoadGuard(const ImageLoadGuard &) = delete;
    ImageLoadGuard &operator=(const ImageLoadGuard &) = delete;

private:
    QMutexLocker m_lock;
    const char *m_label;
};

#include "KImage/ImageLoadGuard.h"

#include <QLoggingCategory>

Q_LOGGING_CATEGORY(guardLog, "kimage.guard", QtWarningMsg)

namespace {

QMutex &sharedMutex()
{
    static QMutex mutex;
    return mutex;
}

} // namespace

ImageLoadGuard::ImageLoadGuard(const char *label)
    : m_lock(&sharedMutex())
    , m_label(label)
{
    qCDebug(guardLog) << "enter" << m_label;
}

ImageLoadGuard::~ImageLoadGuard()
{
    qCDebug(guardLog) << "leave" << m_label;
}

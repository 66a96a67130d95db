#include "input/leap/LeapTutorial.h"

#include <algorithm>

namespace {

bool isLasting(HandGesture gesture)
{
    switch (gesture) {
    case HandGesture::Seek:
    case HandGesture::Clap:
    case HandGesture::Hold:
    case HandGesture::Swipe:
        return false;
    default:
        return true;
    }
}

} // namespace

void LeapTutorial::start(const HandOptions &options)
{
    stop();
    if (options.mode == HandCameraMode::Finger) {
        m_pages = {HandGesture::Finger, HandGesture::Fist};
    } else {
        m_pages = {HandGesture::Move, HandGesture::Fist, HandGesture::Pinch};
        if (options.zoom)
            m_pages.push_back(HandGesture::Zoom);
        if (options.roll)
            m_pages.push_back(HandGesture::Turn);
    }
    if (options.seek)
        m_pages.push_back(HandGesture::Seek);
    if (options.playPause)
        m_pages.push_back(HandGesture::Hold);
    m_pages.push_back(HandGesture::Swipe);
    m_pages.push_back(HandGesture::Clap);
}

void LeapTutorial::stop()
{
    *this = {};
}

void LeapTutorial::show(int page)
{
    for (const int known : {0, 1, 2, 3, 4, 5, 6, 7, 10, 20}) {
        if (known != page)
            continue;
        const auto gesture = HandGesture(page);
        const auto place = std::find(m_pages.begin(), m_pages.end(), gesture);
        if (place == m_pages.end())
            m_pages = {gesture};
        m_index = std::size_t(std::find(m_pages.begin(), m_pages.end(), gesture) - m_pages.begin());
        m_practised = m_praised = 0;
        m_done = false;
        return;
    }
    stop();
}

void LeapTutorial::next()
{
    if (++m_index >= m_pages.size())
        stop();
    m_practised = m_praised = 0;
    m_done = false;
}

bool LeapTutorial::update(HandGestures seen, float seconds)
{
    if (page() == kNone)
        return false;
    const HandGesture wanted = m_pages[m_index];
    if (m_done) {
        m_praised += seconds;
    } else if (seen.has(wanted)) {
        m_practised += seconds;
        m_done = !isLasting(wanted) || m_practised >= kEnough;
    }
    if (m_praised < kPraise)
        return false;
    next();
    return true;
}

int LeapTutorial::page() const
{
    return m_index < m_pages.size() ? int(m_pages[m_index]) : kNone;
}

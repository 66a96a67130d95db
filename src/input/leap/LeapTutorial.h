#pragma once

// The order of the tutorial's pages and when one is done: the user has made its gesture. No window,
// no clock of its own. Owned by KLeap.

#include "input/hands/HandActions.h"
#include "input/hands/HandOptions.h"

#include <vector>

class LeapTutorial
{
public:
    static constexpr int kNone = -1;
    static constexpr int kStartRequest = -2;

    /// Seconds for which a lasting gesture must have been made.
    static constexpr float kEnough = 0.8F;
    /// Seconds for which a page stays once its gesture was made.
    static constexpr float kPraise = 1.2F;

    /// Begins with the first page of the gestures that @p options leave on.
    void start(const HandOptions &options);
    void stop();

    /// Goes to that page, whether or not the options have it; numbers without a page stop it.
    void show(int page);
    void next();

    /// Takes what was seen in one frame. True when that changed the page.
    [[nodiscard]] bool update(HandGestures seen, float seconds);

    /// The number of the page shown, kNone when there is none.
    int page() const;

private:
    std::vector<HandGesture> m_pages;
    std::size_t m_index = 0;
    float m_practised = 0;
    float m_praised = 0;
    bool m_done = false;
};

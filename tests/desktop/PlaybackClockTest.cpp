// Which reports of a position are jumps.

#include "desktop/PlaybackClock.h"

#include <gtest/gtest.h>

TEST(PlaybackClock, TellsAJumpFromPlayingOn)
{
    // Behind a position of 10000, reported at 500; paused until 0: plays from the beginning.
    const std::tuple<const char *, qint64, qint64, qint64, bool, bool> rows[] = {
        {"plays on", 10300, 800, 0, true, false},
        {"a late report of playing on", 15000, 5500, 0, true, false},
        {"a stall of half a second", 10000, 1000, 0, true, false},
        {"forwards", 12000, 800, 0, true, true},
        {"to the start again", 0, 800, 0, true, true},
        {"still while paused", 10000, 60500, 600, false, false},
        {"plays on after a pause", 10300, 60800, 60500, true, false},
        {"moved while paused", 8000, 800, 600, false, true}};
    for (const auto &[name, position, now, pausedUntil, playing, jumped] : rows) {
        PlaybackClock clock;
        clock.setPlaying(pausedUntil == 0, 0);
        EXPECT_FALSE(clock.moveTo(10000, 500)) << "nothing to jump from";
        clock.setPlaying(playing, pausedUntil);
        EXPECT_EQ(clock.moveTo(position, now), jumped) << name;
        EXPECT_EQ(clock.position(), position) << name;
    }
}

TEST(PlaybackClock, AWantedJumpMayBeSmallAndANewMediumIsNone)
{
    PlaybackClock clock;
    clock.setPlaying(true, 0);
    clock.moveTo(10000, 500);
    clock.expectJump();
    EXPECT_TRUE(clock.moveTo(10400, 600));
    EXPECT_FALSE(clock.moveTo(10500, 700)) << "once";
    clock.restart();
    EXPECT_EQ(clock.position(), 0);
    EXPECT_FALSE(clock.moveTo(3000, 800));
}

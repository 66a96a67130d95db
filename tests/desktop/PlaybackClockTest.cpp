// Which reports of a position are jumps.

#include "desktop/PlaybackClock.h"

#include <gtest/gtest.h>

TEST(PlaybackClock, TellsAJumpFromPlayingOn)
{
    const struct
    {
        const char *name;
        qint64 position; // after one at 10000, reported at 500
        qint64 now;
        bool playing;
        bool jumped;
    } rows[] = {{"plays on", 10300, 800, true, false},
                {"a late report of playing on", 15000, 5500, true, false},
                {"a stall of half a second", 10000, 1000, true, false},
                {"forwards", 12000, 800, true, true},
                {"to the start again", 0, 800, true, true},
                {"still while paused", 10000, 60500, false, false},
                {"moved while paused", 8000, 800, false, true}};
    for (const auto &row : rows) {
        PlaybackClock clock;
        EXPECT_FALSE(clock.moveTo(10000, 500, true)) << "nothing to jump from";
        EXPECT_EQ(clock.moveTo(row.position, row.now, row.playing), row.jumped) << row.name;
        EXPECT_EQ(clock.position(), row.position) << row.name;
    }
}

TEST(PlaybackClock, AWantedJumpMayBeSmallAndANewMediumIsNone)
{
    PlaybackClock clock;
    clock.moveTo(10000, 500, true);
    clock.expectJump();
    EXPECT_TRUE(clock.moveTo(10400, 600, true));
    EXPECT_FALSE(clock.moveTo(10500, 700, true)) << "once";
    clock.restart();
    EXPECT_EQ(clock.position(), 0);
    EXPECT_FALSE(clock.moveTo(3000, 800, true));
}

#include "kontrols/docking/DockLayout.h"

#include <gtest/gtest.h>

using namespace docking;

TEST(DockLayout, givesStripsInTurnAndTheRestToTheCentre)
{
    const QRectF area(0, 0, 100, 80);
    const struct
    {
        const char *what;
        QVector<Panel> panels;
        QVector<QRectF> places;
    } cases[] = {
        {"nothing", {}, {}},
        {"each edge",
         {{Edge::Left, 10},
          {Edge::Top, 20},
          {Edge::Right, 30},
          {Edge::Bottom, 5},
          {Edge::Center, 1}},
         {{0, 0, 10, 80}, {10, 0, 90, 20}, {70, 20, 30, 60}, {10, 75, 60, 5}, {10, 20, 60, 55}}},
        {"the centre named first",
         {{Edge::Center, 0}, {Edge::Left, 40}},
         {{40, 0, 60, 80}, {0, 0, 40, 80}}},
        {"two in the centre", {{Edge::Center, 0}, {Edge::Center, 0}}, {area, area}},
        {"more than there is", {{Edge::Left, 500}, {Edge::Right, 10}}, {area, {100, 0, 0, 80}}},
        {"less than nothing", {{Edge::Top, -5}}, {{0, 0, 100, 0}}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(arrange(area, c.panels), c.places) << c.what;
}

#include "render/ViewGeometry.h"
#include "render/KShaderCodeBuilder.h"
#include "render/Snapshot.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QStandardPaths>

namespace {

using B = KShaderCodeBuilder;

TEST(ViewGeometry, ViewportFollowsShapeLayoutAndPixelRatio)
{
    const struct
    {
        QSizeF item;
        EyeLayout layout;
        double ratio;
        QVector2D size, sizeRatio;
        float smaller;
        QSize pixels;
    } cases[] = {
        {{800, 400}, EyeLayout::Single, 1, {800, 400}, {2, 1}, 400, {800, 400}},
        {{400, 800}, EyeLayout::Single, 1, {400, 800}, {1, 2}, 400, {400, 800}},
        {{800, 400}, EyeLayout::Split, 1, {400, 400}, {1, 1}, 400, {400, 400}},
        {{800, 400}, EyeLayout::SplitTelevision, 1, {800, 400}, {2, 1}, 400, {400, 400}},
        {{801, 401}, EyeLayout::Single, 1.5, {801, 401}, {801 / 401.0f, 1}, 401, {1201, 601}},
        {{801, 401}, EyeLayout::Split, 2, {400.5f, 401}, {1, 401 / 400.5f}, 400.5f, {801, 802}},
        {{0, 0}, EyeLayout::Single, 1, {0, 0}, {1, 1}, 0, {0, 0}},
    };
    for (const auto &c : cases) {
        const ViewportParameters p = viewportParameters(c.item, c.layout, c.ratio);
        EXPECT_EQ(p.size, c.size);
        EXPECT_EQ(p.sizeMin, QVector2D(c.smaller, c.smaller));
        EXPECT_TRUE(qFuzzyCompare(p.sizeRatio, c.sizeRatio)) << c.item.width() << c.item.height();
        EXPECT_EQ(p.pixels, c.pixels);
    }
}

TEST(ViewGeometry, RenderedSnapshotsHaveTheResolutionOfTheSource)
{
    const QSize texture(4000, 2000);
    const struct
    {
        QSize texture, view;
        float fov;
        int input, output;
        QSize expected;
    } cases[] = {
        // A view of 90 degrees sees a quarter of the width and half of the height.
        {texture, {100, 100}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {1000, 1000}},
        {texture, {200, 100}, 90, B::CUBEMAP, B::FISHEYE, {2000, 1000}},
        {texture, {100, 200}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {1000, 2000}},
        {texture, {160, 90}, 77, B::EQUIRECTANGULAR, B::RECTILINEAR, {1520, 855}},
        {texture, {100, 100}, 90, B::EQUIRECTANGULAR, B::LITTLE_PLANET, {3000, 3000}},
        {texture, {100, 100}, 80, B::EQUIRECTANGULAR, B::ORVEX, {888, 888}},
        {texture, {100, 100}, 360, B::EQUIRECTANGULAR, B::ORVEX, {12000, 12000}},
        {texture, {123, 45}, 90, B::STANDARD, B::RECTILINEAR, {123, 45}},
        {texture, {123, 45}, 90, B::FISHEYE_CIRCLE, B::RECTILINEAR, {123, 45}},
        {texture, {123, 0}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {123, 0}},
        {{1 << 30, 1 << 30}, {1, 1}, 300, B::EQUIRECTANGULAR, B::ORVEX, {1 << 20, 1 << 20}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(renderSize(c.texture, c.view, c.fov, c.input, c.output), c.expected)
            << c.expected.width() << "x" << c.expected.height();
}

TEST(ViewGeometry, ASourceWithoutSizeKeepsTheViewAndWarns)
{
    test::WarningGuard guard;
    const QSize view(640, 360);
    EXPECT_EQ(renderSize({-1, -1}, view, 90, B::EQUIRECTANGULAR, B::ORVEX), view);
    EXPECT_EQ(guard.take(), QStringList(QStringLiteral("Invalid size")));
}

TEST(ViewGeometry, LimitsKeepTheShape)
{
    const struct
    {
        QSize size, limit, expected;
    } cases[] = {
        {{100, 50}, {100, 100}, {100, 50}},        {{12000, 6000}, {8192, 8192}, {8192, 4096}},
        {{500, 12000}, {8192, 8192}, {341, 8192}}, {{400, 300}, {200, 100}, {133, 100}},
        {{400, 300}, {-1, -1}, {400, 300}},        {{100000, 1}, {100, 100}, {100, 1}},
    };
    for (const auto &c : cases)
        EXPECT_EQ(limitedSize(c.size, c.limit), c.expected) << c.size.width();
}

TEST(Snapshot, NamesTellKindAndMoment)
{
    const QDateTime time(QDate(2026, 3, 4), QTime(15, 6, 7, 89));
    EXPECT_EQ(snapshotFileName(SnapshotKind::Snap, time).toStdString(),
              "ORBLP_snap_2026-03-04_15_06_07_89.png");
    EXPECT_EQ(snapshotFileName(SnapshotKind::Render, time).toStdString(),
              "ORBLP_render_2026-03-04_15_06_07_89.png");
}

TEST(Snapshot, FolderComesFromTheSettingElseFromTheDesktop)
{
    const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    const QString fallback = desktop.isEmpty() ? QDir::homePath() : desktop;
    EXPECT_EQ(snapshotFolder(QStringLiteral("file:///shots/of%20mine")).toStdString(),
              "/shots/of mine");
    EXPECT_EQ(snapshotFolder(QStringLiteral("/shots")).toStdString(), "/shots");
    for (const char *none : {"toBeDefine", "", "http://example.org/x"})
        EXPECT_EQ(snapshotFolder(QLatin1String(none)), fallback) << none;
}

} // namespace

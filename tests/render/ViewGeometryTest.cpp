#include "render/ViewGeometry.h"
#include "render/KShaderCodeBuilder.h"
#include "render/Snapshot.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

namespace {

using B = KShaderCodeBuilder;

TEST(ViewGeometry, ViewportFollowsShapeLayoutAndPixelRatio)
{
    const std::tuple<QSizeF, EyeLayout, double, QSizeF, QSize> cases[] = {
        {{400, 800}, EyeLayout::Single, 1, {400, 800}, {400, 800}},
        {{800, 400}, EyeLayout::Split, 1, {400, 400}, {400, 400}},
        {{800, 400}, EyeLayout::SplitTelevision, 1, {800, 400}, {400, 400}},
        {{801, 401}, EyeLayout::Split, 1.5, {400.5, 401}, {600, 601}},
        {{0, 0}, EyeLayout::Single, 1, {0, 0}, {0, 0}},
    };
    for (const auto &[item, layout, pixelRatio, shader, pixels] : cases) {
        const ViewportParameters p = viewportParameters(item, layout, pixelRatio);
        const double smaller = std::min(shader.width(), shader.height());
        const QSizeF ratio = smaller > 0 ? shader / smaller : QSizeF(1, 1);
        EXPECT_EQ(p.size, QVector2D(float(shader.width()), float(shader.height())));
        EXPECT_EQ(p.sizeMin, QVector2D(float(smaller), float(smaller)));
        EXPECT_EQ(p.sizeRatio, QVector2D(float(ratio.width()), float(ratio.height())));
        EXPECT_EQ(p.pixels, pixels);
    }
}

TEST(ViewGeometry, RenderedSnapshotsHaveTheResolutionOfTheSource)
{
    test::WarningGuard guard({QStringLiteral("^Invalid size$")});
    const QSize source(4000, 2000), none(-1, -1);
    const std::tuple<QSize, QSize, float, int, int, QSize> cases[] = {
        // A view of 90 degrees sees a quarter of the width and half of the height.
        {source, {200, 100}, 90, B::CUBEMAP, B::FISHEYE, {2000, 1000}},
        {source, {100, 200}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {1000, 2000}},
        {source, {100, 100}, 90, B::EQUIRECTANGULAR, B::LITTLE_PLANET, {3000, 3000}},
        {source, {100, 100}, 80, B::EQUIRECTANGULAR, B::ORVEX, {888, 888}},
        {source, {100, 100}, 360, B::EQUIRECTANGULAR, B::ORVEX, {12000, 12000}},
        {source, {123, 45}, 90, B::FISHEYE_CIRCLE, B::RECTILINEAR, {123, 45}},
        {source, {123, 0}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {123, 0}},
        {none, {123, 45}, 90, B::EQUIRECTANGULAR, B::RECTILINEAR, {123, 45}},
        {{1 << 30, 1 << 30}, {1, 1}, 300, B::CUBEMAP, B::ORVEX, {1 << 20, 1 << 20}},
    };
    for (const auto &[texture, view, fov, input, output, expected] : cases)
        EXPECT_EQ(renderSize(texture, view, fov, input, output), expected)
            << expected.width() << "x" << expected.height();

    const QSize limits[][3] = {{{12000, 6000}, {8192, 8192}, {8192, 4096}},
                               {{500, 12000}, {8192, 8192}, {341, 8192}},
                               {{400, 300}, {200, 100}, {133, 100}},
                               {{400, 300}, none, {400, 300}},
                               {{100000, 1}, {100, 100}, {100, 1}}};
    for (const auto &c : limits)
        EXPECT_EQ(limitedSize(c[0], c[1]), c[2]) << c[0].width();
}

TEST(Snapshot, NameAndFolder)
{
    const QDateTime time(QDate(2026, 3, 4), QTime(15, 6, 7, 89));
    EXPECT_EQ(snapshotFileName(SnapshotKind::Render, time).toStdString(),
              "ORBLP_render_2026-03-04_15_06_07_89.png");
    EXPECT_EQ(snapshotFolder(QStringLiteral("file:///of%20mine")).toStdString(), "/of mine");
    const QString desktop = snapshotFolder(QStringLiteral("toBeDefine"));
    EXPECT_FALSE(desktop.isEmpty());
    EXPECT_EQ(snapshotFolder(QStringLiteral("http://example.org/x")), desktop);
}

} // namespace

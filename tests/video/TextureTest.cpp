#include "support/GlContext.h"

#include "video/FrameTexture.h"
#include "video/IntelMapTextureImp.h"
#include "video/PboTextureImp.h"
#include "video/PinnedMemoryTextureImp.h"
#include "video/SimpleTextureImp.h"

#include <QOpenGLFunctions_1_1>
#include <QOpenGLFunctions_3_0>
#include <QOpenGLFunctions_3_2_Core>

#include <gmock/gmock.h>

using ::testing::ElementsAre;

namespace {

constexpr GLenum kNoError = GL_NO_ERROR;

std::vector<std::uint8_t> texels(test::GlContext &gl, const TextureStorage &storage, GLuint texture)
{
    std::vector<std::uint8_t> result(std::size_t(storage.width * storage.height) *
                                     (storage.format == GL_RED ? 1 : 4));
    gl->glBindTexture(storage.target, texture);
    gl->glPixelStorei(GL_PACK_ALIGNMENT, 1);
    gl->glGetTexImage(storage.target, 0, storage.format, GL_UNSIGNED_BYTE, result.data());
    gl->glBindTexture(storage.target, 0);
    return result;
}

enum class Way { Simple, PixelBuffer, PixelBufferWithFences };

std::unique_ptr<TextureImp> makeImp(test::GlContext &gl, Way way)
{
    if (way == Way::Simple)
        return std::make_unique<SimpleTextureImp>(gl.version<QOpenGLFunctions_1_1>());
    auto imp = std::make_unique<PboTextureImp>(gl.version<QOpenGLFunctions_2_1>(),
                                               gl.version<QOpenGLFunctions_3_2_Core>());
    imp->setUseFence(true);
    return imp;
}

class FrameTextureByStrategy : public ::testing::TestWithParam<Way>
{
};

TEST_P(FrameTextureByStrategy, CarriesEachFormatAndSizeIntoTheTexture)
{
    test::GlContext gl;
    const bool simple = GetParam() == Way::Simple;
    const auto kind = simple ? TextureTransferKind::Simple : TextureTransferKind::PixelBuffer;
    FrameTexture frame(GetParam() == Way::PixelBuffer
                           ? std::make_unique<Texture>(false)
                           : std::make_unique<Texture>(kind, makeImp(gl, GetParam())));
    ASSERT_EQ(frame.kind(), kind);
    frame.create();
    ASSERT_TRUE(frame.isValid());
    const std::pair<quint32, quint32> sizes[] = {{16, 8}, {322, 182}, {321, 181}, {7, 5}};
    for (quint32 i = 0; i < 8 * 4; ++i) {
        const auto [width, height] = sizes[i % 4];
        SCOPED_TRACE(std::to_string(1 + i / 4) + " at " + std::to_string(width));
        frame.setLayout(width, height, VlcPixelFormat(1 + i / 4));
        const PlaneLayout &layout = frame.layout();
        for (quint8 round = 0; round < 2; ++round) {
            std::uint8_t *base = frame.plane(0);
            ASSERT_NE(base, nullptr);
            for (int p = 0; p < 3; ++p)
                EXPECT_EQ(frame.plane(p) - base,
                          simple ? layout.cpuOffset(p) : layout.mappedOffset(p));
            EXPECT_EQ(frame.plane(3), nullptr);
            for (std::size_t at = 0; at < layout.allocationSize(); ++at)
                base[at] = quint8(at * 7 + at / 251 + round);
            frame.unmap();
            frame.upload();
            frame.texture()->WaitForUpload();
            const auto read = texels(gl, layout.storage(), frame.textureId());
            for (std::size_t at = 0; at < read.size(); ++at)
                ASSERT_EQ(read[at], quint8(at * 7 + at / 251 + round)) << at;
        }
        EXPECT_EQ(gl->glGetError(), kNoError);
        EXPECT_EQ(frame.pitch(0), layout.pitch[0]);
        EXPECT_EQ(frame.pitch(3) + frame.width(3) + frame.height(3), 0U);
    }
    const GLuint name = frame.textureId();
    gl.setCurrent(false);
    frame.destroy();
    EXPECT_TRUE(frame.isValid()) << "without its context the name stays";
    gl.setCurrent(true);
    frame.destroy();
    EXPECT_FALSE(frame.isValid() || gl->glIsTexture(name));
}

INSTANTIATE_TEST_SUITE_P(Drivers, FrameTextureByStrategy,
                         ::testing::Values(Way::Simple, Way::PixelBuffer,
                                           Way::PixelBufferWithFences));

TEST(Texture, WithoutAContextIsHarmless)
{
    ASSERT_EQ(QOpenGLContext::currentContext(), nullptr);
    FrameTexture frame;
    EXPECT_EQ(frame.kind(), TextureTransferKind::None);
    frame.create();
    frame.setLayout(16, 8, VlcPixelFormat::I420);
    EXPECT_EQ(frame.plane(1), nullptr);
    frame.unmap();
    frame.upload();
    frame.texture()->WaitForUpload();
    EXPECT_EQ(frame.texture()->Upload(0, 0, 2, 2, 0, 0, nullptr), nullptr);
    EXPECT_FALSE(frame.isValid());
    EXPECT_EQ(frame.textureId(), 0U);
    frame.destroy();
}

TEST(PinnedMemoryTexture, TakesFramesFromTheCallersMemory)
{
    const auto bytes = [](GLenum format, GLenum type) {
        return PinnedMemoryTextureImp::pinnedBytes(format, 5, 3, type);
    };
    EXPECT_EQ(bytes(GL_RED, GL_UNSIGNED_BYTE), 8U * 3);
    EXPECT_EQ(bytes(GL_RGB, GL_UNSIGNED_BYTE), 16U * 3);
    EXPECT_EQ(bytes(GL_RED, GL_UNSIGNED_SHORT), 12U * 3);

    test::GlContext gl;
    Texture texture(true);
    if (texture.kind() != TextureTransferKind::AmdPinned)
        GTEST_SKIP() << "no GL_AMD_pinned_memory here";
    const TextureStorage storage{GL_TEXTURE_2D, GL_RGBA, 33, 5, GL_RGBA, GL_UNSIGNED_BYTE};
    texture.Create();
    texture.Alloc(GL_TEXTURE_2D, GL_RGBA, 33, 5, GL_RGBA, GL_UNSIGNED_BYTE, 33 * 5 * 4);
    EXPECT_EQ(texture.Map(), nullptr);
    for (quint8 round = 0; round < 3; ++round) {
        std::vector<std::uint8_t> data(33 * 5 * 4);
        for (std::size_t i = 0; i < data.size(); ++i)
            data[i] = quint8(i * 3 + round);
        texture.Upload(GL_TEXTURE_2D, GL_RGBA, 33, 5, GL_RGBA, GL_UNSIGNED_BYTE, data.data());
        texture.WaitForUpload();
        EXPECT_EQ(texels(gl, storage, texture.TextureId()), data);
    }
    EXPECT_EQ(gl->glGetError(), kNoError);
    texture.Destroy();
    EXPECT_FALSE(texture.IsValid());
}

// The driver here has no GL_INTEL_map_texture: its three entry points are recorded.
std::string calls;
std::array<std::uint8_t, 64> driverMemory;

void QOPENGLF_APIENTRY recordSync(GLuint)
{
    calls += "sync ";
}
void QOPENGLF_APIENTRY recordUnmap(GLuint, GLint level)
{
    calls += "unmap" + std::to_string(level) + " ";
}
void *QOPENGLF_APIENTRY recordMap(GLuint, GLint level, GLbitfield access, GLint *stride, GLenum *)
{
    calls += "map" + std::to_string(level) + std::to_string(access) + " ";
    *stride = 4096;
    return driverMemory.data();
}

TEST(IntelMapTexture, MapsTheTextureItselfAndOverrulesOtherStorage)
{
    test::GlContext gl;
    const auto resolve = [](const char *name) {
        const bool map = !qstrcmp(name, "glMapTexture2DINTEL");
        const bool sync = !qstrcmp(name, "glSyncTextureINTEL");
        return map    ? reinterpret_cast<QFunctionPointer>(recordMap)
               : sync ? reinterpret_cast<QFunctionPointer>(recordSync)
                      : reinterpret_cast<QFunctionPointer>(recordUnmap);
    };
    const auto make = [&](const IntelMapTextureImp::Resolver &resolver) {
        return std::make_unique<Texture>(
            TextureTransferKind::IntelMap,
            std::make_unique<IntelMapTextureImp>(gl.version<QOpenGLFunctions_3_0>(), resolver));
    };
    FrameTexture frame(make(resolve));
    frame.create();
    frame.setLayout(16, 8, VlcPixelFormat::Yuyv);
    // This driver does not know the linear layout that comes before the storage.
    EXPECT_EQ(gl->glGetError(), GLenum(GL_INVALID_ENUM));
    gl->glBindTexture(GL_TEXTURE_2D, frame.textureId());
    GLint values[3] = {};
    gl->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &values[0]);
    gl->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT, &values[1]);
    gl->glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, &values[2]);
    EXPECT_THAT(values, ElementsAre(32, GL_RGBA8, GL_CLAMP_TO_EDGE));

    EXPECT_EQ(frame.plane(0), driverMemory.data());
    EXPECT_EQ(frame.plane(0), driverMemory.data());
    frame.unmap();
    frame.upload();
    EXPECT_EQ(calls, "map02 unmap0 sync ");
    const GLuint name = frame.textureId();
    frame.destroy();
    EXPECT_EQ(frame.textureId(), name) << "the name stays";
    EXPECT_FALSE(gl->glIsTexture(name));

    FrameTexture broken(make([](const char *) { return nullptr; }));
    broken.create();
    EXPECT_FALSE(broken.isValid());
    EXPECT_EQ(broken.plane(0), nullptr);
}

} // namespace

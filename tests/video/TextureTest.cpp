#include "video/GlContext.h"

#include "video/FrameTexture.h"
#include "video/IntelMapTextureImp.h"
#include "video/PboTextureImp.h"
#include "video/PinnedMemoryTextureImp.h"
#include "video/SimpleTextureImp.h"

#include <QOpenGLFunctions_1_1>
#include <QOpenGLFunctions_2_1>
#include <QOpenGLFunctions_3_0>
#include <QOpenGLFunctions_3_2_Core>

#include <gmock/gmock.h>

#include <map>
#include <string>
#include <vector>

using ::testing::ElementsAre;

namespace {

std::unique_ptr<Texture> makeTexture(test::GlContext &gl, TextureTransferKind kind)
{
    switch (kind) {
    case TextureTransferKind::Simple: {
        auto *functions = gl.context().versionFunctions<QOpenGLFunctions_1_1>();
        EXPECT_TRUE(functions->initializeOpenGLFunctions());
        return std::make_unique<Texture>(kind, std::make_unique<SimpleTextureImp>(functions));
    }
    case TextureTransferKind::AmdPinned:
        return std::make_unique<Texture>(true);
    default:
        return std::make_unique<Texture>(false);
    }
}

std::vector<std::uint8_t> texels(test::GlContext &gl, GLenum target, GLuint texture, GLenum format,
                                 std::size_t bytes)
{
    auto *functions = gl.context().versionFunctions<QOpenGLFunctions_2_1>();
    functions->initializeOpenGLFunctions();
    std::vector<std::uint8_t> result(bytes);
    functions->glBindTexture(target, texture);
    functions->glPixelStorei(GL_PACK_ALIGNMENT, 1);
    functions->glGetTexImage(target, 0, format, GL_UNSIGNED_BYTE, result.data());
    functions->glBindTexture(target, 0);
    return result;
}

class FrameTextureByStrategy : public ::testing::TestWithParam<TextureTransferKind>
{
};

TEST_P(FrameTextureByStrategy, CarriesEachFormatAndSizeIntoTheTexture)
{
    test::GlContext gl;
    FrameTexture frame(makeTexture(gl, GetParam()));
    ASSERT_EQ(frame.kind(), GetParam());
    EXPECT_FALSE(frame.isValid());
    frame.create();
    ASSERT_TRUE(frame.isValid());

    const std::pair<quint32, quint32> sizes[] = {{16, 8}, {322, 182}, {321, 181}, {7, 5}};
    for (quint32 code = 1; code <= 8; ++code) {
        for (const auto &size : sizes) {
            SCOPED_TRACE(std::to_string(code) + " at " + std::to_string(size.first));
            frame.setLayout(size.first, size.second, VlcPixelFormat(code));
            const PlaneLayout &layout = frame.layout();
            const TextureStorage storage = layout.storage();
            const std::size_t bytes =
                std::size_t(storage.width * storage.height) * (storage.format == GL_RED ? 1 : 4);
            for (quint8 round = 0; round < 2; ++round) {
                std::uint8_t *base = frame.plane(0);
                ASSERT_NE(base, nullptr);
                const bool mapped = GetParam() != TextureTransferKind::Simple;
                for (int i = 0; i < 3; ++i)
                    EXPECT_EQ(frame.plane(i) - base,
                              mapped ? layout.mappedOffset(i) : layout.cpuOffset(i));
                EXPECT_EQ(frame.plane(3), nullptr);
                EXPECT_EQ(frame.plane(-1), nullptr);
                for (std::size_t i = 0; i < layout.allocationSize(); ++i)
                    base[i] = quint8(i * 7 + i / 251 + round);
                frame.unmap();
                frame.upload();
                frame.texture()->WaitForUpload();
                const auto read =
                    texels(gl, storage.target, frame.textureId(), storage.format, bytes);
                for (std::size_t i = 0; i < bytes; ++i)
                    ASSERT_EQ(read[i], quint8(i * 7 + i / 251 + round)) << i;
            }
            EXPECT_EQ(gl.gl()->glGetError(), GLenum(GL_NO_ERROR));
            EXPECT_EQ(frame.pitch(0), layout.pitch[0]);
            EXPECT_EQ(frame.pitch(3), 0U);
            EXPECT_EQ(frame.width(3), 0U);
            EXPECT_EQ(frame.height(3), 0U);
        }
    }
    const GLuint name = frame.textureId();
    frame.destroy();
    EXPECT_FALSE(frame.isValid());
    EXPECT_FALSE(gl.gl()->glIsTexture(name));
}

INSTANTIATE_TEST_SUITE_P(Drivers, FrameTextureByStrategy,
                         ::testing::Values(TextureTransferKind::Simple,
                                           TextureTransferKind::PixelBuffer));

TEST(Texture, WithoutAContextIsHarmless)
{
    ASSERT_EQ(QOpenGLContext::currentContext(), nullptr);
    Texture texture(true);
    EXPECT_EQ(texture.kind(), TextureTransferKind::None);
    texture.Create();
    texture.Alloc(GL_TEXTURE_2D, GL_RGBA, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE, 16);
    EXPECT_EQ(texture.Upload(GL_TEXTURE_2D, GL_RGBA, 2, 2, GL_RGBA, GL_UNSIGNED_BYTE, nullptr),
              nullptr);
    EXPECT_EQ(texture.Map(), nullptr);
    texture.Unmap();
    texture.WaitForUpload();
    EXPECT_FALSE(texture.IsValid());
    EXPECT_EQ(texture.TextureId(), 0U);
    texture.Destroy();

    FrameTexture frame;
    frame.create();
    frame.setLayout(16, 8, VlcPixelFormat::I420);
    EXPECT_EQ(frame.plane(1), nullptr);
    frame.unmap();
    frame.upload();
    frame.destroy();
}

TEST(Texture, OutlivesTheLossOfItsContext)
{
    test::GlContext gl;
    FrameTexture frame;
    frame.create();
    frame.setLayout(16, 8, VlcPixelFormat::Nv12);
    gl.setCurrent(false);
    frame.destroy();
    EXPECT_TRUE(frame.isValid()) << "the name stays with its context";
    gl.setCurrent(true);
    frame.destroy();
    EXPECT_FALSE(frame.isValid());
}

TEST(PboTexture, WaitsOnTheFenceOfItsLastUpload)
{
    test::GlContext gl;
    auto *functions = gl.context().versionFunctions<QOpenGLFunctions_2_1>();
    auto *fences = gl.context().versionFunctions<QOpenGLFunctions_3_2_Core>();
    ASSERT_TRUE(functions->initializeOpenGLFunctions() && fences->initializeOpenGLFunctions());
    auto imp = std::make_unique<PboTextureImp>(functions, fences);
    imp->setUseFence(true);
    Texture texture(TextureTransferKind::PixelBuffer, std::move(imp));
    texture.Create();
    texture.Alloc(GL_TEXTURE_2D, GL_RGBA, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, 64);
    for (int i = 0; i < 3; ++i) {
        ASSERT_NE(texture.Map(), nullptr);
        texture.Unmap();
        EXPECT_EQ(texture.Upload(GL_TEXTURE_2D, GL_RGBA, 4, 4, GL_RGBA, GL_UNSIGNED_BYTE, nullptr),
                  &texture);
    }
    texture.WaitForUpload();
    texture.WaitForUpload();
    EXPECT_EQ(gl.gl()->glGetError(), GLenum(GL_NO_ERROR));
    texture.Destroy();
}

TEST(PinnedMemoryTexture, TakesFramesFromTheCallersMemory)
{
    const struct
    {
        GLenum format;
        GLsizei width;
        std::size_t bytes;
    } sizes[] = {{GL_RED, 5, 8 * 3}, {GL_RGB, 5, 16 * 3}, {GL_RGBA, 5, 20 * 3}};
    for (const auto &row : sizes)
        EXPECT_EQ(PinnedMemoryTextureImp::pinnedBytes(row.format, row.width, 3, GL_UNSIGNED_BYTE),
                  row.bytes);
    EXPECT_EQ(PinnedMemoryTextureImp::pinnedBytes(GL_RED, 5, 3, GL_UNSIGNED_SHORT), 12U * 3);

    test::GlContext gl;
    Texture texture(true);
    if (texture.kind() != TextureTransferKind::AmdPinned)
        GTEST_SKIP() << "no GL_AMD_pinned_memory here";
    texture.Create();
    texture.Alloc(GL_TEXTURE_2D, GL_RGBA, 33, 5, GL_RGBA, GL_UNSIGNED_BYTE, 33 * 5 * 4);
    EXPECT_EQ(texture.Map(), nullptr);
    for (quint8 round = 0; round < 3; ++round) {
        std::vector<std::uint8_t> data(33 * 5 * 4);
        for (std::size_t i = 0; i < data.size(); ++i)
            data[i] = quint8(i * 3 + round);
        texture.Upload(GL_TEXTURE_2D, GL_RGBA, 33, 5, GL_RGBA, GL_UNSIGNED_BYTE, data.data());
        texture.WaitForUpload();
        EXPECT_EQ(texels(gl, GL_TEXTURE_2D, texture.TextureId(), GL_RGBA, data.size()), data);
    }
    EXPECT_EQ(gl.gl()->glGetError(), GLenum(GL_NO_ERROR));
    texture.Destroy();
    EXPECT_FALSE(texture.IsValid());
}

// The driver here has no GL_INTEL_map_texture: its three entry points are recorded.
std::vector<std::string> calls;
std::array<std::uint8_t, 64> driverMemory;

void QOPENGLF_APIENTRY recordSync(GLuint)
{
    calls.emplace_back("sync");
}
void QOPENGLF_APIENTRY recordUnmap(GLuint, GLint level)
{
    calls.push_back("unmap " + std::to_string(level));
}
void *QOPENGLF_APIENTRY recordMap(GLuint, GLint level, GLbitfield access, GLint *stride, GLenum *)
{
    calls.push_back("map " + std::to_string(level) + " " + std::to_string(access));
    *stride = 4096;
    return driverMemory.data();
}

TEST(IntelMapTexture, MapsTheTextureItselfAndOverrulesOtherStorage)
{
    test::GlContext gl;
    auto *functions = gl.context().versionFunctions<QOpenGLFunctions_3_0>();
    ASSERT_TRUE(functions->initializeOpenGLFunctions());
    const std::map<std::string, QFunctionPointer> entryPoints = {
        {"glSyncTextureINTEL", reinterpret_cast<QFunctionPointer>(recordSync)},
        {"glUnmapTexture2DINTEL", reinterpret_cast<QFunctionPointer>(recordUnmap)},
        {"glMapTexture2DINTEL", reinterpret_cast<QFunctionPointer>(recordMap)}};
    FrameTexture frame(std::make_unique<Texture>(
        TextureTransferKind::IntelMap,
        std::make_unique<IntelMapTextureImp>(
            functions, [&](const char *name) { return entryPoints.at(name); })));
    calls.clear();
    frame.create();
    frame.setLayout(16, 8, VlcPixelFormat::Yuyv);
    // This driver does not know the linear layout that comes before the storage.
    EXPECT_EQ(functions->glGetError(), GLenum(GL_INVALID_ENUM));

    functions->glBindTexture(GL_TEXTURE_2D, frame.textureId());
    GLint width = 0;
    GLint internalFormat = 0;
    GLint filter = 0;
    GLint wrap = 0;
    functions->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_WIDTH, &width);
    functions->glGetTexLevelParameteriv(GL_TEXTURE_2D, 0, GL_TEXTURE_INTERNAL_FORMAT,
                                        &internalFormat);
    functions->glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, &filter);
    functions->glGetTexParameteriv(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, &wrap);
    EXPECT_EQ(width, 32);
    EXPECT_EQ(internalFormat, GL_RGBA8);
    EXPECT_EQ(filter, GL_LINEAR);
    EXPECT_EQ(wrap, GL_CLAMP_TO_EDGE);

    EXPECT_EQ(frame.plane(0), driverMemory.data());
    EXPECT_EQ(frame.plane(0), driverMemory.data());
    frame.unmap();
    frame.upload();
    EXPECT_THAT(calls, ElementsAre("map 0 2", "unmap 0", "sync"));

    const GLuint name = frame.textureId();
    frame.destroy();
    EXPECT_EQ(frame.textureId(), name) << "the name stays";
    EXPECT_FALSE(functions->glIsTexture(name));

    FrameTexture broken(std::make_unique<Texture>(
        TextureTransferKind::IntelMap,
        std::make_unique<IntelMapTextureImp>(functions, [](const char *) { return nullptr; })));
    broken.create();
    EXPECT_FALSE(broken.isValid());
    EXPECT_EQ(broken.plane(0), nullptr);
}

} // namespace

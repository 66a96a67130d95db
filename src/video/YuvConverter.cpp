#include "video/YuvConverter.h"

#include "video/Texture.h"
#include "video/VlcPixelFormat.h"
#include "video/YuvConverterImp.h"

#include <QMatrix4x4>

namespace {

std::unique_ptr<YuvConverterImp> makeImp(unsigned sourceFourcc, YuvConverter *owner,
                                         YuvColours colours)
{
    switch (sourceFourcc) {
    case bigEndianFourcc("NV12"):
        return std::make_unique<NV12_RGB_Converter>(owner, colours);
    case bigEndianFourcc("YUYV"):
        return std::make_unique<YUYV_RGB_Converter>(owner, colours);
    case bigEndianFourcc("UYVY"):
        return std::make_unique<UYVY_RGB_Converter>(owner, colours);
    case bigEndianFourcc("I420"):
        return std::make_unique<I420_RGB_Converter>(owner, colours);
    case bigEndianFourcc("YV12"):
        return std::make_unique<YV12_RGB_Converter>(owner, colours);
    default:
        return nullptr;
    }
}

} // namespace

YuvConverter::YuvConverter(unsigned sourceFourcc, unsigned, bool fullRange, bool stitched)
{
    if (initializeOpenGLFunctions())
        m_imp = makeImp(sourceFourcc, this, yuvColours(fullRange, stitched));
}

YuvConverter::~YuvConverter() = default;

void YuvConverter::convert(Texture *texture, int width, int height)
{
    if (!m_imp || !m_imp->prepare())
        return;

    static const GLfloat vertices[] = {0, 1, 1, 1, 1, 0, 0, 0};
    static const GLushort indices[] = {0, 1, 2, 3};
    QMatrix4x4 matrix;
    matrix.ortho(0, 1, 0, 1, -1, 1);

    glViewport(0, 0, width, height);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_RECTANGLE, texture->TextureId());
    // Neighbouring bytes may belong to different planes: they must never mix.
    glTexParameteri(GL_TEXTURE_RECTANGLE, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_RECTANGLE, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    m_imp->bind();
    const YuvConverterImp::Locations &at = m_imp->locations();
    m_imp->setUniformValue(at.yuv, 0);
    m_imp->setUniformValue(at.width, width);
    m_imp->setUniformValue(at.height, height);
    m_imp->setUniformValue(at.matrix, matrix);
    m_imp->enableAttributeArray(at.vertex);
    m_imp->setAttributeArray(at.vertex, vertices, 2);
    glDrawElements(GL_QUADS, 4, GL_UNSIGNED_SHORT, indices);
    m_imp->disableAttributeArray(at.vertex);
    glBindTexture(GL_TEXTURE_RECTANGLE, 0);
    m_imp->release();
}

#include "video/TextureTransferKind.h"

TextureTransferKind chooseTextureTransfer(const TextureCapabilities &capabilities, bool useFence)
{
    if (useFence && capabilities.core32 && capabilities.amdPinnedMemory)
        return TextureTransferKind::AmdPinned;
    if (capabilities.gl30 && capabilities.intelMapTexture)
        return TextureTransferKind::IntelMap;
    if (capabilities.gl21)
        return TextureTransferKind::PixelBuffer;
    if (capabilities.gl11)
        return TextureTransferKind::Simple;
    return TextureTransferKind::None;
}

QString textureTransferName(TextureTransferKind kind)
{
    switch (kind) {
    case TextureTransferKind::Simple:
        return QStringLiteral("CPU");
    case TextureTransferKind::PixelBuffer:
        return QStringLiteral("Pixel Buffer Object");
    case TextureTransferKind::IntelMap:
        return QStringLiteral("Intel Map Texture");
    case TextureTransferKind::AmdPinned:
        return QStringLiteral("AMD Pinned Memory");
    case TextureTransferKind::None:
        break;
    }
    return QStringLiteral("Undefined transfer method");
}

#pragma once

// The ways in which a frame can reach a texture, and the rule that picks one for a context.
// Plain values; no GL, no thread.

#include <QString>

/// The numbers are compared by the scene and by peers, so they are fixed.
enum class TextureTransferKind {
    None = 0,
    Simple = 1,
    PixelBuffer = 2,
    IntelMap = 3,
    AmdPinned = 4
};

/// What the current context offers: its version function objects and extensions.
struct TextureCapabilities
{
    bool core32 = false;
    bool gl30 = false;
    bool gl21 = false;
    bool gl11 = false;
    bool amdPinnedMemory = false;
    bool intelMapTexture = false;
};

/// Pinned memory is only taken by callers that wait on fences.
TextureTransferKind chooseTextureTransfer(const TextureCapabilities &capabilities, bool useFence);

/// The name that the scene shows.
QString textureTransferName(TextureTransferKind kind);

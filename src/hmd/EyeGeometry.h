#pragma once

// The picture of one headset eye as arithmetic: from the eye's projection to the quad that the
// panorama shader fills. Free functions on values, any thread.
//
// An eye sees an off-centre frustum. The shader draws a symmetric one, as wide as the widest side
// needs; its quad stands at z = -1 under the eye's own projection, which cuts out what the eye
// sees. Each pixel then shows exactly the direction that the device assigns to it.

#include <QMatrix4x4>
#include <QVector2D>

/// Tangents of the angles between straight ahead and each side; positive on the usual side.
struct EyeTangents
{
    float left = 1;
    float right = 1;
    float up = 1;
    float down = 1;
};

/// How the unit square and the shader's field of view are set for one eye.
struct EyeQuad
{
    QMatrix4x4 matrix; ///< places the unit square in the eye's clip space
    float fov = 90;    ///< degrees, over the shorter side of the view
};

/// Of a perspective projection in OpenGL's form (The OpenGL Graphics System 2.1, glFrustum);
/// nothing when it is none, or sees a side that no flat picture can show.
bool eyeTangents(const QMatrix4x4 &projection, EyeTangents *tangents);

/// @p sizeRatio is the view's size divided by its smaller side. A projection that is none is
/// replaced by a symmetric one of 90 degrees.
EyeQuad eyeQuad(const QMatrix4x4 &projection, const QVector2D &sizeRatio);

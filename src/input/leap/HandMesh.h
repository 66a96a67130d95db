#pragma once

// The shape of painted hands: each finger a rounded rod from where it begins to its tip. Plain
// arithmetic on the thread that paints.

#include "input/hands/HandFrame.h"

#include <QMatrix4x4>

#include <vector>

namespace HandMesh {

struct Vertex
{
    QVector3D position; ///< tracker's millimetres
    QVector3D diffuse;  ///< colour under the light, red, green, blue
};

/// Triangles, three vertices each, anticlockwise seen from outside; fingers far from @p eye first,
/// so that without a depth buffer the near ones cover them. @p scale is the thickness, 1 as told by
/// nature.
std::vector<Vertex> build(const FingerList &fingers, const QVector3D &eye, float scale);

/// From tracker coordinates to the item's picture, for a person who sits before the tracker:
/// @p aspect is width over height, @p eyeOffset the eye's place beside the nose, millimetres.
QMatrix4x4 projection(float aspect, float eyeOffset);

/// Where the person's eye is then.
QVector3D eyePosition(float eyeOffset);

/// Turns the coordinates of a tracker worn on the head into those of one before the person.
QMatrix4x4 headMounted();

} // namespace HandMesh

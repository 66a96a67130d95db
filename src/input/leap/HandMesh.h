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

/// Where the tracker is.
enum class Place { Desk, Head };

/// Triangles, three vertices each, anticlockwise seen from outside; fingers far from the eye first,
/// so that without a depth buffer the near ones cover them. @p eyeOffset is the eye's place beside
/// the nose, millimetres; @p scale the thickness, 1 as grown.
std::vector<Vertex> build(const FingerList &fingers, Place place, float eyeOffset, float scale);

/// From the coordinates of a tracker on the desk to the item's picture, for a person who sits
/// before it and looks at the hands, or with a tracker on the head straight ahead. @p aspect is
/// width over height.
QMatrix4x4 projection(Place place, float aspect, float eyeOffset);

/// Turns the coordinates of a tracker worn on the head into those of one on the desk before the
/// same person; the identity for one on the desk.
QMatrix4x4 headMounted(Place place);

} // namespace HandMesh

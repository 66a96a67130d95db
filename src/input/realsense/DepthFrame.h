#pragma once

// What a depth camera sees of a hand at one moment, and the gestures its library recognised. A
// plain value that crosses from the camera's thread to the GUI thread; tests make it up.

#include <QByteArray>
#include <QImage>
#include <QPointF>
#include <QVector>

struct DepthGesture
{
    enum Phase { Begins, Lasts, Ends };

    QByteArray name; ///< as the library calls it, see DepthCameraStart
    Phase phase = Begins;
};

struct DepthFrame
{
    qint64 timestamp = 0; ///< microseconds, of the camera's clock
    bool handSeen = false;
    /// Middle of the hand as the user sees it in a mirror: (0, 0) top left, (1, 1) bottom right.
    QPointF position;
    float depth = 0;    ///< millimetres from the camera
    float openness = 0; ///< 0 a fist, 1 all fingers spread
    QVector<DepthGesture> gestures;
    QVector<QPointF> points; ///< joints of the hand, like position
    QImage image;            ///< small picture of the camera, mirrored as well
};

#pragma once

// Takes the tremble out of a measured position: smooths strongly while it rests and hardly while it
// moves fast, with the same result at any frame rate (G. Casiez, N. Roussel, D. Vogel, "1 Euro
// Filter", CHI 2012). A value, no thread of its own.

#include <QVector3D>

#include <optional>

class OneEuroFilter
{
public:
    /// @p restCutoff in hertz: what is slower passes even at rest. @p beta raises the cut-off with
    /// the speed, hertz for each unit a second.
    OneEuroFilter(float restCutoff, float beta)
        : m_restCutoff(restCutoff)
        , m_beta(beta)
    {}

    void setRestCutoff(float hertz) { m_restCutoff = hertz; }
    void reset() { m_value.reset(); }

    /// The smoothed position @p seconds after the one before.
    QVector3D filter(const QVector3D &measured, float seconds);

    /// Units a second, smoothed; of the last filter() call.
    QVector3D speed() const { return m_speed; }

private:
    float m_restCutoff;
    float m_beta;
    std::optional<QVector3D> m_value;
    QVector3D m_measured;
    QVector3D m_speed;
};

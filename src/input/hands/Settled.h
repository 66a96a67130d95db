#pragma once

// Two answers to a signal that trembles: a value that counts only once it has stayed for a while,
// and a switch whose two thresholds lie apart.

template <class Value>
class Settled
{
public:
    /// A new value takes over after @p seconds without another.
    Settled(Value start, float seconds)
        : m_value(start)
        , m_candidate(start)
        , m_delay(seconds)
    {}

    Value value() const { return m_value; }

    Value update(Value raw, float seconds)
    {
        m_age = raw == m_candidate ? m_age + seconds : 0;
        m_candidate = raw;
        if (m_age >= m_delay)
            m_value = m_candidate;
        return m_value;
    }

    void reset(Value value)
    {
        m_value = m_candidate = value;
        m_age = 0;
    }

private:
    Value m_value;
    Value m_candidate;
    float m_delay;
    float m_age = 0;
};

/// On above @p on, off below @p off, which is the smaller; between them it stays.
class TwoThresholds
{
public:
    TwoThresholds(float on, float off)
        : m_on(on)
        , m_off(off)
    {}

    bool isOn() const { return m_isOn; }
    void reset() { m_isOn = false; }

    bool update(float value)
    {
        m_isOn = value > (m_isOn ? m_off : m_on);
        return m_isOn;
    }

private:
    float m_on;
    float m_off;
    bool m_isOn = false;
};

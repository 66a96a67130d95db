#pragma once

// What scene files read of a theme: its colours and fonts as plain values, made from a merged
// theme. GUI thread.

#include "kontrols/theme/ThemeFile.h"

#include <QColor>
#include <QFont>
#include <QMetaType>

class ThemeColors
{
    Q_GADGET
    Q_PROPERTY(QColor foreground READ foreground CONSTANT)
    Q_PROPERTY(QColor background READ background CONSTANT)
    Q_PROPERTY(QColor darkerForeground READ darkerForeground CONSTANT)
    Q_PROPERTY(QColor darkerBackground READ darkerBackground CONSTANT)
    Q_PROPERTY(QColor lighterBackground READ lighterBackground CONSTANT)
    Q_PROPERTY(QColor selection READ selection CONSTANT)

public:
    ThemeColors() = default;
    explicit ThemeColors(const theme::Section &section)
        : m_colors(section.colors)
    {}

    QColor foreground() const { return m_colors.value(theme::ColorRole::Foreground); }
    QColor background() const { return m_colors.value(theme::ColorRole::Background); }
    QColor darkerForeground() const { return m_colors.value(theme::ColorRole::DarkerForeground); }
    QColor darkerBackground() const { return m_colors.value(theme::ColorRole::DarkerBackground); }
    QColor lighterBackground() const { return m_colors.value(theme::ColorRole::LighterBackground); }
    QColor selection() const { return m_colors.value(theme::ColorRole::Selection); }

private:
    QMap<theme::ColorRole, QColor> m_colors;
};

class ThemeFonts
{
    Q_GADGET
    Q_PROPERTY(QFont mainFont READ mainFont CONSTANT)
    Q_PROPERTY(QFont alternateFont READ alternateFont CONSTANT)
    Q_PROPERTY(QFont h1Font READ h1Font CONSTANT)
    Q_PROPERTY(QFont h2Font READ h2Font CONSTANT)
    Q_PROPERTY(QFont h3Font READ h3Font CONSTANT)
    Q_PROPERTY(QFont h4Font READ h4Font CONSTANT)
    /// Already applied to the fonts here; for scene files that give sizes of their own.
    Q_PROPERTY(qreal fontFactor READ fontFactor CONSTANT)

public:
    ThemeFonts() = default;
    explicit ThemeFonts(const theme::Section &section);

    QFont mainFont() const { return m_fonts.value(theme::FontRole::Main); }
    QFont alternateFont() const { return m_fonts.value(theme::FontRole::Alternate); }
    QFont h1Font() const { return m_fonts.value(theme::FontRole::H1); }
    QFont h2Font() const { return m_fonts.value(theme::FontRole::H2); }
    QFont h3Font() const { return m_fonts.value(theme::FontRole::H3); }
    QFont h4Font() const { return m_fonts.value(theme::FontRole::H4); }
    qreal fontFactor() const { return m_factor; }

private:
    QMap<theme::FontRole, QFont> m_fonts;
    qreal m_factor = 1;
};

Q_DECLARE_METATYPE(ThemeColors)
Q_DECLARE_METATYPE(ThemeFonts)

#include "kontrols/thememanager/ThemeValues.h"

ThemeFonts::ThemeFonts(const theme::Section &section)
    : m_factor(section.fontFactor.value_or(1))
{
    for (auto it = section.fonts.begin(); it != section.fonts.end(); ++it) {
        const theme::FontChoice &choice = it.value();
        QFont font;
        if (choice.family)
            font.setFamily(*choice.family);
        if (choice.pointSize)
            font.setPointSizeF(*choice.pointSize * m_factor);
        if (choice.weight)
            font.setWeight(*choice.weight);
        if (choice.capitalization)
            font.setCapitalization(*choice.capitalization);
        if (choice.letterSpacing)
            font.setLetterSpacing(QFont::AbsoluteSpacing, *choice.letterSpacing);
        m_fonts.insert(it.key(), font);
    }
}

#pragma once

// All themes read so far, by title, and the merging of one with those it extends. Owned by the
// theme manager; no thread of its own.

#include "kontrols/theme/ThemeFile.h"

#include <QStringList>
#include <QUrl>

#include <optional>

namespace theme {

/// A theme with everything it inherits filled in.
class MergedTheme
{
public:
    MergedTheme() = default;
    MergedTheme(const ThemeFile &merged, const QStringList &styleFolders);

    QString title() const { return m_theme.title; }

    /// The values for a control by its lower-case name: its own section over "global", and what
    /// neither gives from the built-in values, so that every colour and every font stands.
    Section valuesFor(const QString &control) const;

    /// Whether the theme or one that it extends treats this control apart.
    bool hasSection(const QString &control) const { return m_theme.controls.contains(control); }

    /// The style file for a control: "<type>_<class name>" for the first of its class names that
    /// has one, else "<type>"; a folder of the theme goes before those of the themes it extends.
    /// An empty URL when there is none.
    QUrl styleFile(const QString &type, const QStringList &classNames) const;

private:
    ThemeFile m_theme;
    QStringList m_styleFolders;
};

class ThemeBook
{
public:
    /// Reads every ".thm" file of @p folder in the order of their names; a title read before is
    /// replaced. @return one line for each file that cannot be used.
    QStringList readFolder(const QString &folder);

    void add(const ThemeFile &theme, const QString &folder);

    /// Child over parent along "extends", over all folders read. A title that is not there ends
    /// the chain, and so does one already met.
    std::optional<MergedTheme> merged(const QString &title) const;

private:
    struct Entry
    {
        ThemeFile theme;
        QString styleFolder; ///< empty when the folder has no styles
    };
    QHash<QString, Entry> m_entries;
};

} // namespace theme

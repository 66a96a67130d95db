#pragma once

// The theme in force and all themes it may extend. One for each QML engine, which owns it; GUI
// thread.

#include "kontrols/theme/ThemeBook.h"

#include <QObject>
#include <QVariant>

#include <memory>

/// A theme as scene files see it; lives until another becomes current.
class CurrentTheme : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT)

public:
    explicit CurrentTheme(theme::MergedTheme theme)
        : m_theme(std::move(theme))
    {}

    const theme::MergedTheme &theme() const { return m_theme; }
    QString title() const { return m_theme.title(); }

    /// The URL of the style file for a control type and the control's class names, or null.
    Q_INVOKABLE QVariant getStyle(const QString &type, const QVariant &classNames) const;

private:
    theme::MergedTheme m_theme;
};

class ThemeManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(CurrentTheme *current READ current NOTIFY currentChanged)

public:
    explicit ThemeManager(QObject *parent = nullptr);
    ~ThemeManager() override;

    /// Never null: before any theme is loaded it is one without values and styles.
    CurrentTheme *current() const { return m_current.get(); }

    /// Reads all themes of @p folder (a path, or a "qrc:" or "file:" URL) beside those read
    /// before, registers the fonts in its "fonts" folder, and makes the theme named @p title
    /// current. Files that cannot be read are warned about and stay absent; with an unknown title
    /// the current theme stays.
    Q_INVOKABLE void loadThemes(const QString &folder, const QString &title);

signals:
    void currentChanged();

private:
    struct DeleteLater
    {
        void operator()(QObject *object) const { object->deleteLater(); }
    };

    theme::ThemeBook m_book;
    /// Bindings still running may hold the old theme while the new one comes in.
    std::unique_ptr<CurrentTheme, DeleteLater> m_current;
};

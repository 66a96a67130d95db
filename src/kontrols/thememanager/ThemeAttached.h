#pragma once

// The attached "Theme" of an item: the current theme's values for that item's kind of control,
// and the class names that choose among its styles. Owned by the item it is attached to; GUI
// thread.

#include "kontrols/thememanager/ThemeValues.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariant>
#include <QtQml>

class ThemeManager;

class ThemeAttached : public QObject
{
    Q_OBJECT
    Q_PROPERTY(ThemeColors colors READ colors NOTIFY themeChanged)
    Q_PROPERTY(ThemeFonts fonts READ fonts NOTIFY themeChanged)
    Q_PROPERTY(qreal radius READ radius NOTIFY themeChanged)
    Q_PROPERTY(QStringList classnames READ classnames WRITE setClassnames NOTIFY classnamesChanged)

public:
    explicit ThemeAttached(QObject *attachee);

    ThemeColors colors() const { return ThemeColors(values()); }
    ThemeFonts fonts() const { return ThemeFonts(values()); }
    qreal radius() const { return values().radius.value_or(0); }

    QStringList classnames() const { return m_classnames; }
    void setClassnames(const QStringList &classnames);

    /// A binding that should follow later changes reads classnames as well.
    Q_INVOKABLE bool hasClassname(const QString &name) const { return m_classnames.contains(name); }

    Q_INVOKABLE QVariant getStyle(const QString &type, const QVariant &classNames) const;

    static ThemeAttached *qmlAttachedProperties(QObject *object)
    {
        return new ThemeAttached(object);
    }

signals:
    void themeChanged();
    void classnamesChanged();

private:
    const theme::Section &values() const;

    QPointer<ThemeManager> m_manager;
    mutable std::optional<theme::Section> m_values; ///< until the theme changes
    QStringList m_classnames;
};

QML_DECLARE_TYPEINFO(ThemeAttached, QML_HAS_ATTACHED_PROPERTIES)

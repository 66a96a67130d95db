#include "kontrols/thememanager/ThemeAttached.h"

#include "kontrols/thememanager/ThemeManager.h"
#include "kontrols/thememanager/ThemeManagerPlugin.h"

#include <QMetaObject>

namespace {

/// The lower-case name of the control that an object is, as far as the theme treats it apart:
/// the nearest of its types that has a section. QML derives a class name from the file's name.
QString controlName(const QObject *object, const theme::MergedTheme &theme)
{
    for (const QMetaObject *type = object->metaObject(); type; type = type->superClass()) {
        const QString className = QString::fromLatin1(type->className());
        QString name = className.section(QLatin1String("_QML"), 0, 0).toLower();
        if (theme.hasSection(name))
            return name;
    }
    return {};
}

} // namespace

ThemeAttached::ThemeAttached(QObject *attachee)
    : QObject(attachee)
    , m_manager(ThemeManagerPlugin::managerOf(qmlEngine(attachee)))
{
    if (!m_manager)
        return;
    connect(m_manager, &ThemeManager::currentChanged, this, [this] {
        m_values.reset();
        emit themeChanged();
    });
}

void ThemeAttached::setClassnames(const QStringList &classnames)
{
    if (m_classnames == classnames)
        return;
    m_classnames = classnames;
    emit classnamesChanged();
}

QVariant ThemeAttached::getStyle(const QString &type, const QVariant &classNames) const
{
    return m_manager ? m_manager->current()->getStyle(type, classNames)
                     : QVariant::fromValue(nullptr);
}

const theme::Section &ThemeAttached::values() const
{
    if (!m_values) {
        const theme::MergedTheme theme =
            m_manager ? m_manager->current()->theme() : theme::MergedTheme();
        m_values = theme.valuesFor(controlName(parent(), theme));
    }
    return *m_values;
}

#pragma once

// A home of its own for one test program: settings, data and cache folders lie in a temporary
// folder that goes with the object, so no run sees another's files or the developer's.

#include <QTemporaryDir>

namespace test {

class IsolatedHome
{
public:
    IsolatedHome();

    QString path() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
};

} // namespace test

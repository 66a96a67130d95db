#pragma once

// Where settings are written to; implemented by the store, used on the thread that owns the store.

#include <QString>
#include <QVariant>

class KernelSettingsWriter
{
public:
    /// Stores @p value under the slash-separated @p key. The base class drops it.
    virtual void Set(const QString &key, const QVariant &value);
    virtual ~KernelSettingsWriter();
};

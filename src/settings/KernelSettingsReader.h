#pragma once

// Where settings are read from: one face over the store, a hash, an XML file or a chain of those.
// Readers are short-lived objects of whoever reads options; each stays on one thread.

#include <QString>

/// Usable as it is as the reader that holds nothing: each getter hands its default back.
class KernelSettingsReader
{
public:
    virtual ~KernelSettingsReader();

    /// The value of the slash-separated @p key; @p defaultValue where there is none or, for
    /// numbers, none that converts.
    virtual bool GetBool(const QString &key, bool defaultValue);
    virtual int GetInt(const QString &key, int defaultValue);
    virtual double GetDouble(const QString &key, double defaultValue);
    virtual QString GetString(const QString &key, QString defaultValue);
};

#pragma once

// The user's options for stills as the program shows them now: read from the store again whenever
// one of their keys or the shown medium changes. Owned by Application, lives on the GUI thread; the
// scene watches the edition, to show a still anew that the options have changed.

#include "KImage/ImageOptions.h"

#include <QObject>

class KSettings;

class StillOptions : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int edition READ edition NOTIFY editionChanged)

public:
    /// @p settings must outlive this object.
    explicit StillOptions(KSettings *settings, QObject *parent = nullptr);

    const ImageOptions &options() const { return m_options; }
    /// A number that is another one after each change of what decodes pixels.
    int edition() const { return m_edition; }

    /// Reads the store again, with what other programs wrote into it.
    void refresh();

signals:
    /// Comes first, for who decodes: the scene's bindings hear of a signal before anyone else.
    void optionsChanged();
    void editionChanged();

private:
    void take();

    KSettings *m_settings;
    ImageOptions m_options;
    int m_edition = 0;
};

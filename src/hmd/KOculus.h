#pragma once

// The Oculus family of headsets for the scene; owned by Application, lives on the GUI thread.

#include "hmd/KHmd.h"

class KOculus : public KHmd
{
    Q_OBJECT

public:
    explicit KOculus(Application *application, QObject *parent = nullptr);
    ~KOculus() override;

    QString sdkType() const override { return QStringLiteral("oculus"); }

public slots:
    void startThread() override;
    void stopThread() override;
};

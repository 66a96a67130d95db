#pragma once

// The OpenVR family of headsets as the scene sees it; owned by Application, lives on the GUI
// thread.

#include "hmd/KHmd.h"

class KOpenVR : public KHmd
{
    Q_OBJECT

public:
    explicit KOpenVR(Application *application, QObject *parent = nullptr);
    ~KOpenVR() override;

    /// Adds to the log so far, with the release of the SDK.
    void setLogMessage(QString message) override;
    QString sdkType() const override { return QStringLiteral("openvr"); }

public slots:
    void startThread() override;
    void stopThread() override;
};

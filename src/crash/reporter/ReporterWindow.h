#pragma once

// The reporter's one window: says what happened, where the dump lies and how to send it. It sends
// nothing itself. Owned by the reporter's main, GUI thread.

#include "crash/reporter/CrashReport.h"

#include <QDialog>

class QLineEdit;
class QVBoxLayout;

class ReporterWindow : public QDialog
{
    Q_OBJECT

public:
    explicit ReporterWindow(const CrashReport &report, QWidget *parent = nullptr);

private:
    QString heading() const;
    QString explanation() const;
    void addText(QVBoxLayout *layout, const QString &text);
    void addPath(QVBoxLayout *layout);
    void addButtons(QVBoxLayout *layout);
    void copyPath();
    void openFolder();

    const CrashReport m_report;
    /// The dump, or the folder of dumps where this report has none.
    QString m_path;
    bool m_dumpExists;
    QLineEdit *m_pathField = nullptr;
};

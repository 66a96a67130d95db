#include "crash/reporter/ReporterWindow.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int kWidth = 520;

} // namespace

ReporterWindow::ReporterWindow(const CrashReport &report, QWidget *parent)
    : QDialog(parent)
    , m_report(report)
    , m_path(report.dumpFile())
    , m_dumpExists(!m_path.isEmpty() && QFileInfo(m_path).isFile())
{
    if (!m_dumpExists)
        m_path = report.dumpFolder;
    setWindowTitle(report.productName);
    setMinimumWidth(kWidth);

    auto *layout = new QVBoxLayout(this);
    addText(layout, heading());
    QFont font = layout->itemAt(0)->widget()->font();
    font.setBold(true);
    layout->itemAt(0)->widget()->setFont(font);
    addText(layout, explanation());
    addPath(layout);
    addText(layout, tr("Version: %1").arg(report.productVersion));
    for (const QString &text : {report.extraText, report.extraText2}) {
        if (!text.isEmpty())
            addText(layout, text);
    }
    addButtons(layout);
}

QString ReporterWindow::heading() const
{
    return m_report.manualMode
               ? tr("Crash reports of %1").arg(m_report.productName)
               : tr("%1 has stopped because of an error.").arg(m_report.productName);
}

QString ReporterWindow::explanation() const
{
    if (m_report.manualMode)
        return tr("Nothing has crashed just now. Reports of earlier crashes, files whose names end "
                  "in \".dmp\", are in this folder:");
    if (!m_dumpExists)
        return tr("The report of this crash could not be written. It would have been put into this "
                  "folder:");
    return tr("A report of the crash was written to the file below. It holds the state of the "
              "program when it stopped, which can include names of files you had open. Nothing has "
              "been sent.\n\nTo help, send this file to whoever you got the program from, "
              "together with what you were doing. If you would rather not, just close this window; "
              "you can delete the file.");
}

void ReporterWindow::addText(QVBoxLayout *layout, const QString &text)
{
    auto *label = new QLabel(text);
    // Texts come in from outside and are shown as they are.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
}

void ReporterWindow::addPath(QVBoxLayout *layout)
{
    m_pathField = new QLineEdit(m_path);
    m_pathField->setReadOnly(true);
    m_pathField->setAccessibleName(m_dumpExists ? tr("File of the report")
                                                : tr("Folder of the reports"));
    layout->addWidget(m_pathField);
}

void ReporterWindow::addButtons(QVBoxLayout *layout)
{
    auto *buttons = new QDialogButtonBox;
    QPushButton *copy = buttons->addButton(tr("&Copy Path"), QDialogButtonBox::ActionRole);
    QPushButton *open = buttons->addButton(tr("&Open Folder"), QDialogButtonBox::ActionRole);
    QPushButton *close = buttons->addButton(QDialogButtonBox::Close);
    copy->setAutoDefault(false);
    open->setAutoDefault(false);
    close->setDefault(true);
    close->setFocus();
    connect(copy, &QPushButton::clicked, this, &ReporterWindow::copyPath);
    connect(open, &QPushButton::clicked, this, &ReporterWindow::openFolder);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);
    layout->addWidget(buttons);
}

void ReporterWindow::copyPath()
{
    QGuiApplication::clipboard()->setText(m_path);
    m_pathField->selectAll();
}

void ReporterWindow::openFolder()
{
    const QString folder = m_dumpExists ? QFileInfo(m_path).absolutePath() : m_path;
    QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
}

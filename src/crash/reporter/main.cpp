// The crash reporter: a program of its own, started by the player when it dies or by its user.

#include "crash/reporter/CrashReport.h"
#include "crash/reporter/ReporterWindow.h"

#include <QApplication>
#include <QLocale>

#include <cstdio>

int main(int argc, char **argv)
{
    constexpr int kUsageError = 2;
    QApplication application(argc, argv);
    const auto report = CrashReport::fromArguments(QApplication::arguments().mid(1));
    if (!report) {
        std::fputs("This program is started by the player when it has crashed. It takes nine "
                   "arguments:\n"
                   "dump folder, product name, text, version, locale, folder of the dump, "
                   "identifier of the dump, text, 1 or 0\n",
                   stderr);
        return kUsageError;
    }
    QApplication::setApplicationDisplayName(report->productName);
    QLocale::setDefault(QLocale(report->locale));
    ReporterWindow window(*report);
    window.show();
    return QApplication::exec();
}

// The least that shows a still in a Qt Quick window, which a start of the player is measured
// against. Prints when the window first showed it, in nanoseconds of the steady clock.
//   minimal_still FILE

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QUrl>

#include <chrono>
#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    const QGuiApplication application(argc, argv);
    QQuickView view;
    QQmlComponent component(view.engine());
    component.setData("import QtQuick 2.15\nImage {}", QUrl());
    auto *image = qobject_cast<QQuickItem *>(component.create());
    if (argc != 2 || !image)
        return EXIT_FAILURE;
    image->setParentItem(view.contentItem());
    image->setSize(QSizeF(1280, 720));
    image->setProperty("source", QUrl::fromLocalFile(QString::fromLocal8Bit(argv[1])));
    QObject::connect(
        &view, &QQuickWindow::frameSwapped, &view,
        [] {
            std::printf("%lld\n", static_cast<long long>(
                                      std::chrono::nanoseconds(
                                          std::chrono::steady_clock::now().time_since_epoch())
                                          .count()));
            std::fflush(stdout);
            std::_Exit(EXIT_SUCCESS); // what comes after the frame is not measured
        },
        Qt::DirectConnection);
    view.resize(1280, 720);
    view.show();
    return QGuiApplication::exec();
}

// A file manager for tests: a small window in the corner of the screen from which the files named
// on the command line are dragged by the mouse.

#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>
#include <QUrl>
#include <QWidget>

namespace {

class Files : public QWidget
{
public:
    explicit Files(const QStringList &paths)
    {
        for (const QString &path : paths)
            m_urls.append(QUrl::fromLocalFile(path));
    }

protected:
    void mouseMoveEvent(QMouseEvent *event) override
    {
        if (!(event->buttons() & Qt::LeftButton))
            return;
        auto *data = new QMimeData;
        data->setUrls(m_urls);
        auto *drag = new QDrag(this); // the drag's end deletes it with its data
        drag->setMimeData(data);
        drag->exec(Qt::CopyAction);
    }

private:
    QList<QUrl> m_urls;
};

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    Files window(application.arguments().mid(1));
    window.setWindowFlags(Qt::FramelessWindowHint);
    window.setGeometry(0, 0, 120, 80);
    window.show();
    return QApplication::exec();
}

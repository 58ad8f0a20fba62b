// A window from which a file can be dragged. It says what was done with it, and stays: its data may be asked for later.
// usage: drag_source FILE
#include <QApplication>
#include <QDrag>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <cstdio>

namespace {

class Source : public QWidget {
  public:
    explicit Source(const QString& file) : file_(file) {
        setWindowTitle("drag source");
        setGeometry(1200, 100, 200, 200);
    }

    // A file manager would rather move.
    void mouseMoveEvent(QMouseEvent* /*event*/) override {
        auto* drag = new QDrag(this);
        auto* dragged = new QMimeData;
        dragged->setUrls({QUrl::fromLocalFile(file_)});
        drag->setMimeData(dragged);
        const Qt::DropAction done = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        std::puts(done == Qt::CopyAction ? "copied" : "not copied");
        std::fflush(stdout);
    }

  private:
    QString file_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Source source(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString());
    source.show();
    return QApplication::exec();
}

// The main window and its inside.
#pragma once

#include <QMainWindow>
#include <QPointer>

#include "qrvel/base/objects.h"
#include "qrvel/base/run.h"

namespace qrvel {

// Closing it only asks the application to end: the viewer takes the window down itself. Files dropped on it are opened.
class ShellWindow : public QMainWindow {
  public:
    explicit ShellWindow(const QString& title);

    // The title without what stands before it.
    const QString& title() const { return title_; }

  protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    QString title_;
};

// The inside of the shell between its bars. A new size is a size message for the object of the container's class.
class ContainerWidget : public QWidget {
  public:
    ContainerWidget(QWidget* parent, WHandle handle);

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    WHandle handle_;
};

struct Shell : Object {
    static constexpr Kind KIND = Kind::Shell;
    ~Shell() override { delete window; }

    QPointer<ShellWindow> window;
    WHandle container = 0;
};

// A place in a shell, for the bar that is made in it.
struct ShellPart : Object {
    static constexpr Kind KIND = Kind::ShellPart;
    ShellPart(WHandle of, uint32_t which) : shell(of), part(which) {}

    WHandle shell;
    uint32_t part;
};

// Names the picture in front of the window's own title: its file, and the page where there are several.
void showTitle(const ShownPicture& picture);

}  // namespace qrvel

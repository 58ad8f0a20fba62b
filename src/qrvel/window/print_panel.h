// The print set-up: what is to be printed where, and how it will look.
#pragma once

#include <QDialog>
#include <functional>

#include "qrvel/base/print_choice.h"

class QAbstractButton;
class QButtonGroup;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace qrvel {

class PagePreview;

// Keeps what the user has chosen while it is hidden. It does not run a loop of its own.
class PrintPanel : public QDialog {
  public:
    // Called from Qt's callbacks.
    struct Events {
        std::function<void()> printed;       // the choice is complete; a file that exists may be replaced
        std::function<void()> cancelled;     // the panel stays until its owner hides it
        std::function<void()> sheetChanged;  // another paper or orientation, or another size of the preview
    };

    // It goes with `parent`, unless its owner deletes it before.
    PrintPanel(QWidget* parent, Events events);

    // A file's name is there for files alone; it is absolute.
    PrintChoice choice() const;

    // Whether there is a host that takes pages. Without one the user cannot choose it.
    void setHostAvailable(bool available);

    // What a file will be called as long as the user has not named one: a path, in the bytes of the file system. The
    // format's ending takes the place of the path's own.
    void suggestFileName(const QByteArray& path);

    // The sheet as it will be printed, in device pixels. A null image: it is being made.
    void showPreview(const QImage& sheet);

    // Device pixels that the preview has room for.
    QSize previewSize() const;

    // Esc, Cancel and the close button.
    void reject() override;

  protected:
    void showEvent(QShowEvent* event) override;  // asks which printers there are

  private:
    void addPaper();
    void addDestinations();
    void addFormats();
    void addFileName();
    QWidget* makeButtons();
    void connectFields();

    QAbstractButton* button(Destination destination) const;
    Destination destination() const;
    Paper paper() const;
    PageFormat format() const;
    QString path() const;
    bool isPng() const;
    QSize pixels() const;
    QString pixelsText() const;
    QString problem() const;

    void listPrinters();
    void chooseFile();
    void nameFile(const QString& name, bool byUser);
    void adoptFormat();
    void changeEnding();
    void refresh();
    void print();
    void askToReplace();

    Events events_;
    QFormLayout* form_;
    QComboBox* papers_;
    QRadioButton* landscape_;
    QRadioButton* portrait_;
    QButtonGroup* destinations_;
    QComboBox* printers_;
    QComboBox* formats_;
    QSpinBox* dpi_;
    QLabel* pixels_;
    QLineEdit* name_;
    QLabel* problem_;
    PagePreview* preview_;
    QPushButton* print_;
};

}  // namespace qrvel

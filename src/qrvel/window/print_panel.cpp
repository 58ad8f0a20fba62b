#include "qrvel/window/print_panel.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPrinterInfo>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QShowEvent>
#include <QSpinBox>
#include <QStandardItemModel>
#include <algorithm>
#include <string>
#include <utility>

#include "qrvel/base/own_texts.h"
#include "qrvel/page/page_image.h"
#include "qrvel/window/help_line.h"
#include "qrvel/window/page_preview.h"
#include "system/whole_file.h"

namespace qrvel {

namespace {

constexpr PageFormat FORMATS[] = {PageFormat::Pdf, PageFormat::Svg, PageFormat::Png};
constexpr int NAME_LETTERS = 40;  // that a file's name has room for at least; longer ones scroll

// With its dot.
QString endingWithDot(PageFormat format) {
    return QString(".") + endingOf(format);
}

QString nameOf(PageFormat format) {
    return QString(endingOf(format)).toUpper();
}

// "fit" stands behind the papers that have names.
int fitRow() {
    return static_cast<int>(namedPapers().size());
}

// Where the user's country has its own sheets, one of those.
int usualPaperRow() {
    const bool american = QLocale().measurementSystem() == QLocale::ImperialUSSystem;
    const auto papers = namedPapers();
    const auto found = std::find_if(papers.begin(), papers.end(), [&](const NamedPaper& paper) {
        return paper.name == (american ? "Letter" : "A4");
    });
    return static_cast<int>(found - papers.begin());
}

QString numberText(double number) {
    QLocale locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    return locale.toString(number);
}

QString nameOfPaper(const NamedPaper& named) {
    const auto name = QLatin1String(named.name.data(), static_cast<qsizetype>(named.name.size()));
    return QString::fromUtf8("%1 (%2 × %3 mm)")
        .arg(name, numberText(named.paper.width), numberText(named.paper.height));
}

// What stands against writing there; nothing: an empty text. Whoever writes the file asks the same in the end.
QString problemOfFile(const QString& path) {
    const QFileInfo file(path);
    const QFileInfo folder(file.path());
    if (!folder.isDir()) return ownText(OwnText::PrintNoFolder).arg(folder.filePath());
    if (file.isDir()) return ownText(OwnText::PrintIsFolder).arg(path);
    const std::string obstacle = kelsystem::obstacleTo(QFile::encodeName(path).toStdString());
    return obstacle.empty() ? QString() : ownText(OwnText::CannotWrite).arg(path, QString::fromStdString(obstacle));
}

QWidget* inOneRow(QWidget* field, QWidget* beside) {
    auto* both = new QWidget;
    auto* row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(field);
    row->addWidget(beside);
    return both;
}

// The label's letter leads to the field.
void addRow(QFormLayout& form, OwnText text, QWidget* field, QWidget* beside = nullptr) {
    auto* label = new QLabel(ownText(text));
    label->setBuddy(field);
    field->setAccessibleName(ownText(text).remove('&').remove(':'));
    form.addRow(label, beside != nullptr ? inOneRow(field, beside) : field);
}

// So that nothing moves aside when a row comes or goes.
void keepWidth(QFormLayout& form) {
    int width = 0;
    for (int row = 0; row < form.rowCount(); ++row) {
        const QLayoutItem* label = form.itemAt(row, QFormLayout::LabelRole);
        if (label != nullptr) width = std::max(width, label->sizeHint().width());
    }
    form.itemAt(0, QFormLayout::LabelRole)->widget()->setMinimumWidth(width);
}

}  // namespace

PrintPanel::PrintPanel(QWidget* parent, Events events)
    : QDialog(parent), events_(std::move(events)), form_(new QFormLayout) {
    setWindowTitle(ownText(OwnText::PrintTitle));
    addPaper();
    addDestinations();
    addFormats();
    addFileName();
    keepWidth(*form_);
    preview_ = new PagePreview([this] { events_.sheetChanged(); });
    auto* choices = new QWidget;
    choices->setLayout(form_);
    form_->setContentsMargins({});
    choices->setMinimumWidth(choices->sizeHint().width());
    auto* both = new QHBoxLayout;
    both->addWidget(choices);
    both->addWidget(preview_, 1);
    auto* all = new QVBoxLayout(this);
    all->addLayout(both, 1);
    both->setSpacing(2 * both->spacing());  // which is known now
    all->addWidget(makeButtons());
    print_->setDefault(true);
    takeHelpKey(*this);
    refresh();
    connectFields();
}

void PrintPanel::addPaper() {
    papers_ = new QComboBox;
    for (const NamedPaper& paper : namedPapers())
        papers_->addItem(nameOfPaper(paper));
    papers_->addItem(ownText(OwnText::PrintFit));
    papers_->setCurrentIndex(usualPaperRow());
    addRow(*form_, OwnText::PrintPaper, papers_);

    landscape_ = new QRadioButton(ownText(OwnText::PrintLandscape));
    portrait_ = new QRadioButton(ownText(OwnText::PrintPortrait));
    landscape_->setChecked(true);
    addRow(*form_, OwnText::PrintDirection, landscape_, portrait_);
}

void PrintPanel::addDestinations() {
    // clang-format off
    constexpr std::pair<Destination, OwnText> ROWS[] = {
        {Destination::Printer, OwnText::PrintToPaper},
        {Destination::File,    OwnText::PrintToFile},
        {Destination::Host,    OwnText::PrintToHost},
    };
    // clang-format on
    destinations_ = new QButtonGroup(this);
    auto* column = new QVBoxLayout;
    for (const auto& [destination, text] : ROWS) {
        auto* button = new QRadioButton(ownText(text));
        destinations_->addButton(button, static_cast<int>(destination));
        column->addWidget(button);
    }
    button(Destination::Printer)->setChecked(true);
    form_->addRow(ownText(OwnText::PrintTo), column);
    setHostAvailable(false);
}

void PrintPanel::addFormats() {
    printers_ = new QComboBox;
    addRow(*form_, OwnText::PrintPrinter, printers_);

    formats_ = new QComboBox;
    for (const PageFormat format : FORMATS)
        formats_->addItem(nameOf(format), static_cast<int>(format));
    addRow(*form_, OwnText::PrintFormat, formats_);

    dpi_ = new QSpinBox;
    dpi_->setRange(LEAST_DPI, MOST_DPI);
    dpi_->setValue(PrintChoice().dpi);
    dpi_->setSuffix(" dpi");
    pixels_ = new QLabel;
    addRow(*form_, OwnText::PrintDpi, dpi_, pixels_);
}

void PrintPanel::addFileName() {
    name_ = new QLineEdit;
    name_->setMinimumWidth(NAME_LETTERS * fontMetrics().averageCharWidth());
    auto* choose = new QPushButton(ownText(OwnText::PrintChoose));
    choose->setAutoDefault(false);  // Enter prints
    addRow(*form_, OwnText::PrintFileName, name_, choose);
    connect(choose, &QPushButton::clicked, this, &PrintPanel::chooseFile);

    problem_ = new QLabel;
    problem_->setWordWrap(true);
    problem_->setTextFormat(Qt::PlainText);
    form_->addRow(QString(), problem_);
}

QWidget* PrintPanel::makeButtons() {
    auto* buttons = new QDialogButtonBox;
    print_ = buttons->addButton(ownText(OwnText::PrintNow), QDialogButtonBox::AcceptRole);
    buttons->addButton(ownText(OwnText::PrintCancel), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &PrintPanel::print);
    connect(buttons, &QDialogButtonBox::rejected, this, &PrintPanel::reject);
    return buttons;
}

void PrintPanel::connectFields() {
    const auto changeSheet = [this] {
        refresh();
        events_.sheetChanged();
    };
    connect(papers_, &QComboBox::currentIndexChanged, this, changeSheet);
    connect(landscape_, &QRadioButton::toggled, this, changeSheet);
    connect(destinations_, &QButtonGroup::idToggled, this, &PrintPanel::refresh);
    connect(formats_, &QComboBox::currentIndexChanged, this, &PrintPanel::changeEnding);
    connect(dpi_, &QSpinBox::valueChanged, this, &PrintPanel::refresh);
    connect(name_, &QLineEdit::textEdited, this, &PrintPanel::adoptFormat);
    connect(name_, &QLineEdit::textChanged, this, &PrintPanel::refresh);
}

PrintChoice PrintPanel::choice() const {
    const bool isFile = destination() == Destination::File;
    return {.destination = destination(),
            .format = destination() == Destination::Printer ? PageFormat::None : format(),
            .printer = printers_->currentText(),
            .fileName = isFile ? QFile::encodeName(path()) : QByteArray(),
            .paper = paper(),
            .landscape = landscape_->isChecked(),
            .dpi = dpi_->value()};
}

void PrintPanel::setHostAvailable(bool available) {
    QAbstractButton* host = button(Destination::Host);
    host->setEnabled(available);
    if (!available && host->isChecked()) button(Destination::File)->setChecked(true);
}

void PrintPanel::suggestFileName(const QByteArray& path) {
    if (name_->isModified() && !name_->text().isEmpty()) return;
    static const QRegularExpression ending("\\.[A-Za-z][A-Za-z0-9]*$");
    nameFile(QFile::decodeName(path).remove(ending) + endingWithDot(format()), false);
}

void PrintPanel::showPreview(const QImage& sheet) {
    preview_->showSheet(sheet);
}

QSize PrintPanel::previewSize() const {
    return preview_->room();
}

void PrintPanel::reject() {
    events_.cancelled();
}

void PrintPanel::showEvent(QShowEvent* event) {
    if (!event->spontaneous()) listPrinters();
    QDialog::showEvent(event);
}

QAbstractButton* PrintPanel::button(Destination destination) const {
    return destinations_->button(static_cast<int>(destination));
}

Destination PrintPanel::destination() const {
    return static_cast<Destination>(destinations_->checkedId());
}

Paper PrintPanel::paper() const {
    const int row = papers_->currentIndex();
    return row == fitRow() ? choosePaper("fit").paper : namedPapers()[static_cast<std::size_t>(row)].paper;
}

PageFormat PrintPanel::format() const {
    return static_cast<PageFormat>(formats_->currentData().toInt());
}

// Of the file; empty when it has no name.
QString PrintPanel::path() const {
    QString name = name_->text();
    if (name.trimmed().isEmpty()) return {};
    if (name.startsWith("~/")) name.remove(0, 2);
    if (!name.endsWith('/') && formatOf(QFile::encodeName(name)) == PageFormat::None) name += endingWithDot(format());
    return QDir::cleanPath(QDir::home().absoluteFilePath(name));
}

bool PrintPanel::isPng() const {
    return destination() != Destination::Printer && format() == PageFormat::Png;
}

// Of a PNG; invalid for too many. One that fits is cut from that.
QSize PrintPanel::pixels() const {
    const SheetLayout sheet = layOut(paper(), landscape_->isChecked());
    return imageSize({sheet.width, sheet.height}, dpi_->value() / MILLIMETRES_AN_INCH);
}

QString PrintPanel::pixelsText() const {
    const QSize size = pixels();
    if (!size.isValid()) return {};
    if (paper().fit) return ownText(OwnText::PrintLongSide).arg(size.width());
    return ownText(OwnText::PrintPixels).arg(size.width()).arg(size.height());
}

// What stands against printing; nothing: an empty text.
QString PrintPanel::problem() const {
    if (isPng() && !pixels().isValid()) return ownText(OwnText::PrintTooFine);
    switch (destination()) {
        case Destination::Printer:
            return printers_->count() > 0 ? QString() : ownText(OwnText::NoPrinter);
        case Destination::File:
            return path().isEmpty() ? ownText(OwnText::PrintNoName) : problemOfFile(path());
        case Destination::Host:
            break;
    }
    return {};
}

// There may be others than when the panel was shown last.
void PrintPanel::listPrinters() {
    const QString chosen = printers_->count() > 0 ? printers_->currentText() : QPrinterInfo::defaultPrinterName();
    printers_->clear();
    printers_->addItems(QPrinterInfo::availablePrinterNames());
    printers_->setCurrentIndex(std::max(printers_->findText(chosen), 0));
    printers_->setEnabled(printers_->count() > 0);
    if (printers_->count() == 0 && destination() == Destination::Printer) {
        button(Destination::File)->setChecked(true);
    }
    refresh();
}

// The dialog of Qt itself asks about a file that exists in a loop of its own, so the panel asks when it prints.
void PrintPanel::chooseFile() {
    auto* dialog = new QFileDialog(this, ownText(OwnText::PrintTitle));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setOptions(QFileDialog::DontUseNativeDialog | QFileDialog::DontConfirmOverwrite);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setLabelText(QFileDialog::Accept, ownText(OwnText::PrintChoose).remove("..."));
    dialog->setNameFilter(QString("%1 (*%2)").arg(nameOf(format()), endingWithDot(format())));
    dialog->setDefaultSuffix(endingOf(format()));
    const QFileInfo file(path().isEmpty() ? QDir::homePath() + '/' : path());
    dialog->setDirectory(file.path());
    dialog->selectFile(file.fileName());
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString& name) {
        nameFile(name, true);
        adoptFormat();
    });
    dialog->open();
}

// The panel offers other names as long as the user has given none.
void PrintPanel::nameFile(const QString& name, bool byUser) {
    name_->setText(name);
    name_->setModified(byUser);
}

// Whoever names a file "x.svg" means an SVG.
void PrintPanel::adoptFormat() {
    const PageFormat named = formatOf(name_->text().toUtf8());
    if (named != PageFormat::None) formats_->setCurrentIndex(formats_->findData(static_cast<int>(named)));
}

void PrintPanel::changeEnding() {
    const QString name = name_->text();
    const PageFormat had = formatOf(name.toUtf8());
    if (had != PageFormat::None && had != format())
        nameFile(name.chopped(endingWithDot(had).size()) + endingWithDot(format()), name_->isModified());
    refresh();
}

// Shows what the choice needs, and what stands against it.
void PrintPanel::refresh() {
    const Destination to = destination();
    const bool isPage = to != Destination::Printer;
    form_->setRowVisible(printers_, !isPage);
    form_->setRowVisible(formats_, isPage);
    form_->setRowVisible(dpi_->parentWidget(), isPng());
    form_->setRowVisible(name_->parentWidget(), to == Destination::File);
    static_cast<QStandardItemModel*>(papers_->model())->item(fitRow())->setEnabled(isPage);
    if (!isPage && paper().fit) papers_->setCurrentIndex(usualPaperRow());
    landscape_->setEnabled(!paper().fit);
    portrait_->setEnabled(!paper().fit);
    pixels_->setText(pixelsText());
    problem_->setText(problem());
    form_->setRowVisible(problem_, !problem_->text().isEmpty());
    name_->setAccessibleDescription(problem_->text());
    print_->setEnabled(problem_->text().isEmpty());
}

void PrintPanel::print() {
    refresh();  // the files may have changed meanwhile
    if (!print_->isEnabled()) return;
    if (destination() == Destination::File && QFileInfo::exists(path())) {
        askToReplace();
    } else {
        events_.printed();
    }
}

void PrintPanel::askToReplace() {
    auto* box = new QMessageBox(QMessageBox::Question, windowTitle(), ownText(OwnText::PrintExists).arg(path()),
                                QMessageBox::NoButton, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    const QPushButton* replace = box->addButton(ownText(OwnText::Replace), QMessageBox::AcceptRole);
    box->setDefaultButton(box->addButton(ownText(OwnText::PrintCancel), QMessageBox::RejectRole));
    connect(box, &QDialog::finished, this, [this, box, replace] {
        if (box->clickedButton() == replace) events_.printed();
    });
    box->open();
}

}  // namespace qrvel

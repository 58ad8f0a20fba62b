#include "qrvel/window/help.h"

#include <QFile>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/window/shell.h"
#include "toolkit/hlp.h"

namespace qrvel {

namespace {

constexpr char CONTENTS[] = "index.html";
constexpr char STYLE[] = "h1 { font-size: x-large; } h2 { font-size: large; }";
constexpr QSize WINDOW_SIZE(640, 640);  // logical pixels; all pages but one fit

// In the language of the texts where there are such pages, else in English.
QString pageAddress(const QString& page) {
    const QString language = application() != nullptr ? application()->language.name : QString();
    const QString own = "/help/" + language.section('_', 0, 0) + '/' + page;
    return "qrc:" + (QFile::exists(':' + own) ? own : "/help/en/" + page);
}

QPushButton* addButton(QHBoxLayout& row, OwnText text) {
    auto* button = new QPushButton(ownText(text));
    button->setAutoDefault(false);
    row.addWidget(button);
    return button;
}

}  // namespace

HelpWindow::HelpWindow(const QString& title) : pages_(new QTextBrowser) {
    setWindowTitle(title);
    pages_->document()->setDefaultStyleSheet(STYLE);
    pages_->setAccessibleName(title);
    auto* buttons = new QHBoxLayout;
    QPushButton* back = addButton(*buttons, OwnText::Back);
    QPushButton* contents = addButton(*buttons, OwnText::Contents);
    buttons->addStretch();
    QPushButton* close = addButton(*buttons, OwnText::Close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(pages_);
    layout->addLayout(buttons);
    resize(WINDOW_SIZE.boundedTo(screen()->availableSize() * 9 / 10));

    back->setEnabled(false);
    connect(pages_, &QTextBrowser::backwardAvailable, back, &QWidget::setEnabled);
    connect(back, &QPushButton::clicked, pages_, &QTextBrowser::backward);
    connect(contents, &QPushButton::clicked, this, [this] { pages_->setSource(pageAddress(CONTENTS)); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
}

void HelpWindow::open(const QString& page) {
    pages_->setSource(pageAddress(page));
    pages_->setFocus();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void HelpWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace qrvel

using namespace qrvel;

// There is one application, so there is one help.
WHandle WHLPregistername(const char* application) {
    if (application == nullptr) return 0;
    const auto* made = handles().make<HelpName>();
    return made != nullptr ? made->handle : 0;
}

WHandle HLPcreate(WHandle shell, const char* title, uint32_t /*flags*/) {
    if (handles().find<Shell>(shell, __func__) == nullptr || title == nullptr) return 0;
    const auto* made = handles().make<Help>(QString::fromUtf8(title));
    return made != nullptr ? made->handle : 0;
}

void HLPdestroy(WHandle help) {
    handles().destroy<Help>(help, __func__);
}

// Every level begins with the contents, from which all topics are one step away.
int32_t WHLPhelprequest(WHandle help, WHandle name, uint32_t /*level*/) {
    auto* found = handles().find<Help>(help, __func__);
    if (found == nullptr || handles().find<HelpName>(name, __func__) == nullptr) return 0;
    if (found->window == nullptr) found->window = new HelpWindow(found->title);
    found->window->open(CONTENTS);
    return 1;
}

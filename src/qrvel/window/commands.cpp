#include "qrvel/window/commands.h"

#include <QClipboard>
#include <QFile>
#include <QFileDialog>
#include <QGuiApplication>

#include "qrvel/base/own_texts.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "qrvel/window/action_bar.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/shell.h"

namespace qrvel {

namespace {

void toChannel(void (*work)(DataChannel& channel)) {
    if (DataChannel* channel = findDataChannel()) work(*channel);
}

// One at a time; it goes with the window.
void openFiles() {
    handles().forEach<Shell>([](const Shell& shell) {
        if (shell.window == nullptr || shell.window->findChild<QFileDialog*>() != nullptr) return;
        auto* dialog = new QFileDialog(shell.window, commandText(OPEN_FILE).remove('&'));
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        dialog->setFileMode(QFileDialog::ExistingFiles);
        QObject::connect(dialog, &QFileDialog::filesSelected, dialog, [](const QStringList& files) {
            for (const QString& file : files) {
                if (DataChannel* channel = findDataChannel()) channel->open(QFile::encodeName(file));
            }
        });
        dialog->open();
    });
}

void toggleFullScreen() {
    handles().forEach<Shell>([](const Shell& shell) {
        if (shell.window != nullptr) shell.window->setWindowState(shell.window->windowState() ^ Qt::WindowFullScreen);
    });
}

void enterMenuBar() {
    handles().forEach<ActionBar>([](const ActionBar& bar) {
        if (bar.menus == nullptr || bar.menus->actions().isEmpty()) return;
        bar.menus->setFocus(Qt::MenuBarFocusReason);
        bar.menus->setActiveAction(bar.menus->actions().constFirst());
    });
}

void copyPicture() {
    handles().forEach<Child>([](const Child& child) {
        if (child.surface && child.surface->isComplete())
            QGuiApplication::clipboard()->setImage(child.surface->shown());
    });
}

struct Row {
    Command command;
    OwnText text;
    void (*work)();
};

constexpr Row ROWS[] = {
    {PAGE_BEFORE, OwnText::PageBefore, [] { toChannel([](DataChannel& channel) { channel.turnPage(-1); }); }},
    {PAGE_AFTER, OwnText::PageAfter, [] { toChannel([](DataChannel& channel) { channel.turnPage(1); }); }},
    {FILE_BEFORE, OwnText::FileBefore, [] { toChannel([](DataChannel& channel) { channel.turnFile(-1); }); }},
    {FILE_AFTER, OwnText::FileAfter, [] { toChannel([](DataChannel& channel) { channel.turnFile(1); }); }},
    {OPEN_FILE, OwnText::OpenFile, openFiles},
    {READ_AGAIN, OwnText::ReadAgain, [] { toChannel([](DataChannel& channel) { channel.readAgain(); }); }},
    {GO_FORWARD, OwnText::NextView, [] { moveViews([](ViewMotion& view) { view.goForward(); }); }},
    {FULL_SCREEN, OwnText::FullScreen, toggleFullScreen},
    {COPY_PICTURE, OwnText::CopyPicture, copyPicture},
};

const Row* rowOf(uint32_t command) {
    for (const Row& row : ROWS) {
        if (row.command == command) return &row;
    }
    return nullptr;
}

}  // namespace

void carryOut(uint32_t command) {
    if (command == MENU_BAR) return enterMenuBar();
    if (const Row* row = rowOf(command)) return row->work();
    handles().forEach<ActionBar>([&](const ActionBar& bar) { bar.choose(command); });
}

QString commandText(uint32_t command) {
    if (const Row* row = rowOf(command)) return ownText(row->text);
    QString text;
    handles().forEach<ActionBar>([&](const ActionBar& bar) { text = bar.textOf(command); });
    return text;
}

}  // namespace qrvel

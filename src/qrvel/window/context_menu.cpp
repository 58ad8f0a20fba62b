#include "qrvel/window/context_menu.h"

#include <QFile>
#include <QFileInfo>
#include <QMenu>

#include "qrvel/base/own_texts.h"
#include "qrvel/base/recent_files.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/window/accelerators.h"
#include "qrvel/window/commands.h"

namespace qrvel {

namespace {

// What can be done with what is shown.
enum class Needs { Nothing, Picture, File, Pages };

struct MenuRow {
    uint32_t command;
    Needs needs;
    bool beginsGroup;
};

constexpr MenuRow MENU[] = {
    {READ_AGAIN, Needs::File, false},         {FILE_BEFORE, Needs::File, false},    {FILE_AFTER, Needs::File, false},
    {COMPLETE_PICTURE, Needs::Picture, true}, {LAST_ZOOM, Needs::Picture, false},   {GO_FORWARD, Needs::Picture, false},
    {ROTATE, Needs::Picture, false},          {FULL_SCREEN, Needs::Nothing, false}, {PAGE_BEFORE, Needs::Pages, true},
    {PAGE_AFTER, Needs::Pages, false},        {COPY_PICTURE, Needs::Picture, true}, {PRINT, Needs::Picture, false},
};

bool isThere(Needs needs) {
    const DataChannel* channel = findDataChannel();
    if (needs == Needs::Nothing) return true;
    if (channel == nullptr) return false;
    switch (needs) {
        case Needs::File:
            return !channel->pictureName().isEmpty();
        case Needs::Pages:
            return channel->picturePage().of > 1;
        default:
            return channel->hasDelivered();
    }
}

void addCommand(QMenu& menu, uint32_t command, bool enabled) {
    const QString key = acceleratorText(command);
    QAction* item = menu.addAction(key.isEmpty() ? commandText(command) : commandText(command) + '\t' + key);
    item->setEnabled(enabled);
    QObject::connect(item, &QAction::triggered, item, [command] { carryOut(command); });
}

void addRecent(QMenu& menu) {
    QMenu* recent = menu.addMenu(ownText(OwnText::RecentFiles));
    for (const QByteArray& file : recentFiles()) {
        const QFileInfo info(QFile::decodeName(file));
        QAction* item = recent->addAction(info.fileName().replace('&', "&&"));
        item->setToolTip(info.filePath());
        QObject::connect(item, &QAction::triggered, item, [file] {
            if (DataChannel* channel = findDataChannel()) channel->open(file);
        });
    }
    recent->setToolTipsVisible(true);
    recent->setEnabled(!recent->isEmpty());
}

}  // namespace

void showContextMenu(QWidget& drawing, QPoint where) {
    auto* menu = new QMenu(&drawing);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    addCommand(*menu, OPEN_FILE, true);
    addRecent(*menu);
    for (const MenuRow& row : MENU) {
        if (row.needs == Needs::Pages && !isThere(row.needs)) continue;
        if (row.beginsGroup) menu->addSeparator();
        addCommand(*menu, row.command, isThere(row.needs));
    }
    menu->popup(where);
}

}  // namespace qrvel

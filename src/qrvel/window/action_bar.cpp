#include "qrvel/window/action_bar.h"

#include <QMainWindow>
#include <QMenu>

#include "qrvel/base/application.h"
#include "qrvel/window/accelerators.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/shell.h"

namespace qrvel {

namespace {

constexpr char HELP_CLASS = 'L';

// '~' stands before the mnemonic letter; Qt's mark for it is '&'.
QString menuText(const char* text) {
    QString marked = QString::fromUtf8(text);
    return marked.replace('&', "&&").replace('~', '&');
}

// The item's own text, and behind it the key that does the same.
QString itemText(const ACTBARRow& row) {
    const QString key = acceleratorText(row.action);
    return key.isEmpty() ? menuText(row.text) : menuText(row.text) + '\t' + key;
}

QString shownText(const ACTBARRow& row) {
    return row.pulldown == 0 ? menuText(row.text) : itemText(row);
}

// The bar's own items come first in the table, each before what stands under it.
void makeItems(ActionBar& bar) {
    std::vector<QMenu*> pulldowns;
    for (const ACTBARRow& row : bar.rows) {
        if (row.pulldown == 0) {
            pulldowns.push_back(bar.menus->addMenu(QString()));
            bar.items.push_back(pulldowns.back()->menuAction());
        } else if (row.pulldown <= pulldowns.size()) {
            QAction* item = pulldowns[row.pulldown - 1]->addAction(QString());
            QObject::connect(item, &QAction::triggered, item, [handle = bar.handle, &row] {
                if (const auto* of = handles().find<ActionBar>(handle)) of->post(row);
            });
            bar.items.push_back(item);
        }
    }
}

}  // namespace

ActionBar::~ActionBar() {
    delete menus;
}

void ActionBar::post(const ACTBARRow& row) const {
    if (application() == nullptr) return;
    postAction(object, row.itemClass == HELP_CLASS ? helpKind : itemKind, row.action);
}

QString ActionBar::textOf(uint32_t action) const {
    for (const ACTBARRow& row : rows) {
        if (row.pulldown != 0 && row.action == action) return menuText(row.text);
    }
    return {};
}

void ActionBar::choose(uint32_t action) const {
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (rows[i].pulldown == 0 || rows[i].action != action || items[i] == nullptr) continue;
        if (items[i]->isEnabled()) post(rows[i]);
        return;
    }
}

}  // namespace qrvel

using namespace qrvel;

WHandle ACTBARcreate(WHandle shellPart, WHandle object, ACTBARRow* rows, int32_t count) {
    const auto* part = handles().find<ShellPart>(shellPart, __func__);
    const auto* shell = part != nullptr ? handles().find<Shell>(part->shell, __func__) : nullptr;
    if (shell == nullptr || shell->window == nullptr || rows == nullptr || count < 1) return 0;
    auto* bar = handles().make<ActionBar>(object, std::span(rows, static_cast<std::size_t>(count)));
    if (bar == nullptr) return 0;
    bar->menus = shell->window->menuBar();
    makeItems(*bar);
    return bar->handle;
}

int32_t ACTBARsetmp1(WHandle bar, uint32_t a, uint32_t b, uint32_t /*c*/, uint32_t /*d*/) {
    auto* found = handles().find<ActionBar>(bar, __func__);
    if (found == nullptr) return 0;
    found->itemKind = a;
    found->helpKind = b;
    return 1;
}

int32_t ACTBARset(WHandle bar, WHandle /*object*/, const char* const* texts) {
    const auto* found = handles().find<ActionBar>(bar, __func__);
    if (found == nullptr || texts == nullptr || found->menus == nullptr) return 0;
    for (std::size_t i = 0; i < found->items.size(); ++i) {
        found->rows[i].text = texts[i];
        found->items[i]->setText(shownText(found->rows[i]));
    }
    return 1;
}

int32_t ACTBARreset(WHandle bar) {
    const auto* found = handles().find<ActionBar>(bar, __func__);
    if (found == nullptr || found->menus == nullptr) return 0;
    for (std::size_t i = 0; i < found->items.size(); ++i) {
        found->items[i]->setEnabled(found->rows[i].enabled != 0);
    }
    return 1;
}

int32_t ACTBARchanges(WHandle bar, WHandle /*shell*/, WHandle /*object*/, const char* const* texts) {
    const auto* found = handles().find<ActionBar>(bar, __func__);
    if (found == nullptr || texts == nullptr || found->menus == nullptr) return 0;
    for (std::size_t i = 0; i < found->items.size(); ++i) {
        ACTBARRow row = found->rows[i];
        row.text = texts[i];
        if (found->items[i]->text() != shownText(row)) return 1;
    }
    return 0;
}

// The flags are about drawing the bar anew, which Qt does when it must.
int32_t ACTBARsetflag(WHandle bar, uint32_t row, uint32_t /*flag*/, uint32_t /*value*/) {
    const auto* found = handles().find<ActionBar>(bar, __func__);
    return found != nullptr && row < found->rows.size() ? 1 : 0;
}

void ACTBARdestroy(WHandle bar) {
    handles().destroy<ActionBar>(bar, __func__);
}

#include "qrvel/window/help_line.h"

#include <QHBoxLayout>
#include <QInputEvent>
#include <QPushButton>
#include <QShortcut>
#include <QStatusBar>
#include <algorithm>
#include <cstdlib>
#include <span>

#include "platform/message_pump.h"
#include "platform/windows.h"
#include "qrvel/base/application.h"
#include "qrvel/window/child_widget.h"
#include "qrvel/window/shell.h"
#include "toolkit/helpl.h"

namespace qrvel {

namespace {

constexpr uint32_t SHIFTED_KEYS = 12;  // F15 is also Shift+F3: few keyboards have more than twelve

// The number in "F12=…"; 0 when a text names no function key.
uint32_t keyNamedBy(const QString& text) {
    const QString name = text.section('=', 0, 0);
    return text.contains('=') && name.startsWith('F') ? name.mid(1).toUInt() : 0;
}

bool nameTheirKeys(const std::vector<HelpLine::Button>& buttons, std::span<const char* const> texts) {
    return std::all_of(buttons.begin(), buttons.end(), [&](const HelpLine::Button& button) {
        return std::any_of(texts.begin(), texts.end(),
                           [&](const char* text) { return keyNamedBy(QString::fromUtf8(text)) == button.key; });
    });
}

// A text goes to the key that it names. If a key is named by none, all go to the keys in ascending order.
void setTexts(std::vector<HelpLine::Button>& buttons, std::span<const char* const> texts) {
    const bool named = nameTheirKeys(buttons, texts);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const QString text = QString::fromUtf8(texts[i]);
        for (std::size_t k = 0; k < buttons.size(); ++k) {
            if (named ? buttons[k].key == keyNamedBy(text) : k == i) buttons[k].text = text;
        }
    }
}

void postButton(const HelpLine& line, uint32_t number) {
    postAction(line.object, line.kind, number);
}

QPushButton* makeButton(const HelpLine& line, const HelpLine::Button& button) {
    auto* made = new QPushButton(QString(button.text).replace('&', "&&"));
    made->setEnabled(button.enabled);
    made->setAutoDefault(false);
    made->setFocusPolicy(Qt::TabFocus);  // a click leaves the keyboard with the drawing
    QObject::connect(made, &QPushButton::clicked, made, [handle = line.handle, number = button.number] {
        if (const auto* found = handles().find<HelpLine>(handle)) postButton(*found, number);
    });
    return made;
}

QWidget* makeRow(const HelpLine& line) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(2, 2, 2, 2);
    layout->setSpacing(2);
    for (const HelpLine::Button& button : line.buttons) {
        layout->addWidget(makeButton(line, button), 1);
    }
    return row;
}

// The number of the function key, with Shift one of the row above; 0 for every other key.
uint32_t functionKey(const tagMSG& message) {
    constexpr WPARAM BEFORE_F1 = 0x6F;
    constexpr WPARAM F24 = 0x87;
    const QEvent* event = pump::messageEvent();
    if (event == nullptr || message.wParam <= BEFORE_F1 || message.wParam > F24) return 0;
    const auto key = static_cast<uint32_t>(message.wParam - BEFORE_F1);
    const Qt::KeyboardModifiers modifiers = static_cast<const QInputEvent*>(event)->modifiers();
    if (modifiers == Qt::ShiftModifier) return key + SHIFTED_KEYS;
    return modifiers == Qt::NoModifier ? key : 0;
}

}  // namespace

bool HelpLine::press(uint32_t key) const {
    const auto found = std::find_if(buttons.begin(), buttons.end(), [&](const Button& b) { return b.key == key; });
    if (found == buttons.end()) return false;
    if (found->enabled) postButton(*this, found->number);
    return true;
}

void takeHelpKey(QWidget& panel) {
    constexpr uint32_t HELP_KEY = 1;
    auto* key = new QShortcut(QKeySequence(Qt::Key_F1), &panel);
    QObject::connect(key, &QShortcut::activated, &panel,
                     [] { handles().forEach<HelpLine>([](const HelpLine& line) { line.press(HELP_KEY); }); });
}

}  // namespace qrvel

using namespace qrvel;

WHandle HELPLcreate(WHandle shell, WHandle shellPart, uint32_t a, uint32_t /*b*/) {
    if (handles().find<Shell>(shell, __func__) == nullptr ||
        handles().find<ShellPart>(shellPart, __func__) == nullptr) {
        return 0;
    }
    const auto* made = handles().make<HelpLine>(shell, a);
    return made != nullptr ? made->handle : 0;
}

int32_t HELPLinit(WHandle helpLine, uint32_t /*set*/, const char* const* texts, const HELPLKey* keys,
                  const HELPLButton* buttons, int32_t count) {
    auto* found = handles().find<HelpLine>(helpLine, __func__);
    if (found == nullptr || texts == nullptr || keys == nullptr || buttons == nullptr || count < 0) return 0;
    found->buttons.clear();
    delete found->row;
    for (int32_t i = 0; i < count; ++i) {
        found->buttons.push_back({.key = keys[i].key,
                                  .enabled = std::atoi(buttons[i].enabled) != 0,
                                  .number = static_cast<uint32_t>(std::atoi(buttons[i].number)),
                                  .text = {}});
    }
    std::sort(found->buttons.begin(), found->buttons.end(),
              [](const HelpLine::Button& a, const HelpLine::Button& b) { return a.key < b.key; });
    setTexts(found->buttons, {texts, static_cast<std::size_t>(count)});
    return 1;
}

// There is one set of buttons.
int32_t HELPLset_buttons(WHandle helpLine, uint32_t /*set*/) {
    return handles().find<HelpLine>(helpLine, __func__) != nullptr ? 1 : 0;
}

int32_t HELPLmake_hlpl(WHandle helpLine, WHandle object, uint32_t /*set*/) {
    auto* found = handles().find<HelpLine>(helpLine, __func__);
    const auto* shell = found != nullptr ? handles().find<Shell>(found->shell, __func__) : nullptr;
    if (shell == nullptr || shell->window == nullptr) return 0;
    found->object = object;
    if (found->row != nullptr) return 1;  // made before, and the texts are the same
    found->row = makeRow(*found);
    QStatusBar* place = shell->window->statusBar();
    place->setSizeGripEnabled(false);
    place->addWidget(found->row, 1);
    place->setMinimumWidth(found->row->minimumSizeHint().width());  // a key must not lose its text
    return 1;
}

void HELPLdestroy(WHandle helpLine) {
    handles().destroy<HelpLine>(helpLine, __func__);
}

int32_t ACTappend(WHandle helpLine, uint32_t /*set*/, const char* actionClass, const char* button,
                  const char* argument) {
    auto* found = handles().find<HelpLine>(helpLine, __func__);
    if (found == nullptr || actionClass == nullptr || button == nullptr || argument == nullptr) return 0;
    found->actions[static_cast<uint32_t>(std::atoi(button))] = {actionClass[0], argument};
    return 1;
}

const char* ACThandleaction(WHandle helpLine, uint32_t action, char* actionClass) {
    *actionClass = 'S';
    const auto* found = handles().find<HelpLine>(helpLine, __func__);
    if (found == nullptr) return "";
    const auto entry = found->actions.find(action);
    if (entry == found->actions.end()) return "";
    *actionClass = entry->second.letter;
    return entry->second.argument.constData();
}

// Only those of the main window: in a help text or a panel the keys are that window's own.
int32_t Wwntranshotkey(const tagMSG* message, uint32_t id) {
    const Application* app = application();
    if (app == nullptr || id != WM_KEYDOWN || message->hwnd != app->variables.mainWindow) return 0;
    const uint32_t key = functionKey(*message);
    if (key == 0) return 0;
    return handles().findFirst<HelpLine>([&](const HelpLine& line) { return line.press(key); }) != nullptr ? 1 : 0;
}

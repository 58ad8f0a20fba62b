#include "print_setup.h"

#include <algorithm>
#include <cstring>

#include "conversion.h"
#include "notices.h"
#include "own_texts.h"
#include "pssetup.h"
#include "shell.h"
#include "toolkit_trace.h"

namespace qrvel {

namespace {

// The panel counts its choices from 0; what OUTopendevice takes begins at 1, and 0 is the format of a printer.
constexpr uint32_t PANEL_OFFSET = 1;

uint32_t panelNumber(Destination destination) {
    return static_cast<uint32_t>(destination) - PANEL_OFFSET;
}

uint32_t panelNumber(PageFormat format) {
    return format == PageFormat::None ? 0 : static_cast<uint32_t>(format) - PANEL_OFFSET;
}

QByteArray nameOf(const PrintChoice& choice) {
    return choice.destination == Destination::Printer ? choice.printer.toUtf8() : choice.fileName;
}

// A name is never cut: the file of a cut one would be another file.
int32_t copyName(const QByteArray& name, uint32_t* size, char* buffer) {
    if (size == nullptr || buffer == nullptr) return 0;
    const QByteArray handed = name.size() > qsizetype{*size} ? QByteArray(CHOSEN_FILE) : name;
    if (handed.size() > qsizetype{*size}) return 0;
    std::memcpy(buffer, handed.constData(), static_cast<std::size_t>(handed.size()) + 1);
    *size = static_cast<uint32_t>(handed.size());
    return 1;
}

int32_t setNumber(uint32_t* value, uint32_t number) {
    if (value == nullptr) return 0;
    *value = number;
    return 1;
}

}  // namespace

PrintChoice PrintSetup::choice() const {
    if (const Conversion* running = conversion()) return running->choice();
    return {};
}

PrintChoice currentPrintChoice() {
    const auto* setup = handles().findFirst<PrintSetup>([](const PrintSetup&) { return true; });
    return setup != nullptr ? setup->choice() : PrintChoice{};
}

}  // namespace qrvel

using namespace qrvel;

WHandle PSSETUPcreate(WHandle container, WHandle shell, uint32_t /*a*/, uint32_t /*b*/, uint32_t /*c*/,
                      uint32_t /*d*/) {
    if (handles().find<Shell>(shell, __func__) == nullptr) return 0;
    auto* made = handles().make<PrintSetup>();
    if (made == nullptr) return 0;
    made->container = container;
    return made->handle;
}

void PSSETUPdestroy(WHandle setup) {
    handles().destroy<PrintSetup>(setup, __func__);
}

int32_t PSSETUPshow(WHandle setup) {
    if (handles().find<PrintSetup>(setup, __func__) == nullptr) return 0;
    showNotice(ownText(OwnText::NoPrinting));
    return 0;
}

int32_t PSSETUPhide(WHandle setup) {
    return handles().find<PrintSetup>(setup, __func__) != nullptr ? 1 : 0;
}

int32_t PSSETUPqueryValue(WHandle setup, uint32_t number, uint32_t* value, char* buffer) {
    const auto* found = handles().find<PrintSetup>(setup, __func__);
    if (found == nullptr) return 0;
    const PrintChoice choice = found->choice();
    switch (number) {
        case PSSETUP_DESTINATION:
            return setNumber(value, panelNumber(choice.destination));
        case PSSETUP_FORMAT:
            return setNumber(value, panelNumber(choice.format));
        case PSSETUP_NAME:
            return copyName(nameOf(choice), value, buffer);
        default:
            traceLine("%s: there is no value %u\n", __func__, number);
            return 0;
    }
}

int32_t PSSETUPtransDestAndFormatValues(uint32_t* destination, uint32_t* format) {
    if (destination == nullptr || format == nullptr) return 0;
    *destination += PANEL_OFFSET;
    const bool printer = *destination == static_cast<uint32_t>(Destination::Printer);
    *format = printer ? static_cast<uint32_t>(PageFormat::None) : *format + PANEL_OFFSET;
    return 1;
}

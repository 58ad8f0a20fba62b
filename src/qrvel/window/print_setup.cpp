// The print set-up. There are no pages yet: the panel says so when it is asked for, and hands out no choice.
#include "handles.h"
#include "notices.h"
#include "out.h"
#include "own_texts.h"
#include "pssetup.h"
#include "shell.h"
#include "toolkit_trace.h"

namespace qrvel {

namespace {

struct PrintSetup : Object {
    static constexpr Kind KIND = Kind::PrintSetup;
};

}  // namespace

}  // namespace qrvel

using namespace qrvel;

WHandle PSSETUPcreate(WHandle /*container*/, WHandle shell, uint32_t /*a*/, uint32_t /*b*/, uint32_t /*c*/,
                      uint32_t /*d*/) {
    if (handles().find<Shell>(shell, __func__) == nullptr) return 0;
    const auto* made = handles().make<PrintSetup>();
    return made != nullptr ? made->handle : 0;
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

int32_t PSSETUPqueryValue(WHandle /*setup*/, uint32_t number, uint32_t* /*value*/, char* /*buffer*/) {
    traceLine("%s: there is no value %u\n", __func__, number);
    return 0;
}

int32_t PSSETUPtransDestAndFormatValues(uint32_t* /*destination*/, uint32_t* /*format*/) {
    return 0;
}

int32_t OUTopendevice(WHandle child, uint32_t /*destination*/, uint32_t /*format*/, const void* /*name*/) {
    traceLine("%s: there are no pages for %08X\n", __func__, child);
    return 0;
}

int32_t OUTclosedevice(WHandle /*child*/) {
    return 0;
}

#include "qrvel/output/colours.h"

#include <span>

#include "qrvel/base/application.h"
#include "qrvel/base/handles.h"
#include "toolkit/wclr.h"

namespace qrvel {

namespace {

// Only the right to name a table: its entries serve the devices also after the handle has been given up.
struct ColourTable : Object {
    static constexpr Kind KIND = Kind::ColourTable;
};

struct Newest {
    WHandle handle = 0;
    std::shared_ptr<const ColourEntries> entries;
};

Newest& newest() {
    static Newest* const state = new Newest;
    return *state;
}

uint32_t pixelOf(WColour colour) {
    return BLACK | static_cast<uint32_t>(colour.red) << 16 | static_cast<uint32_t>(colour.green) << 8 | colour.blue;
}

}  // namespace

std::shared_ptr<const ColourEntries> newestColours() {
    return newest().entries;
}

}  // namespace qrvel

using namespace qrvel;

WHandle WCLRcreate(WHandle app, const WColour* entries, int32_t count) {
    if (handles().find<Application>(app, __func__) == nullptr || entries == nullptr || count < 1) return 0;
    const auto* made = handles().make<ColourTable>();
    if (made == nullptr) return 0;
    ColourEntries pixels;
    for (const WColour colour : std::span(entries, static_cast<std::size_t>(count))) {
        pixels.push_back(pixelOf(colour));
    }
    Newest& state = newest();
    if (handles().find<ColourTable>(state.handle) != nullptr) handles().destroy<ColourTable>(state.handle, __func__);
    state.handle = made->handle;
    state.entries = std::make_shared<const ColourEntries>(std::move(pixels));
    return state.handle;
}

void WCLRdestroy(WHandle colourTable) {
    handles().destroy<ColourTable>(colourTable, __func__);
}

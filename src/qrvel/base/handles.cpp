#include "qrvel/base/handles.h"

#include "qrvel/base/toolkit_trace.h"

namespace qrvel {

const char* nameOf(Kind kind) {
    static constexpr const char* NAMES[] = {"none",         "application", "window class", "object",       "shell",
                                            "shell part",   "container",   "child",        "colour table", "font",
                                            "data channel", "action bar",  "help line",    "help name",    "help",
                                            "info panel",   "print set-up"};
    static_assert(std::size(NAMES) == static_cast<std::size_t>(Kind::PrintSetup) + 1);
    return NAMES[static_cast<std::size_t>(kind)];
}

WHandle HandleTable::insert(std::unique_ptr<Object> object, Kind kind) {
    if (free_.empty()) {
        if (entries_.size() > SLOT_MASK) return 0;
        free_.push_back(static_cast<uint16_t>(entries_.size()));
        entries_.emplace_back();
    }
    const uint16_t slot = free_.back();
    free_.pop_back();
    Entry& entry = entries_[slot];
    entry.object = std::move(object);
    entry.kind = kind;
    return slot | static_cast<uint32_t>(entry.generation) << GENERATION_SHIFT;
}

void HandleTable::remove(WHandle handle) {
    const auto slot = static_cast<uint16_t>(handle & SLOT_MASK);
    Entry& entry = entries_[slot];
    entry.kind = Kind::None;
    ++entry.generation;
    // What goes may use the table itself, so it goes last.
    const std::unique_ptr<Object> gone = std::move(entry.object);
    free_.push_back(slot);
}

void HandleTable::reportMiss(WHandle handle, Kind kind, const char* operation) {
    traceLine("%s: %08X is no %s\n", operation, handle, nameOf(kind));
}

}  // namespace qrvel

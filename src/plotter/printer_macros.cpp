// Macros: pieces of the stream that are kept, and carried out again and again.
#include <algorithm>

#include "plotter/printer.h"

namespace plotter {

// Everything up to the escape that ends it, wherever that stands but in the data of another one.
std::size_t Printer::recordMacro(std::string_view bytes, std::size_t offset) {
    const std::size_t at = std::min(bytes.find(ESCAPE, offset), bytes.size());
    if (at == bytes.size()) return at;
    EscapeReader reader(bytes, at);
    EscapeField field;
    while (reader.next(field)) {
        if (!isRecording_) {
            carryOut(reader, field);
        } else if (reader.is('&', 'f') && field.letter == 'X' && field.value == 1) {
            isRecording_ = false;
            macros_[macro_] = bytes.substr(recordedFrom_, at - recordedFrom_);
        }
    }
    return std::max(reader.end(), at + 1);
}

void Printer::macroControl(double what) {
    switch (static_cast<int>(std::clamp(what, -1.0, 100.0))) {
        case 0:
            isRecording_ = depth_ == 0;
            break;
        case 2:
            runMacro(macro_, false);
            break;
        case 3:
            runMacro(macro_, true);
            break;
        case 4:
            overlay_ = macro_;
            break;
        case 5:
            overlay_ = -1;
            break;
        case 6:
        case 7:
            macros_.clear();
            break;
        case 8:
            macros_.erase(macro_);
            break;
        default:
            break;
    }
}

void Printer::runMacro(int id, bool givesBack) {
    const auto at = macros_.find(id);
    if (at == macros_.end()) return;
    const std::string_view macro = at->second;
    if (depth_ >= MOST_MACRO_DEPTH || macro.size() > macroBytesLeft_) {
        machine_.report().meetBound(depth_ >= MOST_MACRO_DEPTH ? "macros in macros" : "bytes of macros");
        return;
    }
    macroBytesLeft_ -= macro.size();
    const Settings kept = settings_;
    ++depth_;
    runner_(macro);
    if (language_ == Language::Plotter) leavePlotter(0);
    --depth_;
    closeRaster();
    if (givesBack) settings_ = kept;
}

}  // namespace plotter

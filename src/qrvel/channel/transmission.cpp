#include "qrvel/channel/transmission.h"

#include <utility>

#include "qrvel/channel/frame_reader.h"
#include "qrvel/channel/transmission_cutter.h"
#include "toolkit/wd.h"

namespace qrvel {

Transmission::Transmission(std::unique_ptr<Spool> spool, Form form)
    : spool_(std::move(spool)), rest_(spool_->bytes()), form_(form) {}

std::unique_ptr<Transmission> Transmission::endAlone() {
    auto spool = std::make_unique<Spool>();
    const auto header = kelhost::encodeHeader({.kind = WD_CHUNK_END, .length = 0});
    spool->append(header.data(), header.size());
    spool->finish();
    return std::make_unique<Transmission>(std::move(spool), Form::Framed);
}

std::optional<Chunk> Transmission::next() {
    if (form_ == Form::Plain) return nextOfPlain();
    if (rest_.empty()) return std::nullopt;
    const HostFrame frame = takeFrame(rest_);
    return Chunk{frame.kind, frame.bytes, false};
}

// The begin chunk is empty, or the colon by which the viewer knows to take one off every piece.
std::optional<Chunk> Transmission::nextOfPlain() {
    switch (stage_) {
        case Stage::Begin: {
            stage_ = Stage::Middle;
            const std::string_view colon = rest_.substr(0, isColonTransmission(rest_) ? 1 : 0);
            rest_.remove_prefix(colon.size());
            return Chunk{WD_CHUNK_BEGIN, colon, true};
        }
        case Stage::Middle:
            stage_ = Stage::End;
            if (!rest_.empty()) return Chunk{WD_CHUNK_FURTHER, rest_, true};
            [[fallthrough]];
        case Stage::End:
            stage_ = Stage::Over;
            return Chunk{WD_CHUNK_END, {}, true};
        default:
            return std::nullopt;
    }
}

}  // namespace qrvel

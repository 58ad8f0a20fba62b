#include "qrvel/channel/delivery.h"

#include <cstring>
#include <utility>

#include "qrvel/channel/transmission_cutter.h"

namespace qrvel {

namespace {

constexpr int PIECES_BETWEEN_LOOKS = 16;  // at the clock

}  // namespace

Delivery::Delivery(Receiver& receiver, std::unique_ptr<Transmission> transmission)
    : receiver_(receiver), transmission_(std::move(transmission)) {
    takeChunk();
}

void Delivery::takeChunk() {
    const std::optional<Chunk> next = transmission_->next();
    over_ = !next;
    chunk_ = next.value_or(Chunk{});
    first_ = true;
}

// A viewer that has never had a begin chunk makes a new picture at each end chunk. What comes before that would be
// lost, so it gets a begin chunk of ours. That is nothing to which later transmissions may add when the sender's own
// text is an end chunk alone that was cut: such senders count on a new picture each time.
void Delivery::beginIfNever(uint32_t kind, bool hasBytes) {
    if (receiver_.addsTo || new_ || (kind == WD_CHUNK_FURTHER && !hasBytes)) return;
    new_ = true;
    receiver_.addsTo = chunk_.kind != WD_CHUNK_END && kind != WD_CHUNK_END;
    if (kind == WD_CHUNK_END && !receiver_.begun) return;
    receiver_.begun = true;
    if (kind != WD_CHUNK_BEGIN) receiver_.callback(receiver_.buffer, 0, WD_CHUNK_BEGIN);
}

void Delivery::send(uint32_t kind, bool colon, std::string_view bytes) {
    beginIfNever(kind, !bytes.empty());
    begun_ = true;
    done_ += bytes.size();
    const std::size_t front = colon ? 1 : 0;
    receiver_.buffer[0] = ':';
    if (!bytes.empty()) std::memcpy(receiver_.buffer + front, bytes.data(), bytes.size());
    receiver_.callback(receiver_.buffer, front + bytes.size(), kind);
}

// The viewer takes a colon off every piece of a colon transmission; one that the sender did not make gets one first.
void Delivery::sendPiece() {
    const bool begins = first_ && chunk_.kind == WD_CHUNK_BEGIN;
    if (begins) withColons_ = isColonTransmission(chunk_.bytes);
    const bool colon = withColons_ && !begins && (chunk_.ours || !first_) && !chunk_.bytes.empty();
    const std::size_t length = nextPieceLength(chunk_.bytes, WD_RECEIVE_BUFFER - (colon ? 1 : 0));
    const std::string_view piece = chunk_.bytes.substr(0, length);
    chunk_.bytes.remove_prefix(length);
    const bool whole = chunk_.bytes.empty();
    uint32_t kind = WD_CHUNK_FURTHER;
    if (begins) kind = WD_CHUNK_BEGIN;
    if (whole && chunk_.kind == WD_CHUNK_END) kind = WD_CHUNK_END;
    first_ = false;
    send(kind, colon, piece);
    if (whole) takeChunk();
}

void Delivery::run(std::chrono::steady_clock::time_point until) {
    do {
        for (int i = 0; i < PIECES_BETWEEN_LOOKS && !over_; ++i) {
            if (atEnd() && i > 0) break;
            sendPiece();
        }
    } while (!over_ && !atEnd() && std::chrono::steady_clock::now() < until);
}

void Delivery::cutShort() {
    over_ = true;
    if (begun_) send(WD_CHUNK_END, false, {});
}

}  // namespace qrvel

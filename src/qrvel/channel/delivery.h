// Handing a transmission to the viewer's callback, in pieces that fit into its receive buffer.
#pragma once

#include <chrono>
#include <memory>

#include "qrvel/channel/transmission.h"
#include "toolkit/wd.h"

namespace qrvel {

// The viewer's side of the channel.
struct Receiver {
    char* buffer;  // WD_RECEIVE_BUFFER bytes
    WDCallback callback;
    bool begun = false;   // it has had a begin chunk
    bool addsTo = false;  // and has a picture to which a transmission without one adds
};

class Delivery {
  public:
    // The receiver must live longer.
    Delivery(Receiver& receiver, std::unique_ptr<Transmission> transmission);

    // Hands pieces over until that time, one in any case. The end chunk is a turn of its own: much hangs on it.
    void run(std::chrono::steady_clock::time_point until);

    // Nothing more is to be handed over, but the viewer gets its end chunk if it has had another.
    void cutShort();

    bool hasBegun() const { return begun_; }
    bool isOver() const { return over_; }
    // Bytes that have been handed over, and all of them.
    std::size_t done() const { return done_; }
    std::size_t size() const { return transmission_->size(); }

  private:
    bool atEnd() const { return chunk_.kind == WD_CHUNK_END && chunk_.bytes.empty(); }
    void takeChunk();
    void sendPiece();
    void beginIfNever(uint32_t kind, bool hasBytes);
    void send(uint32_t kind, bool colon, std::string_view bytes);

    Receiver& receiver_;
    std::unique_ptr<Transmission> transmission_;
    Chunk chunk_{};       // what is left of the one under way
    bool first_ = false;  // none of its pieces has been sent
    bool new_ = false;    // it has been seen to that the viewer makes a new picture where it must
    bool withColons_ = false;
    bool begun_ = false;
    bool over_ = false;
    std::size_t done_ = 0;
};

}  // namespace qrvel

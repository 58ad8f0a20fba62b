// The host data channel: the sources named on the command line, one transmission each, handed to the viewer in chunks.
//
// A transmission is an empty chunk of kind 1, chunks of kind 0 that fit into the receive buffer, and an empty one of
// kind 2. It is read whole first, so one that breaks off never reaches the viewer. Without any source there is one
// empty chunk of kind 2, from which the viewer makes its empty window.
#pragma once

#include <QByteArrayList>
#include <memory>

#include "handles.h"
#include "source_reader.h"
#include "spool.h"
#include "wd.h"

namespace qrvel {

class DataChannel : public Object {
  public:
    static constexpr Kind KIND = Kind::DataChannel;

    DataChannel(char* buffer, WDCallback callback) : buffer_(buffer), callback_(callback) {}

    // Begins to read. sources: file names, "-" for standard input. pipedIn: there are none, but something may come on
    // standard input.
    void start(const QByteArrayList& sources, bool pipedIn);

    // Whether the viewer has got a begin chunk and not yet the end.
    bool isTransmitting() const { return transmitting_; }
    // Whether deliver has something to do.
    bool hasChunks() const { return spool_ != nullptr || endIsDue_; }
    // Hands chunks over, for a few milliseconds at most.
    void deliver();
    // Whether a transmission has been handed over whole.
    bool hasDelivered() const { return delivered_; }

  private:
    void readNext();
    void sourceRead();
    void chunksAreDue();
    void begin();
    void sendPiece();
    void finish();
    void send(std::string_view bytes, uint32_t kind);

    char* buffer_;  // the viewer's
    WDCallback callback_;
    QByteArrayList waiting_;
    std::unique_ptr<SourceReader> reader_;
    std::unique_ptr<Spool> spool_;  // the transmission that is being handed over
    std::string_view rest_;         // of its bytes
    bool pipedIn_ = false;
    bool withColons_ = false;
    bool transmitting_ = false;
    bool endIsDue_ = false;
    bool delivered_ = false;
};

// The open channel, or null.
DataChannel* findDataChannel();

}  // namespace qrvel

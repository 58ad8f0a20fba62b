// One picture on its way to the viewer, whole: the bytes of a file, or the frames of a host.
#pragma once

#include <memory>
#include <optional>
#include <string_view>

#include "qrvel/channel/spool.h"
#include "toolkit/wd.h"

namespace qrvel {

// What the viewer's callback is to get, before it is cut to fit into the receive buffer.
struct Chunk {
    uint32_t kind;  // WD_CHUNK_…
    std::string_view bytes;
    bool ours;  // no sender's: in a colon transmission even its first piece needs a colon in front
};

class Transmission {
  public:
    enum class Form { Plain, Framed };

    // The spool is finished. Framed: what a FrameReader has let through.
    Transmission(std::unique_ptr<Spool> spool, Form form);

    // A transmission of an end chunk alone, which makes the viewer show an empty picture if it has none.
    static std::unique_ptr<Transmission> endAlone();

    // The next chunk; nothing behind the last, which is an end chunk.
    std::optional<Chunk> next();

    // Whether it makes a new picture.
    bool begins() const { return form_ == Form::Plain || (!rest_.empty() && rest_.front() == char{WD_CHUNK_BEGIN}); }

    std::size_t size() const { return spool_->bytes().size(); }

  private:
    enum class Stage { Begin, Middle, End, Over };

    std::optional<Chunk> nextOfPlain();

    std::unique_ptr<Spool> spool_;
    std::string_view rest_;
    Form form_;
    Stage stage_ = Stage::Begin;  // of a plain one
};

}  // namespace qrvel

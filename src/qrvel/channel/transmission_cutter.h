// Cutting a transmission into pieces that fit into the receive buffer.
#pragma once

#include <cstddef>
#include <string_view>

namespace qrvel {

// A file name in the data must reach the viewer in one piece, so the cutter looks that many bytes past a piece's end
// to see whether the word before such a name begins there.
inline constexpr std::string_view NAME_FOLLOWS = "HPGL_FILE";

// How many bytes of `rest` the next piece takes: at most `room`, fewer where the cut would otherwise fall into the word
// HPGL_FILE or the name behind it. `rest` must hold room + NAME_FOLLOWS.size() bytes or everything that is left.
// A name that does not fit into a piece is cut all the same.
std::size_t nextPieceLength(std::string_view rest, std::size_t room);

// Whether the transmission begins with a colon. The receiver then takes one colon off every chunk that begins with
// one, so every piece that the cutter makes needs a colon in front.
inline bool isColonTransmission(std::string_view data) {
    return data.starts_with(':');
}

}  // namespace qrvel

// What the bytes of a label say: characters and control codes, by the sets of its fonts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "plotter/labels.h"

namespace plotter {

struct Token {
    enum class Kind { Character, Control, Nothing };
    Kind kind = Kind::Nothing;
    char32_t character = 0;  // Control: the code. Character: 0 is a blank
    char32_t code = 0;
    bool isCode = true;  // code has been looked up in a set, and is not Unicode
};

class LabelCodes {
  public:
    // Both outlive it.
    LabelCodes(const Lettering& lettering, std::string_view text);

    // What stands at that place of the text, which goes on behind it; alternate: the font that is on.
    Token next(std::size_t& at, bool alternate) const;
    // What a byte alone says.
    Token ofByte(uint8_t code, bool alternate) const;

  private:
    Token nextWide(std::size_t& at, bool alternate) const;
    char32_t decodeByte(uint8_t code, bool alternate) const;
    const SymbolSet& set(bool alternate) const { return lettering_.faces[alternate ? 1 : 0].symbols; }

    const Lettering& lettering_;
    std::string_view text_;
    bool utf8_;
};

}  // namespace plotter

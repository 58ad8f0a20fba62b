#include "plotter/label_codes.h"

#include <algorithm>

#include "plotter/ascii.h"

namespace plotter {

LabelCodes::LabelCodes(const Lettering& lettering, std::string_view text)
    : lettering_(lettering), text_(text), utf8_(!lettering.wide && isUtf8(text)) {}

char32_t LabelCodes::decodeByte(uint8_t code, bool alternate) const {
    const SymbolSet own = set(alternate);
    const bool eightBits = lettering_.mode == CharacterMode::Hp8 || lettering_.mode == CharacterMode::Iso8;
    if (code < UPPER_HALF || !eightBits || !own.hpgl) return decode(own, code);
    // The upper half is the alternate set then.
    const SymbolSet upper = set(true);
    if (upper.hpgl && upper.number != 0) {
        return code < UPPER_PRINTED ? 0 : decode(upper, static_cast<uint8_t>(code - UPPER_HALF));
    }
    return lettering_.mode == CharacterMode::Iso8 && code >= UPPER_PRINTED ? code : decode(own, code);
}

Token LabelCodes::ofByte(uint8_t code, bool alternate) const {
    if (code < FIRST_PRINTED && !lettering_.transparent) return {Token::Kind::Control, code, code};
    const char32_t found = decodeByte(code, alternate);
    if (found != 0) return {Token::Kind::Character, found, code};
    const bool blank = code < FIRST_PRINTED || lettering_.transparent;
    if (blank) return {Token::Kind::Character, U' ', code};
    if (code == DELETE) return {Token::Kind::Nothing, 0, code};
    // Codes of the upper half's control area have no width either.
    const bool ignored = code >= UPPER_HALF && code < UPPER_PRINTED;
    return {ignored ? Token::Kind::Nothing : Token::Kind::Character, 0, code};
}

Token LabelCodes::nextWide(std::size_t& at, bool alternate) const {
    const auto high = static_cast<uint8_t>(text_[at]);
    const bool whole = at + 1 < text_.size();
    const auto low = whole ? static_cast<uint8_t>(text_[at + 1]) : uint8_t{0};
    at += whole ? 2 : 1;
    if (!whole) return {};
    if (high == 0) return ofByte(low, alternate);
    const char32_t code = static_cast<char32_t>(high) << 8 | low;
    const bool known = isUnicode(set(alternate));
    return {Token::Kind::Character, known ? code : 0, code, !known};
}

Token LabelCodes::next(std::size_t& at, bool alternate) const {
    if (lettering_.wide) return nextWide(at, alternate);
    const auto code = static_cast<uint8_t>(text_[at]);
    if (utf8_ && code >= UPPER_HALF) {
        char32_t character = 0;
        at += std::max<std::size_t>(1, readUtf8(text_.substr(at), character));
        return {Token::Kind::Character, character, character, false};
    }
    ++at;
    return ofByte(code, alternate);
}

}  // namespace plotter

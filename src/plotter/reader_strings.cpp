// Labels, encoded lines and other text, which end as their instruction has it, or as somebody has forgotten.
#include <algorithm>

#include "plotter/ascii.h"
#include "plotter/byte_kinds.h"
#include "plotter/polyline_decoder.h"
#include "plotter/reader.h"

namespace plotter {

bool Reader::looksLikeInstruction(std::size_t at) const {
    std::size_t behind = 0;
    if (nameAt(at, &behind) == nullptr) return false;
    return behind >= bytes_.size() || kindOf(byte(behind)) != Kind::Letter || startsKnownName(behind);
}

// Encoded data are letters too: where a line ended between two pairs and a name follows that cannot be data, or hardly,
// the terminator was forgotten. Digits are no data, and capitals never end a number.
std::size_t Reader::endOfEncoded(std::size_t end) const {
    PolylineDecoder decoder(bytes_.substr(at_, end - at_));
    std::size_t behindPair = at_;
    const auto endsPair = [&](std::size_t lineEnd) {
        while (at_ + decoder.at() < lineEnd && decoder.next()) {
            behindPair = at_ + decoder.at();
        }
        return behindPair == lineEnd;
    };
    const std::string_view within = bytes_.substr(0, end);  // a search beyond would be made for every PE
    for (std::size_t line = within.find('\n', at_); line < end; line = within.find('\n', line + 1)) {
        const std::size_t name = line + 1;
        std::size_t behind = 0;
        if (nameAt(name, &behind) == nullptr || behind != name + 2 || behind >= bytes_.size()) continue;
        const char next = bytes_[behind];
        if (next == '-' || (isDigit(next) && next != '7')) return name;
        if (!isCapital(bytes_[name]) || !isCapital(bytes_[name + 1])) continue;
        if (next == ';') return name;
        if (bytes_[line - 1] == '\r' && looksLikeInstruction(name) && endsPair(line - 1)) return name;
    }
    return end;
}

// The text goes up to there, where its terminator stands, or else it ends early.
void Reader::takeText(std::size_t end, bool isTerminated, Ending ending) {
    instruction_.text = bytes_.substr(at_, end - at_);
    instruction_.endsEarly = !isTerminated;
    if (!isTerminated && end == bytes_.size()) brokenOff_ = ending;
    at_ = end + (isTerminated ? 1 : 0);
}

void Reader::readEncoded() {
    const std::size_t escape = find(ESCAPE, at_);
    const std::size_t found = std::min(find(';', at_), escape);
    const std::size_t end = endOfEncoded(found);
    takeText(end, end == found && found < escape, Ending::InEncodedLine);
}

// Where a label ends whose terminator does not come in all the rest of the file: before a line that begins with an
// instruction.
std::size_t Reader::endOfBrokenLabel() const {
    for (std::size_t line = bytes_.find('\n', at_); line != std::string_view::npos;
         line = bytes_.find('\n', line + 1)) {
        std::size_t next = line + 1;
        while (next < bytes_.size() && (bytes_[next] == '\n' || bytes_[next] == '\r')) {
            ++next;
        }
        if (!looksLikeInstruction(next)) continue;
        std::size_t end = line;
        while (end > at_ && (bytes_[end - 1] == '\r' || bytes_[end - 1] == ';')) {
            --end;
        }
        return end;
    }
    return bytes_.size();
}

void Reader::readWideLabel(char terminator) {
    const std::size_t start = at_;
    while (at_ + 1 < bytes_.size() && !(bytes_[at_] == '\0' && bytes_[at_ + 1] == terminator)) {
        at_ += 2;
    }
    instruction_.text = bytes_.substr(start, at_ - start);
    instruction_.endsEarly = at_ + 1 >= bytes_.size();
    if (instruction_.endsEarly) brokenOff_ = Ending::InLabel;
    at_ = std::min(at_ + 2, bytes_.size());
}

void Reader::readLabel(LabelEnd labelEnd) {
    if (labelEnd.isWide) {
        readWideLabel(labelEnd.byte);
        return;
    }
    const char terminator = labelEnd.byte;
    std::size_t end = find(terminator, at_);
    if (end == bytes_.size()) end = endOfBrokenLabel();
    // Writers that forget the terminator leave the language in mid-label.
    for (std::size_t escape = find(ESCAPE, at_); escape < end; escape = find(ESCAPE, escape + 1)) {
        const char next = escape + 1 < bytes_.size() ? bytes_[escape + 1] : '\0';
        if (next == '%' || next == 'E' || next == '.') end = escape;
    }
    takeText(end, end < bytes_.size() && bytes_[end] == terminator, Ending::InLabel);
}

// DTc, DTc,0 or DT alone: the text is "c" or "c,0" or nothing.
void Reader::readTerminator() {
    const std::size_t start = at_;
    if (at_ >= bytes_.size() || bytes_[at_] == ';') return;
    ++at_;
    if (at_ + 1 < bytes_.size() && bytes_[at_] == ',' && (bytes_[at_ + 1] == '0' || bytes_[at_ + 1] == '1')) at_ += 2;
    instruction_.text = bytes_.substr(start, at_ - start);
}

void Reader::skipBlanks() {
    while (at_ < bytes_.size() && bytes_[at_] == ' ') {
        ++at_;
    }
}

void Reader::readCharacter() {
    skipBlanks();
    if (at_ >= bytes_.size() || bytes_[at_] == ';' || bytes_[at_] == ESCAPE) return;
    instruction_.text = bytes_.substr(at_, 1);
    ++at_;
}

// Numbers, and text in quotes between them.
void Reader::readQuoted() {
    count_ = 0;
    while (at_ < bytes_.size()) {
        const Kind kind = kindOf(byte(at_));
        if (bytes_[at_] == '"') {
            const std::size_t end = bytes_.find('"', at_ + 1);
            if (end == std::string_view::npos) {
                skipTo(';');
                break;
            }
            instruction_.text = bytes_.substr(at_ + 1, end - at_ - 1);
            at_ = end + 1;
        } else if (kind == Kind::Digit || kind == Kind::Sign || kind == Kind::Point) {
            const double number = readNumber();
            if (count_ < NUMBERS_AT_ONCE) numbers_[count_++] = number;
        } else if (kind == Kind::End || kind == Kind::Escape || kind == Kind::Letter) {
            break;
        } else {
            ++at_;
        }
    }
    instruction_.numbers = {numbers_.data(), count_};
}

// In quotes, or up to the terminator.
void Reader::readComment() {
    skipBlanks();
    const std::size_t start = at_;
    const std::size_t quote =
        at_ < bytes_.size() && bytes_[at_] == '"' ? bytes_.find('"', at_ + 1) : std::string_view::npos;
    if (quote != std::string_view::npos) {
        at_ = quote + 1;
    } else {
        skipTo(';');
    }
    instruction_.text = bytes_.substr(start, at_ - start);
}

}  // namespace plotter

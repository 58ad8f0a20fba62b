#include "plotter/reader.h"

#include <algorithm>
#include <cstring>

#include "plotter/byte_kinds.h"

namespace plotter {

Reader::Reader(std::string_view bytes, Report& report) : bytes_(bytes), report_(report), numbers_(NUMBERS_AT_ONCE) {}

// The first such byte from there on; the file's end where there is none.
std::size_t Reader::find(char wanted, std::size_t from) {
    Sought& sought = sought_[static_cast<uint8_t>(wanted)];
    if (from < sought.from || from > sought.at) sought = {from, std::min(bytes_.find(wanted, from), bytes_.size())};
    return sought.at;
}

bool Reader::atLineStart() const {
    return at_ == 0 || bytes_[at_ - 1] == '\n' || bytes_[at_ - 1] == '\r';
}

void Reader::skipTo(char end) {
    while (at_ < bytes_.size() && bytes_[at_] != end && bytes_[at_] != ESCAPE) {
        ++at_;
    }
}

// ---- names ----------------------------------------------------------------------------------------------------------

// The row of the name whose first letter stands there, white space between its letters; behind: what follows it.
const ManifestRow* Reader::nameAt(std::size_t at, std::size_t* behind) const {
    if (at >= bytes_.size() || kindOf(byte(at)) != Kind::Letter) return nullptr;
    if (at + 1 < bytes_.size() && kindOf(byte(at + 1)) == Kind::Letter) {
        if (behind != nullptr) *behind = at + 2;
        return findInstruction(capital(byte(at)), capital(byte(at + 1)));
    }
    std::size_t second = at + 1;
    while (second < bytes_.size() && bytes_[second] != ',' && kindOf(byte(second)) == Kind::Blank) {
        ++second;
    }
    if (second >= bytes_.size() || kindOf(byte(second)) != Kind::Letter) return nullptr;
    if (behind != nullptr) *behind = second + 1;
    return findInstruction(capital(byte(at)), capital(byte(second)));
}

bool Reader::startsKnownName(std::size_t at) const {
    return nameAt(at, nullptr) != nullptr;
}

// Numbers behind an unknown name are nobody's; letters that begin no known name neither, up to the terminator.
void Reader::passOverUnknown(char first, char second, std::size_t start) {
    report_.passOver(std::string_view(std::array<char, 2>{first, second}.data(), 2), start);
    while (at_ < bytes_.size()) {
        const Kind kind = kindOf(byte(at_));
        if (kind == Kind::End || kind == Kind::Escape) return;
        if (kind == Kind::Letter) {
            if (!startsKnownName(at_)) skipTo(';');
            return;
        }
        ++at_;
    }
}

const ManifestRow* Reader::readName() {
    while (at_ < bytes_.size()) {
        const uint8_t here = byte(at_);
        if (here == ESCAPE) return nullptr;
        if (here == '#' && atLineStart()) {
            skipTo('\n');
        } else if (here == '.' && !hasNamed_ && atLineStart()) {
            at_ = std::max(skipDeviceControl(bytes_, at_), at_ + 1);  // an editor or the mail has taken its ESC
        } else if (here == '!') {
            skipTo(';');  // a cutter's own instruction, whatever its letters are
        } else if (kindOf(here) == Kind::Letter) {
            const std::size_t start = at_;
            std::size_t behind = at_ + 1;
            const ManifestRow* row = nameAt(at_, &behind);
            at_ = behind;
            if (row != nullptr) {
                hasNamed_ = true;
                instruction_ = {};
                instruction_.offset = start;
                std::memcpy(instruction_.name, row->name, sizeof row->name);
                return row;
            }
            if (behind > start + 1) passOverUnknown(capital(here), capital(byte(behind - 1)), start);
        } else {
            ++at_;
        }
    }
    return nullptr;
}

const ManifestRow* Reader::next(LabelEnd labelEnd) {
    while (true) {
        brokenOff_.reset();
        if (going_ != nullptr) {
            const ManifestRow* row = going_;
            going_ = nullptr;
            if (readPairs(*row) && count_ != 0) return row;
        }
        const ManifestRow* row = readName();
        if (row == nullptr) return nullptr;
        if (read(*row, labelEnd)) return row;
    }
}

// False: the instruction is damaged, and dropped.
bool Reader::read(const ManifestRow& row, LabelEnd labelEnd) {
    switch (row.form) {
        case Form::Numbers:
            if (!readNumbers()) return false;
            instruction_.numbers = {numbers_.data(), count_};
            return true;
        case Form::Pairs:
        case Form::Curve:
            return readPairs(row);
        case Form::Encoded:
            readEncoded();
            return true;
        case Form::Label:
            readLabel(labelEnd);
            return true;
        case Form::Terminator:
            readTerminator();
            return true;
        case Form::Character:
            readCharacter();
            return true;
        case Form::Quoted:
            readQuoted();
            return true;
        case Form::Comment:
            readComment();
            return true;
    }
    return true;
}

}  // namespace plotter

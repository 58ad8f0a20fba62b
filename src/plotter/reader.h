// The plotter language's words: names, numbers and strings out of a file's bytes, however sloppily they are written.
// It never fails: what cannot be read is passed over, and the report says where.
#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "plotter/instruction.h"
#include "plotter/manifest.h"
#include "plotter/report.h"

namespace plotter {

// What ends a label: a byte; with LM that byte behind a zero, the two of them a pair like all others.
struct LabelEnd {
    char byte = 3;
    bool isWide = false;
};

// How many numbers are handed over at once: whole pairs and whole groups of six, so that memory does not grow with an
// instruction.
inline constexpr std::size_t NUMBERS_AT_ONCE = 6000;

class Reader {
  public:
    // The bytes must live as long as the reader.
    Reader(std::string_view bytes, Report& report);

    // The next instruction from that place on, or null at an ESC or the end; at() then stands there. instruction() is
    // valid until the next call.
    const ManifestRow* next(LabelEnd labelEnd);
    const Instruction& instruction() const { return instruction_; }

    std::size_t at() const { return at_; }
    void goTo(std::size_t at) { at_ = at; }
    bool isOver() const { return at_ >= bytes_.size(); }
    // How the file ends when it ends inside the instruction read last.
    std::optional<Ending> brokenOff() const { return brokenOff_; }

  private:
    // Where a byte comes next, from where on that is known: strings end far away in a hostile file, again and again.
    struct Sought {
        std::size_t from = 1;
        std::size_t at = 0;
    };

    // ---- names: reader.cpp ----
    const ManifestRow* readName();
    const ManifestRow* nameAt(std::size_t at, std::size_t* behind) const;
    bool startsKnownName(std::size_t at) const;
    void passOverUnknown(char first, char second, std::size_t start);
    bool read(const ManifestRow& row, LabelEnd labelEnd);
    std::size_t find(char wanted, std::size_t from);
    void skipTo(char end);
    bool atLineStart() const;

    // ---- numbers: reader_numbers.cpp ----
    double readNumber();
    void readPlainNumbers();
    bool readNumbers();
    bool readPairs(const ManifestRow& row);

    // ---- strings: reader_strings.cpp ----
    bool looksLikeInstruction(std::size_t at) const;
    void takeText(std::size_t end, bool isTerminated, Ending ending);
    void readEncoded();
    std::size_t endOfEncoded(std::size_t end) const;
    void readLabel(LabelEnd labelEnd);
    void readWideLabel(char terminator);
    std::size_t endOfBrokenLabel() const;
    void readTerminator();
    void skipBlanks();
    void readCharacter();
    void readQuoted();
    void readComment();

    uint8_t byte(std::size_t at) const { return static_cast<uint8_t>(bytes_[at]); }

    std::string_view bytes_;
    Report& report_;
    std::size_t at_ = 0;
    Instruction instruction_;
    const ManifestRow* going_ = nullptr;  // an instruction that is handed over in pieces
    std::vector<double> numbers_;         // room for NUMBERS_AT_ONCE
    std::size_t count_ = 0;               // of them
    std::array<Sought, 256> sought_ = {};
    std::optional<Ending> brokenOff_;
    bool hasNamed_ = false;  // an instruction
};

}  // namespace plotter

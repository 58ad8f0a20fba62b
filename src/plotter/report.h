// What was met in a file that is not drawn, or not as it stands there.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace plotter {

// How a file ends: whole, or inside something.
enum class Ending { Whole, InPolygon, InLabel, InEncodedLine, InBinary };

class Report {
  public:
    struct Entry {
        std::string what;    // an instruction's name, an escape, or a short description, in ASCII
        std::size_t count;   // how often
        std::size_t offset;  // of the first, bytes from the file's start
    };

    // Where what is met from now on is met: at the instruction under way; bytes from the file's start.
    void setOffset(std::size_t offset) { offset_ = offset; }
    // Something that draws on paper and was passed over, for instance "FI", "ESC*b35W", "LB character 0x8f".
    void passOver(std::string_view what) { passOver(what, offset_); }
    // The same of what has not become an instruction, at a place of its own.
    void passOver(std::string_view what, std::size_t offset) { note(passedOver_, what, offset); }
    // A bound of docs/limits.md was met: what it bounds.
    void meetBound(std::string_view what) { note(bounds_, what, offset_); }
    void endIn(Ending ending) { ending_ = ending; }
    // The file selects no pen, and pen 1 drew what would have been lost.
    void drawWithPenOne() { penOneDrew_ = true; }

    // In the order of their first places.
    std::vector<Entry> passedOver() const { return inOrder(passedOver_); }
    std::vector<Entry> bounds() const { return inOrder(bounds_); }
    Ending ending() const { return ending_; }
    bool penOneDrew() const { return penOneDrew_; }

  private:
    using Table = std::map<std::string, Entry, std::less<>>;

    static void note(Table& table, std::string_view what, std::size_t offset);
    static std::vector<Entry> inOrder(const Table& table);

    Table passedOver_;
    Table bounds_;
    std::size_t offset_ = 0;
    Ending ending_ = Ending::Whole;
    bool penOneDrew_ = false;
};

}  // namespace plotter

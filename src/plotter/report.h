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

    // Something that draws on paper and was passed over, for instance "FI", "ESC*b35W", "LB character 0x8f".
    void passOver(std::string_view what, std::size_t offset) { note(passedOver_, what, offset); }
    // A bound of docs/limits.md was met: what it bounds.
    void meetBound(std::string_view what, std::size_t offset) { note(bounds_, what, offset); }
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
    Ending ending_ = Ending::Whole;
    bool penOneDrew_ = false;
};

}  // namespace plotter

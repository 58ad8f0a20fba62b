// A picture as text, for tests that put HP-GL beside what comes of it.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// The whole viewer in one process: recorder, trace and shell state as after a fresh start, with
// windows and devices made up (drawing child 7, main object 5), so that folders can be called without the shell.
class FreshViewer {
  public:
    FreshViewer();
    ~FreshViewer();
    FreshViewer(const FreshViewer&) = delete;
    FreshViewer& operator=(const FreshViewer&) = delete;
};

// The level-1 to level-`level` trace lines of the tests go to a string: opens the trace on a scratch file in a folder
// of its own. text() is what was written so far, without the opening header, with LF line ends.
class TraceCapture {
  public:
    explicit TraceCapture(int level);
    ~TraceCapture();
    TraceCapture(const TraceCapture&) = delete;
    TraceCapture& operator=(const TraceCapture&) = delete;
    std::string text() const;

  private:
    std::string folder_;
    std::string file_;
    std::size_t headerSize_ = 0;
};

// The text so many times.
std::string times(int n, std::string_view text);

// Parses into TheShell.parser (a new one) in the given chunks; answers the result of the last call.
int parseChunks(const std::vector<std::string_view>& chunks);
int parseText(std::string_view text);

// hpgldump's sections, of TheShell.parser.
std::string recordsText();
std::string hexText();
std::string pictureText();

// The records of a text parsed in one piece, as hpgldump --records prints them, but without the "rec BLOCK OFFSET ID "
// in front: "PA 2 10 20\nPD 0\n".
std::string shortRecords(std::string_view text);

// The output calls of one drawing pass of a text: parse, set-up pass, scaling to the extents in a window of
// width x height, interpreter. One call a line, as hpgldump --calls prints them.
std::string drawingCalls(std::string_view text, int width = 500, int height = 500, int rotationSign = 1);

// The compact code of a text, every block behind the other.
std::string codeOf(std::string_view text);

// A picture of hand-written blocks in TheShell.parser, as if a text had become them.
void setBlocks(const std::vector<std::string>& blocks);

// The output calls of one drawing pass over TheShell.parser, or over a text, without set-up pass: one pixel a plotter
// unit, each pen's colour its number. The two calls that set pen 1's colour first are left out.
std::string plainPass(int rotationSign = 1);
std::string plainCalls(std::string_view text, int rotationSign = 1);

// What `action` writes to the trace at a level.
std::string traceOf(int level, const std::function<void()>& action);

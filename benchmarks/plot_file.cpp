// plot_file: writes a plot of any size to standard output.
// usage: plot_file segments|bytes N     short thin strokes, N of them, or pen moves of about N bytes of text
#include <charconv>
#include <cstdio>
#include <cstring>

#include "plots.h"

int main(int argc, char** argv) {
    int64_t n = 0;
    const bool bySegments = argc == 3 && std::strcmp(argv[1], "segments") == 0;
    const bool byBytes = argc == 3 && std::strcmp(argv[1], "bytes") == 0;
    const char* end = argc == 3 ? argv[2] + std::strlen(argv[2]) : nullptr;
    if ((!bySegments && !byBytes) || std::from_chars(argv[2], end, n).ptr != end) {
        std::fputs("usage: plot_file segments|bytes N\n", stderr);
        return 2;
    }
    const Plot plot = bySegments ? strokes(n, 0.0) : penMoves(n);
    return std::fwrite(plot.text.data(), 1, plot.text.size(), stdout) == plot.text.size() ? 0 : 1;
}

// A plot of any kind through the plotter, every page of it: what comes out is plain, and comes out of it again as it
// was.
#include <algorithm>
#include <string>

#include "fuzz_target.h"
#include "plotter/plotter.h"

namespace {

constexpr std::size_t MOST_PAGES = 3;  // that are written of one input

bool goOn(std::size_t /*bytesDone*/) {
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(data), size);
    const plotter::Survey survey = plotter::survey(file, goOn);
    require(survey.whole && !survey.pages.empty(), "a survey has a page");
    plotter::summary(survey);
    plotter::PageWriter writer(file, survey);
    for (std::size_t page = 0; page < std::min(survey.pages.size(), MOST_PAGES); ++page) {
        std::string text;
        const auto sink = [&text](std::string_view piece) {
            text += piece;
            return true;
        };
        require(writer.write(page, sink, goOn), "a page is written");
        require(plotter::isPlain(text), "what is written is plain");
    }
    return 0;
}

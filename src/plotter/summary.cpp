#include <algorithm>

#include "plotter/plotter.h"

namespace plotter {

namespace {

// So many names are listed; the rest are counted.
constexpr std::size_t MOST_NAMES = 5;

std::string listOf(const std::vector<Report::Entry>& entries) {
    std::string list;
    for (std::size_t i = 0; i < entries.size() && i < MOST_NAMES; ++i) {
        list += (i == 0 ? "" : ", ") + entries[i].what;
    }
    if (entries.size() > MOST_NAMES) list += ", ...";
    return list;
}

std::string_view endingText(Ending ending) {
    switch (ending) {
        case Ending::InPolygon:
            return "incomplete: the file ends inside a polygon";
        case Ending::InLabel:
            return "incomplete: the file ends inside a label";
        case Ending::InEncodedLine:
            return "incomplete: the file ends inside an encoded line";
        case Ending::InBinary:
            return "incomplete: the file ends inside binary data";
        case Ending::Whole:
            break;
    }
    return {};
}

}  // namespace

std::string summary(const Survey& survey) {
    std::string text;
    const auto add = [&](std::string_view sentence) {
        if (!text.empty() && !sentence.empty()) text += "; ";
        text += sentence;
    };
    if (std::ranges::none_of(survey.pages, &PageSurvey::draws)) add("this drawing is empty");
    add(endingText(survey.report.ending()));
    const std::vector<Report::Entry> passedOver = survey.report.passedOver();
    if (!passedOver.empty()) {
        const std::string count = std::to_string(passedOver.size());
        add(count +
            (passedOver.size() == 1 ? " kind of instruction was not drawn: "
                                    : " kinds of instructions were not drawn: ") +
            listOf(passedOver));
    }
    if (survey.report.penOneDrew()) add("it selects no pen: drawn with pen 1");
    const std::vector<Report::Entry> bounds = survey.report.bounds();
    if (!bounds.empty()) add("a bound was met: " + listOf(bounds));
    return text;
}

}  // namespace plotter

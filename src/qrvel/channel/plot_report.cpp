#include "qrvel/channel/plot_report.h"

#include <QStringList>
#include <algorithm>
#include <optional>
#include <vector>

#include "qrvel/base/own_texts.h"

namespace qrvel {

namespace {

constexpr std::size_t MOST_NAMED = 5;  // of them

QString namesOf(const std::vector<plotter::Report::Entry>& entries) {
    QStringList names;
    for (const plotter::Report::Entry& entry : entries) {
        if (static_cast<std::size_t>(names.size()) == MOST_NAMED) {
            names += "...";
            break;
        }
        names += QString::fromLatin1(entry.what.data(), static_cast<qsizetype>(entry.what.size()));
    }
    return names.join(", ");
}

QString notDrawn(const std::vector<plotter::Report::Entry>& entries) {
    if (entries.size() == 1) return ownText(OwnText::NotDrawn).arg(namesOf(entries));
    return ownText(OwnText::KindsNotDrawn).arg(entries.size()).arg(namesOf(entries));
}

std::optional<OwnText> textOf(plotter::Ending ending) {
    switch (ending) {
        case plotter::Ending::InPolygon:
            return OwnText::EndsInPolygon;
        case plotter::Ending::InLabel:
            return OwnText::EndsInLabel;
        case plotter::Ending::InEncodedLine:
            return OwnText::EndsInEncodedLine;
        case plotter::Ending::InBinary:
            return OwnText::EndsInBinary;
        case plotter::Ending::Whole:
            break;
    }
    return std::nullopt;
}

}  // namespace

bool isEmptyDrawing(const plotter::Survey& survey) {
    return std::none_of(survey.pages.begin(), survey.pages.end(),
                        [](const plotter::PageSurvey& page) { return page.draws; });
}

QString reportText(const plotter::Report& report) {
    QStringList said;
    const auto passedOver = report.passedOver();
    const auto bounds = report.bounds();
    if (const auto ending = textOf(report.ending())) said += ownText(*ending);
    if (!passedOver.empty()) said += notDrawn(passedOver);
    if (report.penOneDrew()) said += ownText(OwnText::PenOneDrew);
    if (!bounds.empty()) said += ownText(OwnText::MetBound).arg(namesOf(bounds));
    return said.join("; ");
}

}  // namespace qrvel

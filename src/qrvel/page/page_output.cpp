// OUTopendevice and OUTclosedevice: a page in the place of the surface, and back.
#include <QGuiApplication>
#include <algorithm>
#include <map>
#include <vector>

#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/output/child.h"
#include "qrvel/page/page_sink.h"
#include "toolkit/out.h"

namespace qrvel {

namespace {

PageSink* sink = nullptr;

// Pages that are being drawn, by their children.
std::map<WHandle, std::unique_ptr<PrintedPage>> underWay;

// The name that was handed over, or the one that had no room there.
QByteArray nameOf(uint32_t destination, const void* name, const PrintChoice& choice) {
    if (destination == static_cast<uint32_t>(Destination::Host) || name == nullptr) return {};
    const QByteArray handed(static_cast<const char*>(name));
    return handed == CHOSEN_FILE ? choice.name() : handed;
}

// A number as one of the choices; none of them when it is too large.
template <class Choice>
Choice choiceOf(uint32_t number) {
    return number <= UINT8_MAX ? static_cast<Choice>(number) : Choice{};
}

PageGoal goalOf(uint32_t destination, uint32_t format, const void* name, const PrintChoice& choice) {
    return {.destination = choiceOf<Destination>(destination),
            .format = choiceOf<PageFormat>(format),
            .name = nameOf(destination, name, choice),
            .dpi = choice.dpi};
}

// What is to be delivered now that a page is drawn.
PrintedPages collected(std::unique_ptr<PrintedPage> page) {
    if (sink != nullptr) return sink->collect(std::move(page));
    PrintedPages alone;
    alone.push_back(std::move(page));
    return alone;
}

// Answers nothing, or what went wrong.
QString deliver(const PrintedPages& printed) {
    std::vector<const Page*> pages;
    for (const auto& page : printed) {
        pages.push_back(&page->page);
    }
    if (pages.empty()) return {};
    const PageGoal& goal = printed.front()->goal;
    const QString refusal = sink != nullptr ? sink->refuse(goal) : QString();
    if (!refusal.isEmpty()) return ownText(OwnText::CannotWrite).arg(goal.shownName(), refusal);
    return deliverPages(pages, goal);
}

bool areEmpty(const PrintedPages& printed) {
    return std::all_of(printed.begin(), printed.end(),
                       [](const auto& page) { return page->page.recording().isEmpty(); });
}

void report(const PrintedPages& printed, const QString& problem) {
    if (!problem.isEmpty()) {
        showNotice(problem);
    } else if (!printed.empty() && areEmpty(printed)) {
        showNotice(ownText(OwnText::EmptyPage).arg(printed.front()->goal.shownName()));
    }
    if (sink != nullptr) sink->printed(printed, problem.isEmpty());
}

}  // namespace

void setPageSink(PageSink* taker) {
    sink = taker;
}

}  // namespace qrvel

using namespace qrvel;

int32_t OUTopendevice(WHandle child, uint32_t destination, uint32_t format, const void* name) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr) return 0;
    const PrintChoice choice = application() != nullptr ? application()->printChoice : PrintChoice{};
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const std::size_t kept = sink != nullptr ? sink->bytesKept() : 0;
    auto& printed = underWay[child];
    printed =
        std::make_unique<PrintedPage>(layOut(choice.paper, choice.landscape), goalOf(destination, format, name, choice),
                                      mostPageBytes() - std::min(mostPageBytes(), kept));
    found->page = &printed->page;
    sendSizeOfContainer(found->container);
    return 1;
}

int32_t OUTclosedevice(WHandle child) {
    auto* found = handles().find<Child>(child, __func__);
    auto page = underWay.extract(child);
    if (found == nullptr || page.empty()) return 0;
    const PrintedPages printed = collected(std::move(page.mapped()));
    found->page = nullptr;
    const QString problem = deliver(printed);
    QGuiApplication::restoreOverrideCursor();
    sendSizeOfContainer(found->container);
    report(printed, problem);
    return problem.isEmpty() ? 1 : 0;
}

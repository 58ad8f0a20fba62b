// OUTopendevice and OUTclosedevice: a page in the place of the surface, and back.
#include <QGuiApplication>
#include <algorithm>
#include <vector>

#include "application.h"
#include "child.h"
#include "conversion.h"
#include "data_channel.h"
#include "notices.h"
#include "out.h"
#include "own_texts.h"
#include "page_delivery.h"
#include "print_setup.h"
#include "shell.h"

namespace qrvel {

namespace {

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
    if (Conversion* running = conversion()) return running->collect(std::move(page));
    PrintedPages alone;
    alone.push_back(std::move(page));
    return alone;
}

// Onto a file that the drawing comes from by a name of its own, which was not known when it began.
bool goesOntoSource(const PageGoal& goal) {
    return conversion() != nullptr && application()->filesRead.hold(goal.name.toStdString());
}

// Answers nothing, or what went wrong.
QString deliver(const PrintedPages& printed) {
    std::vector<const Page*> pages;
    for (const auto& page : printed) {
        pages.push_back(&page->page);
    }
    if (pages.empty()) return {};
    const PageGoal& goal = printed.front()->goal;
    if (goesOntoSource(goal)) return ownText(OwnText::CannotWrite).arg(goal.shownName(), ownText(OwnText::IsSource));
    return deliverPages(pages, goal);
}

bool areEmpty(const PrintedPages& printed) {
    return std::all_of(printed.begin(), printed.end(),
                       [](const auto& page) { return page->page.recording().isEmpty(); });
}

void report(const PrintedPages& printed, const QString& problem) {
    Conversion* running = conversion();
    if (!problem.isEmpty()) {
        showNotice(problem);
        if (running != nullptr) running->fail();
    } else if (!printed.empty()) {
        if (areEmpty(printed)) showNotice(ownText(OwnText::EmptyPage).arg(printed.front()->goal.shownName()));
        if (running != nullptr) running->written();
    }
    DataChannel* channel = findDataChannel();
    if (running != nullptr && channel != nullptr) channel->pictureIsOut();
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

int32_t OUTopendevice(WHandle child, uint32_t destination, uint32_t format, const void* name) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr) return 0;
    const PrintChoice choice = currentPrintChoice();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    const std::size_t kept = conversion() != nullptr ? conversion()->bytesKept() : 0;
    found->printed =
        std::make_unique<PrintedPage>(layOut(choice.paper, choice.landscape), goalOf(destination, format, name, choice),
                                      mostPageBytes() - std::min(mostPageBytes(), kept));
    found->page = &found->printed->page;
    sendSizeOfContainer(found->container);
    return 1;
}

int32_t OUTclosedevice(WHandle child) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || !found->printed) return 0;
    const PrintedPages printed = collected(std::move(found->printed));
    found->page = nullptr;
    const QString problem = deliver(printed);
    QGuiApplication::restoreOverrideCursor();
    sendSizeOfContainer(found->container);
    report(printed, problem);
    return problem.isEmpty() ? 1 : 0;
}

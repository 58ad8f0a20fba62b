// OUTopendevice and OUTclosedevice: a page in the place of the surface, and back.
#include <QGuiApplication>

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

void report(const PrintedPage& printed, const QString& problem) {
    if (!problem.isEmpty()) {
        showNotice(problem);
    } else if (printed.page.recording().isEmpty()) {
        showNotice(ownText(OwnText::EmptyPage).arg(printed.goal.shownName()));
    }
    if (Conversion* running = conversion()) {
        if (problem.isEmpty()) {
            running->written();
        } else {
            running->fail();
        }
        if (DataChannel* channel = findDataChannel()) channel->pictureIsOut();
    }
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

int32_t OUTopendevice(WHandle child, uint32_t destination, uint32_t format, const void* name) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr) return 0;
    const PrintChoice choice = currentPrintChoice();
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    found->printed = std::make_unique<PrintedPage>(layOut(choice.paper, choice.landscape),
                                                   goalOf(destination, format, name, choice));
    found->page = &found->printed->page;
    sendSizeOfContainer(found->container);
    return 1;
}

int32_t OUTclosedevice(WHandle child) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || !found->printed) return 0;
    const std::unique_ptr<PrintedPage> printed = std::move(found->printed);
    found->page = nullptr;
    const QString problem = deliverPage(printed->page, printed->goal);
    QGuiApplication::restoreOverrideCursor();
    sendSizeOfContainer(found->container);
    report(*printed, problem);
    return problem.isEmpty() ? 1 : 0;
}

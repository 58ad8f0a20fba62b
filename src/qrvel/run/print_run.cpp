#include "qrvel/run/print_run.h"

#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/output_names.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/output/child.h"
#include "toolkit/pssetup.h"

namespace qrvel {

PrintRun::PrintRun(const Options& options) : pattern_(options.printTo), sources_(options.sources.size()) {
    choice_.format = formatOf(pattern_);
    choice_.paper = options.paper;
    choice_.landscape = options.landscape;
    choice_.dpi = options.dpi;
    application()->printChoice = choice_;
    setPageSink(this);
}

PrintRun::~PrintRun() {
    setPageSink(nullptr);
}

std::size_t PrintRun::bytesKept() const {
    std::size_t bytes = 0;
    for (const auto& page : pages_) {
        bytes += page->page.recording().bytes();
    }
    return bytes;
}

void PrintRun::reading(const QByteArray& source) {
    ++read_;
    if (sources_ > 1) {
        showProgressLine(QString("%1/%2 %3").arg(read_).arg(sources_).arg(QString::fromLocal8Bit(source)));
    }
}

bool PrintRun::keepsPagesTogether() const {
    return choice_.format == PageFormat::Pdf && !namesPages(pattern_);
}

bool PrintRun::begun(const QByteArray& source, const SourcePage& page) {
    page_ = page;
    if (page.first) {
        pages_.clear();
        incomplete_ = false;
    }
    const bool oneOfSeveral = !keepsPagesTogether() && !(page.first && page.last);
    choice_.fileName = outputName(pattern_, source, page.number, oneOfSeveral);
    application()->printChoice = choice_;
    const std::string name = choice_.fileName.toStdString();
    if (written_.hold(name)) {
        sayWhy(OwnText::WrittenAlready);
    } else if (application()->filesRead.hold(name)) {
        sayWhy(OwnText::IsSource);
    } else {
        return true;
    }
    return false;
}

PrintedPages PrintRun::collect(std::unique_ptr<PrintedPage> page) {
    pages_.push_back(std::move(page));
    const bool wait = keepsPagesTogether() && (!page_.last || incomplete_);
    return wait ? PrintedPages() : std::exchange(pages_, {});
}

bool PrintRun::delivered(bool whole) {
    const auto* child = handles().findFirst<Child>([](const Child&) { return true; });
    if (child == nullptr || !whole) return false;  // half a drawing goes into no file
    application()->messages.postAction(objectOfContainer(child->container), W_ACTION_PRINT_SETUP, PSSETUP_PRINT);
    return true;
}

// The viewer has got the notification, and found nothing to print.
bool PrintRun::isLost() {
    pages_.clear();
    incomplete_ = true;
    sayWhy(OwnText::NoPicture);
    return true;
}

// Onto a file that the drawing comes from by a name of its own, which was not known when it began.
QString PrintRun::refuse(const PageGoal& goal) {
    return application()->filesRead.hold(goal.name.toStdString()) ? ownText(OwnText::IsSource) : QString();
}

void PrintRun::printed(const PrintedPages& pages, bool well) {
    if (!well) {
        failed();
    } else if (!pages.empty()) {
        written_.add(choice_.fileName.toStdString());  // by what it is, not by its name: it may have several
    }
    if (DataChannel* channel = findDataChannel()) channel->pictureIsOut();
}

void PrintRun::sayWhy(OwnText reason) {
    showNotice(ownText(OwnText::CannotWrite).arg(QString::fromLocal8Bit(choice_.fileName), ownText(reason)));
    failed();
}

void PrintRun::end() {
    ended_ = true;
    showProgressLine({});
    quitApplication();
}

}  // namespace qrvel

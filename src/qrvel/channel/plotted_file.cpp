#include "qrvel/channel/plotted_file.h"

#include <QCoreApplication>
#include <QEvent>
#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

#include "qrvel/channel/plot_recognition.h"
#include "qrvel/channel/plot_report.h"
#include "system/memory.h"

namespace qrvel {

namespace {

constexpr auto WORK_IS_DONE = QEvent::User;  // nobody else posts to it

// Of a page's text: the viewer makes three times as much of it, and a page to print comes to it.
qint64 mostTextBytes() {
    constexpr uint64_t PART_OF_MEMORY = 12;
    return static_cast<qint64>(kelsystem::memoryInAll() / PART_OF_MEMORY);
}

}  // namespace

bool PlottedFile::Home::event(QEvent* event) {
    if (event->type() != WORK_IS_DONE) return QObject::event(event);
    const Done hears = done;  // it may begin the next work
    hears();
    return true;
}

void PlottedFile::look(bool asIs, Done done) {
    run([this, asIs] { doLook(asIs); }, std::move(done));
}

void PlottedFile::writePage(std::size_t page, Done done) {
    run([this, page] { doWritePage(page); }, std::move(done));
}

std::unique_ptr<Spool> PlottedFile::takeFile() {
    writer_.reset();
    return std::move(file_);
}

void PlottedFile::breakOff() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
    QCoreApplication::removePostedEvents(&home_);  // it may have come to its end just now
}

// Where there is no room for another thread, the window has to wait.
void PlottedFile::run(std::function<void()> work, Done done) {
    breakOff();
    stop_ = false;
    bytesDone_ = 0;
    failure_.clear();
    home_.done = std::move(done);
    const auto job = [this, work = std::move(work)] {
        try {
            work();
        } catch (const std::bad_alloc&) {
            failure_ = "not enough memory";
        }
        if (!stop_) QCoreApplication::postEvent(&home_, new QEvent(WORK_IS_DONE));
    };
    try {
        thread_ = std::thread(job);
    } catch (const std::system_error&) {
        job();
    }
}

plotter::Watch PlottedFile::watch() {
    return [this](std::size_t bytes) {
        bytesDone_ = std::min(static_cast<qint64>(bytes), size());
        return !stop_;
    };
}

void PlottedFile::doLook(bool asIs) {
    const std::string_view bytes = file_->bytes();
    writer_.reset();
    found_ = {};
    found_.isPlain = asIs || plotter::isPlain(bytes);
    found_.isPlot = holdsDrawing(bytes);
    if (!found_.isPlain || !found_.isPlot) found_.foreignKind = plotter::foreignKind(bytes);
    if (found_.isPlain || !found_.foreignKind.empty()) return;
    found_.survey = plotter::survey(bytes, watch());
    // Labels, rasters and the like draw, too, but bytes of a program do so by chance.
    found_.isPlot = found_.isPlot || (!isEmptyDrawing(found_.survey) && !isBinary(bytes));
}

void PlottedFile::doWritePage(std::size_t page) {
    auto written = std::make_unique<Spool>();
    qint64 size = 0;
    const auto append = [&](std::string_view piece) {
        size += static_cast<qint64>(piece.size());
        return !stop_ && size <= mostTextBytes() && written->append(piece.data(), static_cast<qint64>(piece.size()));
    };
    if (!writer_) writer_.emplace(file_->bytes(), found_.survey);
    const bool whole = writer_->write(page, append, watch());
    if (stop_) return;
    if (whole && written->finish()) {
        page_ = std::move(written);
    } else if (size > mostTextBytes()) {
        failure_ = "the page takes more than the memory";
    } else {
        failure_ = written->failure().isEmpty() ? QString("there is no such page") : written->failure();
    }
}

}  // namespace qrvel

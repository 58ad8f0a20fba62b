#include "qrvel/channel/file_source.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/notices.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/base/toolkit_trace.h"
#include "qrvel/channel/data_channel.h"
#include "qrvel/channel/plot_report.h"
#include "system/shown_text.h"

namespace qrvel {

namespace {

constexpr qint64 PASSES = 3;  // reading, measuring, writing

}  // namespace

FileSource::FileSource(DataChannel& channel, QByteArray name, FileManner manner, bool mayBeEmpty)
    : channel_(channel), name_(std::move(name)), manner_(manner), mayBeEmpty_(mayBeEmpty) {}

// Standard input's is the one that the process was started in.
std::optional<QByteArray> FileSource::folder() const {
    const qsizetype slash = name_.lastIndexOf('/');
    return slash < 0 ? "." : name_.first(slash + 1);
}

qint64 FileSource::bytesDone() const {
    if (reader_) return reader_->bytesRead();
    return file_ ? passesDone_ * file_->size() + file_->bytesDone() : 0;
}

qint64 FileSource::bytesInAll() const {
    if (reader_) return passes_ * reader_->bytesInAll();
    return file_ ? passes_ * file_->size() : 0;
}

// ---- from the file to its pages -------------------------------------------------------------------------------------

void FileSource::takeTurn() {
    if (state_ == State::InLine) {
        passes_ = 1;
        passesDone_ = 0;
        beginPage();
        return;
    }
    application()->run->reading(name_);
    passes_ = manner_.asIs ? 1 : PASSES;
    reader_ = std::make_unique<SourceReader>(name_, [this] { isRead(); });
}

void FileSource::isRead() {
    const std::unique_ptr<SourceReader> read = std::move(reader_);
    if (!read->failure().isEmpty()) {
        fail(ownText(OwnText::CannotRead).arg(shownName(), read->failure()));
        return;
    }
    file_ = std::make_unique<PlottedFile>(read->takeSpool());
    passesDone_ = 1;
    file_->look(manner_.asIs, [this] { isLookedAt(); });
}

void FileSource::isLookedAt() {
    const FileLook& look = file_->found();
    if (!file_->failure().isEmpty()) {
        fail(ownText(OwnText::CannotRead).arg(shownName(), file_->failure()));
        return;
    }
    if (const QString why = whyNoPlot(); !why.isEmpty()) {
        if (isBetterLeft()) {
            fail(why);
            return;
        }
        showNotice(why);
        single_ = std::make_unique<Spool>();  // an empty picture instead of what its bytes would draw by chance
        manner_.page = 0;
    } else if (look.isPlain) {
        single_ = file_->takeFile();
    } else {
        pages_ = static_cast<int>(look.survey.pages.size());
        sayReport();
    }
    passesDone_ = PASSES - 1;
    if (mayBeEmpty_ && single_ && single_->bytes().empty()) {
        channel_.leave(*this);
    } else if (findPage()) {
        beginPage();
    }
}

// A drawing that is shown is better than nothing; nor does anybody want a picture of a file that is known to be
// something else.
bool FileSource::isBetterLeft() const {
    if (application()->run->prints()) return false;
    return isUnattended() ? !file_->found().foreignKind.empty() : channel_.hasDelivered();
}

// Empty when it is one.
QString FileSource::whyNoPlot() const {
    const FileLook& look = file_->found();
    const QString kind = QString::fromStdString(look.foreignKind);
    if (!kind.isEmpty()) return ownText(OwnText::OtherKind).arg(shownName(), kind);
    return look.isPlot || name_ == STANDARD_INPUT ? QString() : ownText(OwnText::NoDrawing).arg(shownName());
}

// That a page is white is said when it is printed.
void FileSource::sayReport() {
    const plotter::Survey& survey = file_->found().survey;
    QStringList said;
    if (isEmptyDrawing(survey) && !application()->run->prints()) said += ownText(OwnText::EmptyDrawing);
    if (const QString text = reportText(survey.report); !text.isEmpty()) said += text;
    remarks_ = said.join("; ");
    if (!remarks_.isEmpty()) sayLine(shownName() + ": " + remarks_);
    traceLine("%s: pages: %d. %s\n", kelsystem::shownText(name_.toStdString()).c_str(), pages_,
              plotter::summary(survey).c_str());
}

// False when there is no such page, and nobody who would rather see another.
bool FileSource::findPage() {
    wanted_ = std::clamp(manner_.page, 1, pages_);
    if (manner_.page <= pages_ || manner_.again) return true;
    const QString notice =
        ownText(OwnText::NoSuchPage).arg(shownName(), QString::number(manner_.page), QString::number(pages_));
    if (isUnattended()) {
        fail(notice);
    } else {
        showNotice(notice);
    }
    return !isUnattended();
}

void FileSource::beginPage() {
    page_ = wanted_;
    while (!application()->run->begun(name_, {.number = page_, .first = isFirstToPrint(), .last = isLastToPrint()})) {
        if (isLastToPrint() || application()->run->keepsPagesTogether()) {
            channel_.leave(*this);
            return;
        }
        wanted_ = ++page_;
    }
    if (single_) {
        handOver(std::move(single_));
        return;
    }
    state_ = State::Writing;
    file_->writePage(static_cast<std::size_t>(page_) - 1, [this] { isWritten(); });
}

void FileSource::isWritten() {
    std::unique_ptr<Spool> written = file_->takePage();
    if (written) {
        handOver(std::move(written));
    } else {
        fail(ownText(OwnText::CannotRead).arg(shownName(), file_->failure()));
    }
}

void FileSource::handOver(std::unique_ptr<Spool> spool) {
    state_ = State::Handed;
    channel_.transmit(std::make_unique<Transmission>(std::move(spool), Transmission::Form::Plain));
}

void FileSource::fail(const QString& notice) {
    showNotice(notice);
    application()->run->failed();
    stayOrLeave();
}

// ---- what becomes of them -------------------------------------------------------------------------------------------

void FileSource::shown() {
    showRemarks();
    const bool prints = application()->run->prints();
    if (prints && !isLastToPrint()) {
        askForPage(page_ + 1);
    } else if (prints || pages_ == 1) {
        channel_.leave(*this);
    } else {
        state_ = State::Shown;
        if (wanted_ != page_) askForPage(wanted_);
    }
}

void FileSource::refused(const QString& reason) {
    sayLine(shownName() + ": " + reason);
    application()->run->failed();
    stayOrLeave();
}

void FileSource::giveUp() {
    reader_.reset();
    if (file_) file_->breakOff();
    stayOrLeave();
}

void FileSource::replaced() {
    channel_.leave(*this);
}

// Where one of its pages is shown, the user can go on turning them.
void FileSource::stayOrLeave() {
    if (application()->run->prints() || pages_ == 1 || !channel_.isPictureOf(*this)) {
        channel_.leave(*this);
        return;
    }
    state_ = State::Shown;
    wanted_ = page_ = channel_.picturePage().number;
    channel_.pass(*this);
}

void FileSource::turnPage(int by) {
    const int page = std::clamp(wanted_ + by, 1, pages_);
    if (page == std::exchange(wanted_, page)) return;
    if (state_ == State::Shown) askForPage(page);
    if (state_ == State::Writing) beginPage();
}

void FileSource::askForPage(int page) {
    wanted_ = page;
    state_ = State::InLine;
    channel_.goOn(*this);
}

void FileSource::showRemarks() {
    if (std::exchange(told_, true)) return;
    QStringList told;
    if (pages_ > 1 && !manner_.again) told += ownText(OwnText::FirstPage).arg(page_).arg(pages_);
    if (!remarks_.isEmpty()) told += remarks_;
    if (!told.isEmpty()) application()->run->remark(told.join("; "));
}

}  // namespace qrvel

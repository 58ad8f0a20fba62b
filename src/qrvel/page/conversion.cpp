#include "conversion.h"

#include <utility>

#include "application.h"
#include "notices.h"
#include "own_texts.h"
#include "page_delivery.h"
#include "page_format.h"

namespace qrvel {

namespace {

QByteArray bareName(const QByteArray& source) {
    if (source == STANDARD_INPUT) return "stdin";
    const QByteArray name = source.mid(source.lastIndexOf('/') + 1);
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.first(dot) : name;
}

// What stands for something else behind a percent sign.
constexpr char NAME = 'n';
constexpr char PAGE = 'p';
constexpr char PERCENT = '%';

// Goes through a pattern: calls text(c) for each character that stands for itself, and mark(c) for %n and %p.
template <class Text, class Mark>
void readPattern(const QByteArray& pattern, Text text, Mark mark) {
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char next = pattern[i] == PERCENT && i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (next == NAME || next == PAGE) mark(next);
        if (next == PERCENT) text(next);
        if (next == NAME || next == PAGE || next == PERCENT) {
            ++i;
        } else {
            text(pattern[i]);
        }
    }
}

bool holds(const QByteArray& pattern, char wanted) {
    bool found = false;
    readPattern(
        pattern, [](char) {}, [&](char mark) { found = found || mark == wanted; });
    return found;
}

}  // namespace

QByteArray outputName(const QByteArray& pattern, const QByteArray& source, int page, bool oneOfSeveral) {
    const QByteArray number = QByteArray::number(page);
    QByteArray output;
    readPattern(
        pattern, [&](char c) { output += c; }, [&](char mark) { output += mark == NAME ? bareName(source) : number; });
    if (oneOfSeveral && !namesPages(pattern)) output.insert(output.lastIndexOf('.'), '-' + number);
    return output;
}

bool namesEach(const QByteArray& pattern) {
    return holds(pattern, NAME);
}

bool namesPages(const QByteArray& pattern) {
    return holds(pattern, PAGE);
}

Conversion::Conversion(const Options& options) : pattern_(options.printTo), sources_(options.sources.size()) {
    choice_.format = formatOf(pattern_);
    choice_.paper = options.paper;
    choice_.landscape = options.landscape;
    choice_.dpi = options.dpi;
}

Conversion::~Conversion() = default;

std::size_t Conversion::bytesKept() const {
    std::size_t bytes = 0;
    for (const auto& page : pages_) {
        bytes += page->page.recording().bytes();
    }
    return bytes;
}

// By what it is, not by its name: it may have several.
void Conversion::written() {
    written_.add(choice_.fileName.toStdString());
}

void Conversion::reading(const QByteArray& source) {
    ++read_;
    if (sources_ > 1) {
        showProgressLine(QString("%1/%2 %3").arg(read_).arg(sources_).arg(QString::fromLocal8Bit(source)));
    }
}

bool Conversion::keepsPagesTogether() const {
    return choice_.format == PageFormat::Pdf && !namesPages(pattern_);
}

bool Conversion::begin(const QByteArray& source, const SourcePage& page) {
    page_ = page;
    if (page.first) {
        pages_.clear();
        incomplete_ = false;
    }
    const bool oneOfSeveral = !keepsPagesTogether() && !(page.first && page.last);
    choice_.fileName = outputName(pattern_, source, page.number, oneOfSeveral);
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

PrintedPages Conversion::collect(std::unique_ptr<PrintedPage> page) {
    pages_.push_back(std::move(page));
    const bool wait = keepsPagesTogether() && (!page_.last || incomplete_);
    return wait ? PrintedPages() : std::exchange(pages_, {});
}

void Conversion::notPrinted() {
    pages_.clear();
    incomplete_ = true;
    sayWhy(OwnText::NoPicture);
}

void Conversion::sayWhy(OwnText reason) {
    showNotice(ownText(OwnText::CannotWrite).arg(QString::fromLocal8Bit(choice_.fileName), ownText(reason)));
    fail();
}

void Conversion::end() {
    ended_ = true;
    showProgressLine({});
    quitApplication();
}

Conversion* conversion() {
    return application() != nullptr ? application()->conversion.get() : nullptr;
}

}  // namespace qrvel

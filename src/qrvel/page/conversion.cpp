#include "conversion.h"

#include <sys/stat.h>

#include "application.h"
#include "notices.h"
#include "own_texts.h"
#include "page_format.h"
#include "source_reader.h"

namespace qrvel {

namespace {

QByteArray bareName(const QByteArray& source) {
    if (source == STANDARD_INPUT) return "stdin";
    const QByteArray name = source.mid(source.lastIndexOf('/') + 1);
    const qsizetype dot = name.lastIndexOf('.');
    return dot > 0 ? name.first(dot) : name;
}

// Goes through a pattern: calls text(c) for each character that stands for itself, and name() for each %n.
template <class Text, class Name>
void readPattern(const QByteArray& pattern, Text text, Name name) {
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const char next = pattern[i] == '%' && i + 1 < pattern.size() ? pattern[i + 1] : '\0';
        if (next == 'n') name();
        if (next == '%') text(next);
        if (next == 'n' || next == '%') {
            ++i;
        } else {
            text(pattern[i]);
        }
    }
}

}  // namespace

QByteArray outputName(const QByteArray& pattern, const QByteArray& source) {
    QByteArray output;
    readPattern(
        pattern, [&](char c) { output += c; }, [&] { output += bareName(source); });
    return output;
}

bool namesEach(const QByteArray& pattern) {
    bool found = false;
    readPattern(
        pattern, [](char) {}, [&] { found = true; });
    return found;
}

Conversion::Conversion(const Options& options) : pattern_(options.printTo), sources_(options.sources.size()) {
    choice_.format = formatOf(pattern_);
    choice_.paper = options.paper;
    choice_.landscape = options.landscape;
    choice_.dpi = options.dpi;
    for (const QByteArray& source : options.sources) {
        if (const auto id = idOf(source)) sourceIds_.insert(*id);
    }
}

std::optional<Conversion::FileId> Conversion::idOf(const QByteArray& file) {
    struct stat about = {};
    if (stat(file.constData(), &about) != 0) return std::nullopt;
    return FileId(about.st_dev, about.st_ino);
}

bool Conversion::isSource(const QByteArray& file) const {
    const auto id = idOf(file);
    return id && sourceIds_.contains(*id);
}

void Conversion::reading(const QByteArray& source) {
    ++read_;
    if (sources_ > 1) {
        showProgressLine(QString("%1/%2 %3").arg(read_).arg(sources_).arg(QString::fromLocal8Bit(source)));
    }
}

bool Conversion::begin(const QByteArray& source) {
    choice_.fileName = outputName(pattern_, source);
    if (written_.contains(choice_.fileName)) {
        sayWhy(OwnText::WrittenAlready);
    } else if (isSource(choice_.fileName)) {
        sayWhy(OwnText::IsSource);
    } else {
        return true;
    }
    return false;
}

void Conversion::notPrinted() {
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

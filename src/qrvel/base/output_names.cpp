#include "qrvel/base/output_names.h"

#include "qrvel/base/options.h"

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

}  // namespace qrvel

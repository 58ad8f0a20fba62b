// A configuration or language file, and its texts in a buffer of the viewer's. Steering bytes: the buffer's size.
#include <vector>

#include "fuzz_target.h"
#include "qrvel/base/keyed_texts.h"
#include "qrvel/base/text_buffer.h"

using namespace qrvel;

namespace {

void checkTexts(const KeyedTexts& texts, const QByteArray& file) {
    for (auto text = texts.cbegin(); text != texts.cend(); ++text) {
        require(!text.key().isEmpty() && !text.key().contains('='), "a key is a word");
        require(file.contains('=' + text.value()), "a text is one of the file's");
        require(!text.value().contains('\n') && !text.value().endsWith('\r'), "a text is one line");
    }
}

void checkCopies(const KeyedTexts& texts, int32_t size) {
    std::vector<char> buffer(static_cast<size_t>(size));
    TextBuffer copies(buffer.data(), size);
    for (const QByteArray& text : texts) {
        const char* copy = copies.add(text);
        require(copy == nullptr || QByteArray(copy, text.size() + 1) == text + '\0', "a copy is whole");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzInput input(data, size);
    const QByteArray file(input.text().data(), static_cast<qsizetype>(input.text().size()));
    const KeyedTexts texts = parseKeyedTexts(file);
    checkTexts(texts, file);
    checkCopies(texts, input.byte(128));
    return 0;
}

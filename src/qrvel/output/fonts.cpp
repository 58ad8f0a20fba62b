#include "qrvel/output/fonts.h"

#include <array>
#include <charconv>
#include <string_view>

#include "qrvel/base/handles.h"
#include "qrvel/base/objects.h"
#include "qrvel/output/label_face.h"
#include "toolkit/wf.h"

namespace qrvel {

namespace {

constexpr int32_t LARGEST_SIZE = 99;  // pixels; a description gives the size two places

struct Font : Object {
    static constexpr Kind KIND = Kind::Font;
    explicit Font(int32_t pixels) : size(pixels) {}

    int32_t size;
};

struct Fonts {
    std::vector<WHandle> registered;
    std::array<WHandle, LARGEST_SIZE + 1> bySize{};
};

Fonts& fonts() {
    static Fonts* const state = new Fonts;
    return *state;
}

// The size in a description of the label face, "family,A,size"; 0 for any other text. It is asked for each size of each
// family of the system before every drawing, so the family is compared first.
int32_t sizeIn(std::string_view description) {
    if (!description.starts_with(LABEL_FAMILY)) return 0;
    description.remove_prefix(LABEL_FAMILY.size());
    constexpr std::string_view KIND_A = ",A,";
    if (!description.starts_with(KIND_A)) return 0;
    description.remove_prefix(KIND_A.size());
    if (description.starts_with(' ')) description.remove_prefix(1);
    int32_t size = 0;
    const char* end = description.data() + description.size();
    const auto read = std::from_chars(description.data(), end, size);
    return read.ptr == end && size > 0 && size <= LARGEST_SIZE ? size : 0;
}

}  // namespace

const std::vector<WHandle>& registeredFonts() {
    return fonts().registered;
}

void forgetFonts() {
    for (const WHandle font : fonts().registered) {
        handles().destroy<Font>(font, __func__);
    }
    fonts() = {};
}

}  // namespace qrvel

using namespace qrvel;

WHandle WFcreate(WHandle owner, const char* description) {
    if (handles().find<MainObject>(owner, __func__) == nullptr || description == nullptr) return 0;
    const int32_t size = sizeIn(description);
    if (size == 0 || !hasLabelFace()) return 0;
    WHandle& known = fonts().bySize[static_cast<std::size_t>(size)];
    if (known != 0) return known;
    const auto* made = handles().make<Font>(size);
    if (made == nullptr) return 0;
    known = made->handle;
    fonts().registered.push_back(known);
    return known;
}

int32_t WFqueryfontval(WHandle font, uint32_t value) {
    constexpr uint32_t SIZE = 0;
    if (font == 0) return value == WF_NUMBER_OF_FONTS ? static_cast<int32_t>(fonts().registered.size()) : 0;
    const auto* found = handles().find<Font>(font, __func__);
    return found != nullptr && value == SIZE ? found->size : 0;
}

// Text from others on its way to a person.
#pragma once

#include <string>
#include <string_view>

namespace kelsystem {

// The text, UTF-8, with a question mark for every control character and every byte that is no part of a character: a
// name or an answer must not command the terminal, nor look like a line of ours.
std::string shownText(std::string_view text);

}  // namespace kelsystem

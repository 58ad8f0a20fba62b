#include "plotter/character_sets.h"

#include <array>

#include "plotter/glyph_tables.h"

namespace plotter {

namespace {

using namespace std::string_view_literals;

// clang-format off

// ---- the upper halves, from 0xA0 or 0x80 to 0xFF; '\0': nothing ----
constexpr std::u32string_view ROMAN_8 =
    U"\u00A0ÀÂÈÊËÎÏ´`ˆ¨˜ÙÛ₤¯Ýý°ÇçÑñ¡¿¤£¥§ƒ¢"
    U"âêôûáéóúàèòùäëöüÅîØÆåíøæÄìÖÜÉïßÔ"
    U"ÁÃãÐðÍÌÓÒÕõŠšÚŸÿÞþ·µ¶¾—¼½ªº«■»±\0"sv;
constexpr std::u32string_view LATIN_2 =
    U"\u00A0Ą˘Ł¤ĽŚ§¨ŠŞŤŹ\u00ADŽŻ°ą˛ł´ľśˇ¸šşťź˝žż"
    U"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
    U"ŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙"sv;
constexpr std::u32string_view CYRILLIC_ISO =
    U"\u00A0ЁЂЃЄЅІЇЈЉЊЋЌ\u00ADЎЏАБВГДЕЖЗИЙКЛМНОП"
    U"РСТУФХЦЧШЩЪЫЬЭЮЯабвгдежзийклмноп"
    U"рстуфхцчшщъыьэюя№ёђѓєѕіїјљњћќ§ўџ"sv;
constexpr std::u32string_view GREEK_ISO =
    U"\u00A0‘’£€₯¦§¨©ͺ«¬\u00AD\0―°±²³΄΅Ά·ΈΉΊ»Ό½ΎΏ"
    U"ΐΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡ\0ΣΤΥΦΧΨΩΪΫάέήί"
    U"ΰαβγδεζηθικλμνξοπρςστυφχψωϊϋόύώ\0"sv;
constexpr std::u32string_view LATIN_5 =
    U"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
    U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞß"
    U"àáâãäåæçèéêëìíîïğñòóôõö÷øùúûüışÿ"sv;
constexpr std::u32string_view LATIN_9 =
    U"\u00A0¡¢£€¥Š§š©ª«¬\u00AD®¯°±²³Žµ¶·ž¹º»ŒœŸ¿"
    U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    U"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"sv;
constexpr std::u32string_view PC_8 =
    U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜ¢£¥₧ƒ"
    U"áíóúñÑªº¿⌐¬½¼¡«»░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    U"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    U"αßΓπΣσµτΦΘΩδ∞φε∩≡±≥≤⌠⌡÷≈°∙·√ⁿ²■\u00A0"sv;
constexpr std::u32string_view PC_850 =
    U"ÇüéâäàåçêëèïîìÄÅÉæÆôöòûùÿÖÜø£Ø×ƒ"
    U"áíóúñÑªº¿®¬½¼¡«»░▒▓│┤ÁÂÀ©╣║╗╝¢¥┐"
    U"└┴┬├─┼ãÃ╚╔╩╦╠═╬¤ðÐÊËÈıÍÎÏ┘┌█▄¦Ì▀"
    U"ÓßÔÒõÕµþÞÚÛÙýÝ¯´\u00AD±‗¾¶§÷¸°¨·¹³²■\u00A0"sv;
constexpr std::u32string_view PC_852 =
    U"ÇüéâäůćçłëŐőîŹÄĆÉĹĺôöĽľŚśÖÜŤťŁ×č"
    U"áíóúĄąŽžĘę¬źČş«»░▒▓│┤ÁÂĚŞ╣║╗╝Żż┐"
    U"└┴┬├─┼Ăă╚╔╩╦╠═╬¤đĐĎËďŇÍÎě┘┌█▄ŢŮ▀"
    U"ÓßÔŃńňŠšŔÚŕŰýÝţ´\u00AD˝˛ˇ˘§÷¸°¨˙űŘř■\u00A0"sv;
constexpr std::u32string_view PC_866 =
    U"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
    U"абвгдежзийклмноп░▒▓│┤╡╢╖╕╣║╗╝╜╛┐"
    U"└┴┬├─┼╞╟╚╔╩╦╠═╬╧╨╤╥╙╘╒╓╫╪┘┌█▄▌▐▀"
    U"рстуфхцчшщъыьэюяЁёЄєЇїЎў°∙·√№¤■\u00A0"sv;
constexpr std::u32string_view WINDOWS_1250 =
    U"€\0‚\0„…†‡\0‰Š‹ŚŤŽŹ\0‘’“”•–—\0™š›śťžź"
    U"\u00A0ˇ˘Ł¤Ą¦§¨©Ş«¬\u00AD®Ż°±˛ł´µ¶·¸ąş»Ľ˝ľż"
    U"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
    U"ŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙"sv;
constexpr std::u32string_view WINDOWS_1251 =
    U"ЂЃ‚ѓ„…†‡€‰Љ‹ЊЌЋЏђ‘’“”•–—\0™љ›њќћџ"
    U"\u00A0ЎўЈ¤Ґ¦§Ё©Є«¬\u00AD®Ї°±Ііґµ¶·ё№є»јЅѕї"
    U"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
    U"абвгдежзийклмнопрстуфхцчшщъыьэюя"sv;
constexpr std::u32string_view WINDOWS_1252 =
    U"€\0‚ƒ„…†‡ˆ‰Š‹Œ\0Ž\0\0‘’“”•–—˜™š›œ\0žŸ"
    U"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
    U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
    U"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"sv;
constexpr std::u32string_view WINDOWS_1254 =
    U"€\0‚ƒ„…†‡ˆ‰Š‹Œ\0\0\0\0‘’“”•–—˜™š›œ\0\0Ÿ"
    U"\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
    U"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞß"
    U"àáâãäåæçèéêëìíîïğñòóôõö÷øùúûüışÿ"sv;
constexpr std::u32string_view MAC_ROMAN =
    U"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
    U"†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
    U"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
    U"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\0ÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ"sv;

// Adobe's Symbol, which is HP's 19M; from 0x20 and from 0xA0.
constexpr std::u32string_view SYMBOL_LOW =
    U" !∀#∃%&∋()∗+,−./0123456789:;<=>?≅ΑΒΧΔΕΦΓΗΙϑΚΛΜΝΟΠΘΡΣΤΥςΩΞΨΖ[∴]⊥_‾αβχδεφγηιϕκλμνοπθρστυϖωξψζ{|}∼"sv;
constexpr std::u32string_view SYMBOL_HIGH =
    U"€ϒ′≤⁄∞ƒ♣♦♥♠↔←↑→↓°±″≥×∝∂•÷≠≡≈…⏐⎯↵"
    U"\0\0\0\0⊗⊕∅∩∪⊃\0⊄⊂\0∈∉∠∇®©™∏√⋅¬∧∨⇔⇐⇑⇒⇓"
    U"◊⟨®©™∑\0\0\0\0\0\0\0\0\0\0\0⟩∫⌠\0⌡\0\0\0\0\0\0\0\0\0\0"sv;

// ---- sets of 7 bits: a character of ASCII, and what stands in its place, in turn ----
struct Variant {
    int32_t set;   // of HP-GL
    std::u32string_view changes;
};
// A mark of sets 2 to 4 goes over the character before it; those from U+F300 over a capital.
constexpr Variant VARIANTS[] = {
    { 1, U"\\√^↑{π|⊢}→"sv},
    { 2, U"#£'\u0301\\ç^\u0302`\u0300{\uF308|°}\u0308~\u0301"sv},
    { 3, U"#£[Ø\\Æ]ø^æ{\uF308|\uF30A}\u030A"sv},
    { 4, U"#¿'\u0301\\¡^\u0302{\uF303|˜}\u0303~˜"sv},
    { 6, U"\\¥~‾"sv},
    { 9, U"$¤~‾"sv},
    {30, U"$¤[Ä\\Ö]Å{ä|ö}å~‾"sv},
    {31, U"$¤@É[Ä\\Ö]Å^Ü`é{ä|ö}å~ü"sv},
    {32, U"[Æ\\Ø]Å{æ|ø}å~‾"sv},
    {33, U"@§[Ä\\Ö]Ü{ä|ö}ü~ß"sv},
    {34, U"#£@à[°\\ç]§{é|ù}è~¨"sv},
    {35, U"#£~‾"sv},
    {36, U"#£@§[°\\ç]é`ù{à|ò}è~ì"sv},
    {37, U"#£@§[¡\\Ñ]¿{°|ñ}ç"sv},
    {38, U"@§[Ã\\Ç]Õ{ã|ç}õ~°"sv},
    {39, U"#§[Æ\\Ø]Å{æ|ø}å~|"sv},
};

// ---- HP-GL/2's symbol sets: 32 times the number and the letter's place in the alphabet ----
struct Page {
    int32_t number;
    uint8_t first;   // code
    std::u32string_view characters;
};
constexpr Page PAGES[] = {
    { 78, 0xA0, LATIN_2},        // 2N
    {334, 0xA0, CYRILLIC_ISO},   // 10N
    {398, 0xA0, GREEK_ISO},      // 12N
    {174, 0xA0, LATIN_5},        // 5N
    {302, 0xA0, LATIN_9},        // 9N
    {341, 0x80, PC_8},           // 10U
    {373, 0x80, PC_8},           // 11U, Danish and Norwegian, which differs in four
    {405, 0x80, PC_850},         // 12U
    {565, 0x80, PC_852},         // 17U
    {114, 0x80, PC_866},         // 3R
    {293, 0x80, WINDOWS_1250},   // 9E
    {306, 0x80, WINDOWS_1251},   // 9R
    {629, 0x80, WINDOWS_1252},   // 19U
    {309, 0x80, WINDOWS_1252},   // 9U
    {180, 0x80, WINDOWS_1254},   // 5T
    {394, 0x80, MAC_ROMAN},      // 12J
    {621, 0x20, SYMBOL_LOW},     // 19M
    {621, 0xA0, SYMBOL_HIGH},
};

// Symbol sets of 7 bits that HP-GL has under a number of its own.
struct Twin {
    int32_t number;
    int32_t set;
};
constexpr Twin TWINS[] = {
    {  4, 32}, { 36, 39},   // 0D 1D
    { 37, 35},              // 1E
    {  6, 34}, { 38, 34},   // 0F 1F
    {  7, 33}, { 39, 33},   // 0G 1G
    {  9, 36},              // 0I
    { 11,  6}, { 43,  8},   // 0K 1K
    { 19, 31}, {115, 30},   // 0S 3S
    { 83, 37},              // 2S
    {147, 38},              // 4S
    { 85,  9},              // 2U
    {  5,  7},              // 0E
};
// clang-format on

constexpr int32_t LATIN_1_NUMBER = 14;
constexpr int32_t USER_NUMBER = 531;
constexpr int32_t UNICODE_NUMBER = 590;
constexpr int32_t USER_SET = 99;
constexpr int32_t LAST_SET = 101;
constexpr uint8_t LAST_ASCII = 0x7E;
constexpr uint8_t FIRST_KATAKANA = 0xA1;
constexpr uint8_t LAST_KATAKANA = 0xDF;
constexpr char32_t HALF_WIDTH_KATAKANA = 0xFF61;

constexpr bool halvesAreWhole() {
    for (const Page& page : PAGES) {
        if (page.first >= UPPER_HALF && page.first + page.characters.size() != 0x100) return false;
    }
    for (const Variant& variant : VARIANTS) {
        if (variant.changes.size() % 2 != 0) return false;
    }
    return ROMAN_8.size() == 0x60;
}
static_assert(halvesAreWhole());

bool isLetter(uint8_t code) {
    return (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z');
}

char32_t ascii(uint8_t code) {
    return code >= ' ' && code <= LAST_ASCII ? code : 0;
}

char32_t roman8(uint8_t code) {
    return code >= UPPER_PRINTED ? ROMAN_8[code - UPPER_PRINTED] : 0;
}

char32_t katakana(uint8_t code) {
    return code >= FIRST_KATAKANA && code <= LAST_KATAKANA ? HALF_WIDTH_KATAKANA + (code - FIRST_KATAKANA) : 0;
}

char32_t variantOf(int32_t set, uint8_t code) {
    for (const Variant& variant : VARIANTS) {
        if (variant.set != set) continue;
        for (std::size_t i = 0; i < variant.changes.size(); i += 2) {
            if (variant.changes[i] == code) return variant.changes[i + 1];
        }
    }
    return ascii(code);
}

// A number as CS takes it, as one of the sets of fixed space: 0 to 9, 30 to 39, 99.
int32_t plainSet(int32_t number) {
    if (number < 0 || (number >= USER_SET && number <= LAST_SET)) return USER_SET;
    if (number < 30) return number < 20 ? number % 10 : 0;
    return number < 60 ? 30 + number % 10 : 0;
}

char32_t ofSet(int32_t number, uint8_t code) {
    const int32_t set = plainSet(number);
    if (set == USER_SET) return USER_CHARACTERS + code;
    if (code >= UPPER_HALF) return set == 6 || set == 8 ? katakana(code) : roman8(code);
    if (code == ' ') return U' ';
    switch (set) {
        case 5:
            return isLetter(code) ? CENTRED_SYMBOLS + code : ascii(code);
        case 7:
            return code > ' ' ? roman8(static_cast<uint8_t>(code + UPPER_HALF)) : 0;
        case 8:
            return katakana(static_cast<uint8_t>(code + UPPER_HALF));
        default:
            return variantOf(set, code);
    }
}

char32_t ofPage(int32_t number, uint8_t code) {
    bool known = false;
    for (const Page& page : PAGES) {
        if (page.number != number) continue;
        known = true;
        if (code >= page.first && code - page.first < static_cast<int>(page.characters.size())) {
            return page.characters[static_cast<std::size_t>(code - page.first)];
        }
    }
    if (known) return code < UPPER_HALF ? ascii(code) : 0;
    return code < UPPER_HALF ? ascii(code) : roman8(code);
}

char32_t ofNumber(int32_t number, uint8_t code) {
    if (number == USER_NUMBER) return USER_CHARACTERS + code;
    if (number == LATIN_1_NUMBER || number == UNICODE_NUMBER) return code >= UPPER_PRINTED ? code : ascii(code);
    for (const Twin& twin : TWINS) {
        if (twin.number == number) return ofSet(twin.set, code);
    }
    return ofPage(number, code);
}

}  // namespace

char32_t decode(SymbolSet set, uint8_t code) {
    return set.hpgl ? ofSet(set.number, code) : ofNumber(set.number, code);
}

bool isProportional(SymbolSet set) {
    return set.hpgl && ((set.number >= 10 && set.number < 20) || (set.number >= 40 && set.number < 50));
}

bool isUnicode(SymbolSet set) {
    return !set.hpgl && set.number == UNICODE_NUMBER;
}

// What would say in more bytes what fits into fewer is none.
std::size_t utf8Length(uint8_t first) {
    if (first >= 0xC2 && first <= 0xDF) return 2;
    if (first >= 0xE0 && first <= 0xEF) return 3;
    return first >= 0xF0 && first <= 0xF4 ? 4 : 0;
}

std::size_t readUtf8(std::string_view text, char32_t& character) {
    if (text.empty()) return 0;
    const auto first = static_cast<uint8_t>(text[0]);
    const std::size_t length = utf8Length(first);
    if (length == 0 || text.size() < length) return 0;
    char32_t read = first & (0x7FU >> length);
    for (const char byte : text.substr(1, length - 1)) {
        if ((static_cast<uint8_t>(byte) & 0xC0U) != 0x80) return 0;
        read = (read << 6) | (static_cast<uint8_t>(byte) & 0x3FU);
    }
    constexpr std::array<char32_t, 5> LEAST = {0, 0, 0x80, 0x800, 0x10000};
    const bool surrogate = read >= 0xD800 && read <= 0xDFFF;
    if (read < LEAST.at(length) || read > 0x10FFFF || surrogate) return 0;
    character = read;
    return length;
}

bool isUtf8(std::string_view text) {
    bool found = false;
    while (!text.empty()) {
        std::size_t length = 1;
        if (static_cast<uint8_t>(text[0]) >= UPPER_HALF) {
            char32_t character = 0;
            length = readUtf8(text, character);
            if (length == 0) return false;
            found = true;
        }
        text.remove_prefix(length);
    }
    return found;
}

}  // namespace plotter

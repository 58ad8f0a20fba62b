// What a file is that no plotter draws. Conservative: a plot that is refused is lost, a picture that is taken for a
// plot is only a strange drawing.
#include <algorithm>
#include <array>
#include <cstdint>

#include "plotter/ascii.h"
#include "plotter/plotter.h"

namespace plotter {

namespace {

constexpr std::size_t HEAD = 4096;  // bytes in which a file says what it is

struct Magic {
    std::string_view start;
    std::string_view kind;
};

// clang-format off
constexpr std::array MAGIC = {
    Magic{"%!",                     "PostScript"},
    Magic{"\x04%!",                 "PostScript"},
    Magic{"\xc5\xd0\xd3\xc6",       "PostScript"},
    Magic{"%PDF-",                  "PDF"},
    Magic{"\x89PNG",                "PNG image"},
    Magic{"\xff\xd8\xff",           "JPEG image"},
    Magic{"GIF87a",                 "GIF image"},
    Magic{"GIF89a",                 "GIF image"},
    Magic{{"II*\0", 4},             "TIFF image"},
    Magic{{"MM\0*", 4},             "TIFF image"},
    Magic{"PK\x03\x04",             "ZIP archive"},
    Magic{"AutoCAD Binary DXF",     "DXF"},
    Magic{";:",                     "DMPL"},
    Magic{"\x1b@",                  "ESC/P"},
    Magic{"\x1b\x04",               "GP-GL"},
    Magic{") HP-PCL XL",            "PCL XL"},
    Magic{"( HP-PCL XL",            "PCL XL"},
    Magic{"<?xml",                  "XML"},
    Magic{"<svg",                   "SVG"},
    Magic{"<!DOCTYPE svg",          "SVG"},
    Magic{"<!DOCTYPE html",         "HTML"},
    Magic{"<!doctype html",         "HTML"},
    Magic{"<html",                  "HTML"},
    Magic{"<HTML",                  "HTML"},
};

// Of ENTER LANGUAGE.
constexpr std::array LANGUAGES = {
    Magic{"POSTSCRIPT",             "PostScript"},
    Magic{"PCLXL",                  "PCL XL"},
    Magic{"PDF",                    "PDF"},
    Magic{"ESCP",                   "ESC/P"},
};
// clang-format on

constexpr std::string_view WHITE_SPACE = " \t\r\n\f";

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view BYTE_ORDER_MARK = "\xef\xbb\xbf";
    if (text.starts_with(BYTE_ORDER_MARK)) text.remove_prefix(BYTE_ORDER_MARK.size());
    text.remove_prefix(std::min(text.find_first_not_of(WHITE_SPACE), text.size()));
    return text;
}

std::string_view nextLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    line = trimmed(line);
    return line.substr(0, line.find_last_not_of(WHITE_SPACE) + 1);
}

// A header of 14 bytes; the two words behind the size are reserved.
bool isBitmap(std::string_view file) {
    return file.starts_with("BM") && file.size() > 26 && file.substr(6, 4) == std::string_view("\0\0\0\0", 4);
}

// Pairs of lines, a group code and its value; comments have the code 999.
bool isDxf(std::string_view text) {
    std::string_view code = nextLine(text);
    std::string_view value = nextLine(text);
    while (code == "999" && !text.empty()) {
        code = nextLine(text);
        value = nextLine(text);
    }
    return code == "0" && value == "SECTION";
}

bool isGerber(std::string_view text) {
    return (text.starts_with('%') || text.starts_with("G04")) &&
           (text.find("%FSLA") != std::string_view::npos || text.find("%FSTA") != std::string_view::npos);
}

std::string_view enteredLanguage(std::string_view head) {
    std::string capitals(head);
    std::ranges::transform(capitals, capitals.begin(), toCapital);
    if (capitals.find("@PJL") == std::string::npos) return {};
    const std::size_t at = capitals.find("ENTER LANGUAGE");
    if (at == std::string::npos) return {};
    const std::size_t named = capitals.find_first_not_of(" =", at + std::string_view("ENTER LANGUAGE").size());
    for (const Magic& language : LANGUAGES) {
        if (named != std::string::npos && capitals.compare(named, language.start.size(), language.start) == 0) {
            return language.kind;
        }
    }
    return {};
}

}  // namespace

std::string_view foreignKind(std::string_view file) {
    const std::string_view head = file.substr(0, HEAD);
    const std::string_view text = trimmed(head);
    for (const Magic& magic : MAGIC) {
        if (head.starts_with(magic.start) || text.starts_with(magic.start)) {
            return magic.kind == "XML" && head.find("<svg") != std::string_view::npos ? "SVG" : magic.kind;
        }
    }
    if (isBitmap(file)) return "BMP image";
    if (isDxf(text)) return "DXF";
    if (isGerber(text)) return "Gerber";
    return enteredLanguage(head);
}

}  // namespace plotter

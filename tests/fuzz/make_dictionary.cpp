// Prints the dictionary of the fuzz targets that read plots: the commands' names and the language's other words.
#include <cstdio>

#include "hpgl/command_table.h"

namespace {

// In the form of libFuzzer's dictionaries.
constexpr const char* WORDS[] = {
    ";",        ",",          "-",           "+",          ".",        " ",         "\\x00",       "\\x03",
    "\\x0a",    "\\x1b",      "\\x80",       "\\xff",      "DT#",      "DT!,1;",    "CO\\\"",      "\\\"",
    ":",        "<",          "=",           ">",          "7",        "5",         "PE<",         "PE7",
    "\\xbf",    "\\xbe",      "PM0;",        "PM1;",       "PM2;",     "FP;",       "EP;",         "SC0,1,0,1",
    ",0;",      ",1;",        ",2,0,0;",     "SP-1;",      "SP255;",   "PW.35,1;",  "PC1,255,0,0", "HPGL_",
    "0",        "360",        "-360",        "0.0001",     "1e38",     "nan",       "inf",         "32767",
    "-32768",   "2147483647", "-2147483648", "2147483648", "65536",    "46341",     "1073741823",  "-1073741823",
    "99999999", "4294967295", "4294967296",  "16777217",   "12345678", "123456789", "1234567890",  "12345678901234567",
};

}  // namespace

int main() {
    for (const HPGLCommand& command : HPGLCommandTable) {
        std::printf("\"%s\"\n", command.name);
    }
    for (const char* word : WORDS) {
        std::printf("\"%s\"\n", word);
    }
    return 0;
}

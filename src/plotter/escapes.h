// Escape sequences: of the printers' language, and the device control of plotters on a serial line.
//
//     ESC E                      two characters
//     ESC & l 26 A               family '&', group 'l', a field: 26 A
//     ESC * c 2880 x 2160 Y      two fields: a small letter says that another one follows
//     ESC * b 3 W 0x41 …         a field that carries that many bytes of data
//     ESC . I 81;;17:            device control
//
// A sequence is read field by field, so it may have any number of them; what it carries is a view of the file.
#pragma once

#include <cstddef>
#include <string_view>

namespace plotter {

inline constexpr char ESCAPE = '\x1b';

struct EscapeField {
    double value = 0;       // 0 when none was given
    bool isSigned = false;  // + or - was written: relative, for a cursor
    char letter = 0;        // its last letter, as a capital
    std::string_view data;  // the bytes it carries
    bool isCut = false;     // the file ends inside of them
};

class EscapeReader {
  public:
    enum class Kind {
        Alone,          // nothing that belongs to it follows: one byte
        TwoCharacters,  // `family` is the second one
        Fields,
        DeviceControl,  // `family` is its letter, 0 when there is none
    };

    // At an ESC of these bytes.
    EscapeReader(std::string_view bytes, std::size_t offset);

    Kind kind() const { return kind_; }
    char family() const { return family_; }
    char group() const { return group_; }  // 0 when there is none, as in ESC%0B
    bool is(char family, char group) const { return kind_ == Kind::Fields && family_ == family && group_ == group; }

    // The next field. False, with `field` unchanged, when there is no further one: a byte that cannot stand in a
    // sequence ends it, and does not belong to it.
    bool next(EscapeField& field);

    // Behind what has been read so far; behind all of it once next has answered false.
    std::size_t end() const { return at_; }

  private:
    void readHead();
    void takeData(EscapeField& field);

    std::string_view bytes_;
    std::size_t at_;
    Kind kind_ = Kind::Alone;
    char family_ = 0;
    char group_ = 0;
    bool goesOn_ = false;
};

// Behind the escape sequence at the offset, with all that it carries; at least one byte on.
std::size_t skipEscape(std::string_view bytes, std::size_t offset);

// Behind a device control instruction whose '.' stands at the offset, its ESC before it or lost on the way. The offset
// itself when none stands there.
std::size_t skipDeviceControl(std::string_view bytes, std::size_t offset);

}  // namespace plotter

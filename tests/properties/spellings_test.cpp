// One plot can be written in many ways: what stands between parameters and commands, how a number is written, and
// control characters do not show in the records.
#include <gtest/gtest.h>

#include <cstdlib>

#include "hpgl/command_table.h"
#include "picture_text.h"
#include "plots.h"

namespace {

constexpr unsigned PLOTS = 400;
constexpr int SPELLINGS = 10;

struct Parameter {
    char letter;  // of the signature: L or I, R, C
    int value;    // the number, its thousandths, the character
};

struct Command {
    const HPGLCommand* row;
    std::vector<Parameter> parameters;
    std::string text;  // of LB, CO and PE, which stands as it is
};
using Commands = std::vector<Command>;

// ---- a plot by chance -----------------------------------------------------------------------------------------------

constexpr char CHARACTERS[] = {'#', '~', '!', '|'};  // parameters that are characters, and so labels' terminators

Parameter someParameter(Chance& chance, char letter) {
    if (letter == 'C') return {letter, chance.oneOf(CHARACTERS)};
    return {letter, chance.oneIn(8) ? 0 : chance.number(-99999, 99999)};
}

std::vector<Parameter> someParameters(Chance& chance, const HPGLCommand& row) {
    const std::string signature = row.signature[0] != '\0' ? row.signature : "L";
    const int count = chance.oneIn(40) ? chance.number(250, 300) : chance.number(0, 9);
    std::vector<Parameter> parameters;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count); ++i) {
        parameters.push_back(someParameter(chance, signature[i % signature.size()]));
    }
    return parameters;
}

// Letters, so that there are names of commands in it.
std::string someLetters(Chance& chance) {
    std::string text;
    for (int i = chance.number(0, 20); i > 0; --i) {
        text += chance.oneIn(4) ? ',' : static_cast<char>(chance.number('A', 'Z'));
    }
    return text;
}

std::string someEncodedValue(Chance& chance) {
    std::string text;
    for (int i = chance.number(0, 2); i > 0; --i) {
        text += static_cast<char>(chance.number(63, 190));
    }
    return text + static_cast<char>(chance.number(191, 254));
}

std::string someEncodedPairs(Chance& chance) {
    std::string text;
    for (int i = chance.number(0, 5); i > 0; --i) {
        text += chance.oneIn(3) ? "<" : "";
        text += chance.oneIn(3) ? "=" : "";
        text += someEncodedValue(chance) + someEncodedValue(chance);
    }
    return text;
}

Command someCommand(Chance& chance) {
    constexpr int OFTEN[] = {CMD_PA, CMD_PR, CMD_SP, CMD_SC, CMD_DT, CMD_LB, CMD_CO, CMD_PE};
    const int id = chance.oneIn(2) ? chance.oneOf(OFTEN) : chance.number(CMD_CO, HPGL_COMMANDS - 1);
    const HPGLCommand& row = HPGLCommandTable[id];
    switch (row.id) {
        case CMD_LB:
        case CMD_CO:
            return {&row, {}, someLetters(chance)};
        case CMD_PE:
            return {&row, {}, someEncodedPairs(chance)};
        default:
            return {&row, someParameters(chance, row), ""};
    }
}

Commands somePlot(Chance& chance) {
    Commands commands;
    for (int i = chance.number(1, 40); i > 0; --i) {
        commands.push_back(someCommand(chance));
    }
    return commands;
}

// ---- the plain spelling ---------------------------------------------------------------------------------------------

std::string decimal(int value, int unit) {
    const std::string behindThePoint = std::to_string(unit + value % unit).substr(1);
    return std::to_string(value / unit) + "." + behindThePoint;
}

std::string plainly(const Parameter& parameter) {
    const int value = parameter.value;
    if (parameter.letter == 'C') return {static_cast<char>(value)};
    if (parameter.letter == 'R') return (value < 0 ? "-" : "") + decimal(std::abs(value), 1000);
    return std::to_string(value);
}

std::string plainly(const Command& command) {
    switch (command.row->id) {
        case CMD_LB:
            return "LB" + command.text + "\003";
        case CMD_CO:
            return "CO\"" + command.text + "\"";
        case CMD_PE:
            return "PE" + command.text + ";";
        default:
            break;
    }
    std::string text = command.row->name;
    for (const Parameter& parameter : command.parameters) {
        text += plainly(parameter) + ",";
    }
    return text + ";";
}

std::string plainly(const Commands& commands) {
    std::string text;
    for (const Command& command : commands) {
        text += plainly(command);
    }
    return text;
}

// ---- others ---------------------------------------------------------------------------------------------------------

// Outside strings bytes below 32 and from 128 on are not there, inside names and numbers too.
constexpr char CONTROLS[] = {'\n', '\r', '\t', '\0', '\003', '\033', '\200', '\377'};

std::string withControls(Chance& chance, const std::string& text) {
    if (chance.oneIn(2)) return text;
    std::string result;
    for (const char c : text) {
        while (chance.oneIn(6)) {
            result += chance.oneOf(CONTROLS);
        }
        result += c;
    }
    return result;
}

std::string separators(Chance& chance, int least) {
    constexpr char SEPARATORS[] = {' ', ',', ';'};
    std::string text;
    for (int i = least + (chance.oneIn(2) ? chance.number(0, 3) : 0); i > 0; --i) {
        text += chance.oneOf(SEPARATORS);
    }
    return text;
}

std::string sign(Chance& chance, int value) {
    if (value < 0) return "-";
    return chance.oneIn(4) ? "+" : "";
}

std::string zeros(Chance& chance) {
    return std::string(static_cast<std::size_t>(chance.oneIn(3) ? chance.number(1, 3) : 0), '0');
}

// What stands behind the point of a whole number is cut off.
std::string wholeNumber(Chance& chance, int value) {
    const std::string fraction = chance.oneIn(4) ? "." + zeros(chance) + std::to_string(chance.number(0, 99)) : "";
    return zeros(chance) + std::to_string(value) + fraction;
}

// Zeros in front and behind, and the point itself, may be missing, and powers of ten stand for places.
std::string realNumber(Chance& chance, int thousandths) {
    const bool power = chance.oneIn(3);
    std::string text = decimal(thousandths, power ? 100000 : 1000);
    while (text.back() == '0' && chance.oneIn(2)) {
        text.pop_back();
    }
    if (text.back() == '.' && chance.oneIn(2)) text.pop_back();
    if (text.starts_with("0.") && text.size() > 2 && chance.oneIn(2)) text.erase(0, 1);
    if (power) text += chance.oneIn(2) ? "e2" : "E2";
    return zeros(chance) + text;
}

std::string somehow(Chance& chance, const Parameter& parameter) {
    if (parameter.letter == 'C') return plainly(parameter);
    const int value = std::abs(parameter.value);
    const bool real = parameter.letter == 'R';
    return sign(chance, parameter.value) + (real ? realNumber(chance, value) : wholeNumber(chance, value));
}

// A sign separates from the number before, but not from a character.
std::string parametersSomehow(Chance& chance, const std::vector<Parameter>& parameters) {
    std::string text;
    bool mustSeparate = false;
    bool signSeparates = false;
    for (const Parameter& parameter : parameters) {
        const std::string written = somehow(chance, parameter);
        const bool hasSign = written[0] == '+' || written[0] == '-';
        text += separators(chance, mustSeparate && !(signSeparates && hasSign) ? 1 : 0) + written;
        mustSeparate = true;
        signSeparates = parameter.letter != 'C';
    }
    return text;
}

// How a plot goes on depends on the label terminator that it has set.
struct Writer {
    Chance& chance;
    char terminator = '\003';

    std::string endOfLabel() { return {chance.oneIn(2) ? terminator : chance.oneOf(CONTROLS)}; }

    std::string operator()(const Command& command) {
        const std::string name = withControls(chance, command.row->name);
        switch (command.row->id) {
            case CMD_LB:
                return name + command.text + endOfLabel() + separators(chance, 0);
            case CMD_CO:
                return name + separators(chance, 0) + "\"" + command.text + "\"" + separators(chance, 0);
            case CMD_PE:
                return name + command.text + ";" + separators(chance, 0);
            default:
                break;
        }
        if (command.row->id == CMD_DT && !command.parameters.empty()) {
            terminator = static_cast<char>(command.parameters[0].value);
        }
        return name + withControls(chance, parametersSomehow(chance, command.parameters) + separators(chance, 0));
    }
};

std::string somehow(Chance& chance, const Commands& commands) {
    Writer write = {chance};
    std::string text = separators(chance, 0);
    for (const Command& command : commands) {
        text += write(command);
    }
    return text + separators(chance, 1);  // a number that nothing ends is not complete
}

// ---- the property ---------------------------------------------------------------------------------------------------

std::string pictureOf(const std::string& text) {
    parseText(text);
    return recordsText() + hexText() + pictureText();
}

TEST(Spellings, OfAPlotGiveTheSameRecords) {
    const FreshViewer viewer;
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        Chance chance(seed);
        const Commands commands = somePlot(chance);
        const std::string expected = pictureOf(plainly(commands));
        for (int i = 0; i < SPELLINGS; ++i) {
            const std::string text = somehow(chance, commands);
            ASSERT_EQ(difference(expected, pictureOf(text)), "")
                << "seed " << seed << ", spelling " << i << " of\n"
                << testing::PrintToString(plainly(commands)) << "\nis\n"
                << testing::PrintToString(text);
        }
    }
}

}  // namespace

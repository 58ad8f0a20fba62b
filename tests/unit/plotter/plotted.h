// A plotter and its paper as text, for tests that call instructions one by one.
#pragma once

#include <string>
#include <vector>

#include "plane_text.h"
#include "plotter/machine.h"
#include "plotter/manifest.h"

// Everything that is drawn, as text.
class TextSheet final : public plotter::Sheet {
  public:
    void line(std::span<const plotter::Point> points, const plotter::Ink& ink) override {
        pieces.add(plane_text::of(points));
        inks.push_back(ink);
    }
    void area(const plotter::Area& rings, const plotter::Ink& ink) override {
        pieces.add("[" + plane_text::of(rings) + "]");
        inks.push_back(ink);
    }
    void nextPage() override { pieces.add("page"); }

    plane_text::Pieces pieces;
    std::vector<plotter::Ink> inks;  // of each piece
};

class Plotted {
  public:
    explicit Plotted(bool hpgl2 = true) : machine(traitsOf(hpgl2), sheet, report, FILE_SIZE) {}

    void run(plotter::Procedure procedure, const std::vector<double>& numbers) {
        plotter::Instruction instruction;
        instruction.numbers = numbers;
        procedure(machine, instruction);
    }
    const std::string& text() const { return sheet.pieces.text(); }
    // What was bounded, one after the other.
    std::string bounds() const {
        std::string text;
        for (const auto& entry : report.bounds())
            text += (text.empty() ? "" : " ") + entry.what;
        return text;
    }

    TextSheet sheet;
    plotter::Report report;
    plotter::Machine machine;

  private:
    static constexpr std::size_t FILE_SIZE = 1'000'000;  // bytes, of the file that is made up

    static plotter::Traits traitsOf(bool hpgl2) {
        plotter::Traits traits;
        traits.hpgl2 = hpgl2;
        return traits;
    }
};

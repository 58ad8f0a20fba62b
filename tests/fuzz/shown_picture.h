// The viewer on the recorder with a picture shown, from parser to zoom stack, without the host's channel: a text that
// names a file must not make it read one.
#pragma once

#include <cstdint>
#include <string_view>

#include "picture_text.h"

class ShownPicture {
  public:
    // In a window of width x height pixels.
    ShownPicture(std::string_view text, int32_t width, int32_t height);

    // One message to the main window's procedure. What is drawn goes through a check of each call's form.
    void paint();
    void resize(int32_t width, int32_t height);
    void mouse(uint32_t button, int32_t x, int32_t y);
    void menu(uint32_t item);

  private:
    FreshViewer viewer_;
};

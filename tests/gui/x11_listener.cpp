// A host's window: prints its number, then for every message that comes the name of its type and its five values.
#include <xcb/xcb.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};

xcb_window_t makeWindow(xcb_connection_t* connection) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_window_t window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual, 0, nullptr);
    // Asked and answered, so that the window is there when its number is printed.
    const auto cookie = xcb_get_window_attributes(connection, window);
    const std::unique_ptr<xcb_get_window_attributes_reply_t, Free> there(
        xcb_get_window_attributes_reply(connection, cookie, nullptr));
    return there != nullptr ? window : xcb_window_t{XCB_WINDOW_NONE};
}

void print(xcb_connection_t* connection, const xcb_client_message_event_t& message) {
    const auto cookie = xcb_get_atom_name(connection, message.type);
    const std::unique_ptr<xcb_get_atom_name_reply_t, Free> name(xcb_get_atom_name_reply(connection, cookie, nullptr));
    if (name == nullptr) return;
    std::printf("%.*s", xcb_get_atom_name_name_length(name.get()), xcb_get_atom_name_name(name.get()));
    for (const uint32_t value : message.data.data32) {
        std::printf(" %u", value);
    }
    std::printf("\n");
}

}  // namespace

int main() {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t window = xcb_connection_has_error(connection) == 0 ? makeWindow(connection) : 0;
    if (window == 0) return 1;
    std::printf("%u\n", window);
    std::fflush(stdout);
    while (const std::unique_ptr<xcb_generic_event_t, Free> event{xcb_wait_for_event(connection)}) {
        constexpr int SENT = 0x80;  // by another program
        if ((event->response_type & ~SENT) != XCB_CLIENT_MESSAGE) continue;
        print(connection, *reinterpret_cast<const xcb_client_message_event_t*>(event.get()));
        std::fflush(stdout);
    }
    xcb_disconnect(connection);
    return 0;
}

#include "platform/x11_notify.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr std::chrono::seconds PATIENCE{2};
constexpr uint64_t LAST_WINDOW = 0x1FFFFFFF;  // X11 numbers have 29 bits
constexpr std::string_view MESSAGE_TYPE = "KEL_MESSAGE";

using Connection = std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)>;
using Task = std::function<bool(xcb_connection_t*)>;

struct FreeReply {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename T>
std::unique_ptr<T, FreeReply> owned(T* reply) {
    return std::unique_ptr<T, FreeReply>(reply);
}

bool connectAndRun(const Task& task) {
    const Connection connection(xcb_connect(nullptr, nullptr), &xcb_disconnect);
    return xcb_connection_has_error(connection.get()) == 0 && task(connection.get());
}

// xcb knows no time limit; a thread whose server does not answer is left behind.
bool runBounded(Task task) {
    std::packaged_task<bool()> work([task = std::move(task)] { return connectAndRun(task); });
    std::future<bool> done = work.get_future();
    std::thread(std::move(work)).detach();
    return done.wait_for(PATIENCE) == std::future_status::ready && done.get();
}

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
    const auto cookie = xcb_intern_atom(connection, 0, static_cast<uint16_t>(name.size()), name.data());
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Without an event mask it goes to the client that made the window. Checked, so that it has arrived when this answers.
bool sendTo(xcb_connection_t* connection, const xcb_client_message_event_t& event) {
    const auto cookie = xcb_send_event_checked(connection, 0, event.window, XCB_EVENT_MASK_NO_EVENT,
                                               reinterpret_cast<const char*>(&event));
    return owned(xcb_request_check(connection, cookie)) == nullptr && xcb_connection_has_error(connection) == 0;
}

// The 32-bit values of a property; none when it is not there.
std::vector<uint32_t> valuesOf(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property) {
    constexpr uint32_t mostValues = 1024;
    const auto cookie = xcb_get_property(connection, 0, window, property, XCB_ATOM_ANY, 0, mostValues);
    const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
    if (reply == nullptr || reply->format != 32) return {};
    const auto* values = static_cast<const uint32_t*>(xcb_get_property_value(reply.get()));
    return {values, values + reply->value_len};
}

bool waitForProperty(xcb_connection_t* connection, xcb_atom_t property) {
    while (const auto event = owned(xcb_wait_for_event(connection))) {
        const auto* notified = reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        if ((event->response_type & 0x7F) == XCB_PROPERTY_NOTIFY && notified->atom == property) return true;
    }
    return false;
}

// The window manager says what frame a window would have that is not shown yet.
std::vector<uint32_t> askForFrame(xcb_connection_t* connection) {
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;
    const xcb_atom_t extents = atomOf(connection, "_NET_FRAME_EXTENTS");
    xcb_client_message_event_t request{};
    request.response_type = XCB_CLIENT_MESSAGE;
    request.format = 32;
    request.type = atomOf(connection, "_NET_REQUEST_FRAME_EXTENTS");
    const auto supported = valuesOf(connection, screen->root, atomOf(connection, "_NET_SUPPORTED"));
    if (std::ranges::find(supported, request.type) == supported.end()) return {};

    constexpr uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    request.window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, request.window, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    xcb_send_event(connection, 0, screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&request));
    xcb_flush(connection);
    if (!waitForProperty(connection, extents)) return {};
    return valuesOf(connection, request.window, extents);
}

}  // namespace

namespace x11 {

std::optional<WindowFrame> windowFrame() {
    const auto frame = std::make_shared<WindowFrame>();  // of a thread that may be left behind
    const bool known = runBounded([frame](xcb_connection_t* connection) {
        const auto sides = askForFrame(connection);
        if (sides.size() != 4) return false;
        const auto side = [&](size_t i) { return static_cast<int>(std::min<uint32_t>(sides[i], 1000)); };
        *frame = {.left = side(0), .right = side(1), .top = side(2), .bottom = side(3)};
        return true;
    });
    return known ? std::optional<WindowFrame>(*frame) : std::nullopt;
}

bool isReachable() {
    return runBounded([](xcb_connection_t*) { return true; });
}

bool isWindow(uint64_t window) {
    if (window == 0 || window > LAST_WINDOW) return false;
    return runBounded([window](xcb_connection_t* connection) {
        const auto cookie = xcb_get_window_attributes(connection, static_cast<xcb_window_t>(window));
        xcb_generic_error_t* error = nullptr;
        const auto reply = owned(xcb_get_window_attributes_reply(connection, cookie, &error));
        return owned(error) == nullptr && reply != nullptr;
    });
}

bool postMessage(uint64_t window, uint32_t message, uint32_t first, uint32_t second) {
    if (window == 0 || window > LAST_WINDOW) return false;
    return runBounded([=](xcb_connection_t* connection) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(window);
        event.type = atomOf(connection, MESSAGE_TYPE);
        event.data.data32[0] = message;
        event.data.data32[1] = first;
        event.data.data32[2] = second;
        return event.type != XCB_ATOM_NONE && sendTo(connection, event);
    });
}

}  // namespace x11

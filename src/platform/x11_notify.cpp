#include "x11_notify.h"

#include <xcb/xcb.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <future>
#include <memory>
#include <string_view>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::seconds patience{2};
constexpr uint64_t lastWindow = 0x1FFFFFFF;  // X11 numbers have 29 bits
constexpr std::string_view messageType = "KEL_MESSAGE";

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
    return done.wait_for(patience) == std::future_status::ready && done.get();
}

xcb_atom_t messageAtom(xcb_connection_t* connection) {
    const auto cookie = xcb_intern_atom(connection, 0, messageType.size(), messageType.data());
    const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

// Without an event mask it goes to the client that made the window. Checked, so that it has arrived when this answers.
bool sendTo(xcb_connection_t* connection, const xcb_client_message_event_t& event) {
    const auto cookie = xcb_send_event_checked(connection, 0, event.window, XCB_EVENT_MASK_NO_EVENT,
                                               reinterpret_cast<const char*>(&event));
    return owned(xcb_request_check(connection, cookie)) == nullptr && xcb_connection_has_error(connection) == 0;
}

}  // namespace

namespace x11 {

bool isReachable() {
    return runBounded([](xcb_connection_t*) { return true; });
}

bool isWindow(uint64_t window) {
    if (window == 0 || window > lastWindow) return false;
    return runBounded([window](xcb_connection_t* connection) {
        const auto cookie = xcb_get_window_attributes(connection, static_cast<xcb_window_t>(window));
        xcb_generic_error_t* error = nullptr;
        const auto reply = owned(xcb_get_window_attributes_reply(connection, cookie, &error));
        return owned(error) == nullptr && reply != nullptr;
    });
}

bool postMessage(uint64_t window, uint32_t message, uint32_t first, uint32_t second) {
    if (window == 0 || window > lastWindow) return false;
    return runBounded([=](xcb_connection_t* connection) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = static_cast<xcb_window_t>(window);
        event.type = messageAtom(connection);
        event.data.data32[0] = message;
        event.data.data32[1] = first;
        event.data.data32[2] = second;
        return event.type != XCB_ATOM_NONE && sendTo(connection, event);
    });
}

}  // namespace x11

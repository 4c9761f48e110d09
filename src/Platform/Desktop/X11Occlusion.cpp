#include "Platform/Desktop/X11Occlusion.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <xcb/xcb.h>

namespace tamsy {
namespace {

/// The desktop number of a window on all desktops (Extended Window Manager Hints).
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

/// The maximum length of the window manager's list, more than anybody opens.
constexpr std::uint32_t maxWindows = 10'000;

constexpr xcb_window_t noWindow = XCB_WINDOW_NONE;
constexpr xcb_atom_t noAtom = XCB_ATOM_NONE;

/// The flag of an event sent by another client.
constexpr unsigned sentByClient = 0x80;

struct Freed {
    void operator()(void* reply) const { std::free(reply); } // NOLINT(*-no-malloc): required by xcb
};
template <typename Reply>
using Owned = std::unique_ptr<Reply, Freed>;

xcb_window_t idOf(const QWindow& window) {
    // `winId` of a window without a native window would create one.
    return window.handle() == nullptr ? noWindow : static_cast<xcb_window_t>(window.winId());
}

} // namespace

std::unique_ptr<X11Occlusion> X11Occlusion::make(std::function<void()> changed) {
    const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 == nullptr || x11->connection() == nullptr)
        return nullptr;
    return std::unique_ptr<X11Occlusion>(new X11Occlusion(x11->connection(), std::move(changed)));
}

X11Occlusion::X11Occlusion(xcb_connection_t* connection, std::function<void()> changed)
    : connection_(connection),
      changed_(std::move(changed)),
      root_(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root),
      currentDesktopAtom_(atom("_NET_CURRENT_DESKTOP")),
      windowDesktopAtom_(atom("_NET_WM_DESKTOP")),
      stackingAtom_(atom("_NET_CLIENT_LIST_STACKING")) {
    ask(root_, XCB_EVENT_MASK_PROPERTY_CHANGE);
    currentDesktop_ = property(root_, currentDesktopAtom_, allDesktops);
    stacking_ = stacking();
    qGuiApp->installNativeEventFilter(this);
}

X11Occlusion::~X11Occlusion() {
    if (qGuiApp != nullptr)
        qGuiApp->removeNativeEventFilter(this);
}

void X11Occlusion::watch(const QWindow& window) {
    const xcb_window_t id = idOf(window);
    ask(id, XCB_EVENT_MASK_VISIBILITY_CHANGE | XCB_EVENT_MASK_PROPERTY_CHANGE);
    windows_[id].desktop = property(id, windowDesktopAtom_, allDesktops);
}

void X11Occlusion::forget(const QWindow& window) {
    windows_.remove(idOf(window));
}

bool X11Occlusion::isOutOfSight(const QWindow& window) const {
    const auto found = windows_.constFind(idOf(window));
    if (found == windows_.cend())
        return false;
    const bool isElsewhere = found->desktop != allDesktops && currentDesktop_ != allDesktops &&
                             found->desktop != currentDesktop_ &&
                             QGuiApplication::screens().size() == 1;
    return found->isCovered || isElsewhere;
}

bool X11Occlusion::isAbove(const QWindow& upper, const QWindow& lower) const {
    const auto low = std::ranges::find(stacking_, idOf(lower));
    return low != stacking_.end() &&
           std::ranges::find(low, stacking_.end(), idOf(upper)) != stacking_.end();
}

bool X11Occlusion::nativeEventFilter(const QByteArray& eventType, void* message,
                                     qintptr* /*result*/) {
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    bool mayHaveChanged = false;
    switch (event->response_type & ~sentByClient) {
    case XCB_VISIBILITY_NOTIFY: {
        const auto* visibility = static_cast<const xcb_visibility_notify_event_t*>(message);
        mayHaveChanged =
            noteVisibility(visibility->window, visibility->state == XCB_VISIBILITY_FULLY_OBSCURED);
        break;
    }
    case XCB_PROPERTY_NOTIFY: {
        const auto* property = static_cast<const xcb_property_notify_event_t*>(message);
        mayHaveChanged = noteProperty(property->window, property->atom);
        break;
    }
    default:
        break;
    }
    if (mayHaveChanged)
        changed_();
    return false;
}

void X11Occlusion::ask(xcb_window_t window, std::uint32_t events) const {
    const Owned<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        connection_, xcb_get_window_attributes(connection_, window), nullptr));
    if (!attributes || (attributes->your_event_mask & events) == events)
        return;
    const std::uint32_t mask =
        attributes->your_event_mask | events; // Qt's events must stay selected
    xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &mask);
}

xcb_atom_t X11Occlusion::atom(const char* name) const {
    const auto request =
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
    const Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection_, request, nullptr));
    return reply ? reply->atom : noAtom;
}

std::uint32_t X11Occlusion::property(xcb_window_t window, xcb_atom_t name,
                                     std::uint32_t otherwise) const {
    const auto request = xcb_get_property(connection_, 0, window, name, XCB_ATOM_CARDINAL, 0, 1);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, request, nullptr));
    std::uint32_t value = otherwise;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) >= 4)
        std::memcpy(&value, xcb_get_property_value(reply.get()), sizeof value);
    return value;
}

std::vector<xcb_window_t> X11Occlusion::stacking() const {
    const auto request =
        xcb_get_property(connection_, 0, root_, stackingAtom_, XCB_ATOM_WINDOW, 0, maxWindows);
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection_, request, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    std::vector<xcb_window_t> windows(size / sizeof(xcb_window_t));
    if (!windows.empty())
        std::memcpy(windows.data(), xcb_get_property_value(reply.get()),
                    windows.size() * sizeof(xcb_window_t));
    return windows;
}

bool X11Occlusion::noteVisibility(xcb_window_t window, bool isCovered) {
    const auto found = windows_.find(window);
    return found != windows_.end() && std::exchange(found->isCovered, isCovered) != isCovered;
}

bool X11Occlusion::noteProperty(xcb_window_t window, xcb_atom_t name) {
    if (window == root_ && name == currentDesktopAtom_) {
        const std::uint32_t desktop = property(window, name, allDesktops);
        return std::exchange(currentDesktop_, desktop) != desktop;
    }
    if (window == root_ && name == stackingAtom_) {
        stacking_ = stacking();
        return windows_.size() > 1;
    }
    const auto found = windows_.find(window);
    if (found == windows_.end() || name != windowDesktopAtom_)
        return false;
    const std::uint32_t desktop = property(window, name, allDesktops);
    return std::exchange(found->desktop, desktop) != desktop;
}

} // namespace tamsy

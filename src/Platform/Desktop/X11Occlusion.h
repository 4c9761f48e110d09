#pragma once

#include <QAbstractNativeEventFilter>
#include <QHash>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

class QWindow;
struct xcb_connection_t;

namespace tamsy {

/// Windows that can't be seen, as known to the X server and the window manager but not to Qt: those
/// that are fully covered (without a compositor; with one, every window counts as uncovered) and
/// those that stay mapped on another desktop. Interface thread.
class X11Occlusion : public QAbstractNativeEventFilter {
  public:
    /// Null if the application isn't on X11. `changed` is called if an answer may have changed.
    [[nodiscard]] static std::unique_ptr<X11Occlusion> make(std::function<void()> changed);

    ~X11Occlusion() override;
    X11Occlusion(const X11Occlusion&) = delete;
    X11Occlusion& operator=(const X11Occlusion&) = delete;
    X11Occlusion(X11Occlusion&&) = delete;
    X11Occlusion& operator=(X11Occlusion&&) = delete;

    /// Selects the server's events for this window. Repeat it when the window is shown again, since
    /// Qt may have changed the selection.
    void watch(const QWindow& window);

    void forget(const QWindow& window);

    /// Whether the window is fully covered or, with a single screen, on another desktop: with
    /// several, some window managers show a desktop on each.
    [[nodiscard]] bool isOutOfSight(const QWindow& window) const;

    /// Whether the window manager stacks `upper` above `lower`.
    [[nodiscard]] bool isAbove(const QWindow& upper, const QWindow& lower) const;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  private:
    struct WindowState {
        bool isCovered = false;
        std::uint32_t desktop = 0;
    };

    X11Occlusion(xcb_connection_t* connection, std::function<void()> changed);

    void ask(std::uint32_t window, std::uint32_t events) const;
    [[nodiscard]] std::uint32_t atom(const char* name) const;
    [[nodiscard]] std::uint32_t property(std::uint32_t window, std::uint32_t name,
                                         std::uint32_t otherwise) const;
    [[nodiscard]] std::vector<std::uint32_t> stacking() const;
    bool noteVisibility(std::uint32_t window, bool isCovered);
    bool noteProperty(std::uint32_t window, std::uint32_t name);

    xcb_connection_t* const connection_; // Qt's own
    const std::function<void()> changed_;
    std::uint32_t root_ = 0;
    std::uint32_t currentDesktopAtom_ = 0;
    std::uint32_t windowDesktopAtom_ = 0;
    std::uint32_t stackingAtom_ = 0;
    std::uint32_t currentDesktop_ = 0;
    std::vector<std::uint32_t> stacking_; // bottom to top
    QHash<std::uint32_t, WindowState> windows_;
};

} // namespace tamsy

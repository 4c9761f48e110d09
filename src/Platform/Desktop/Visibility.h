#pragma once

#include <QHash>
#include <QObject>

#include <memory>

class QWindow;

namespace tamsy {

class X11Occlusion;

/// Knows which of the program's windows can be seen at least in part, and whether the application
/// is active. Tracks all windows of the application. Interface thread; create it once, before the
/// first window.
///
/// On X11 a window counts as hidden if it is minimised, on another desktop, fully below another
/// window of ours or, without a compositor, fully covered by any window. On Wayland it counts as
/// hidden if the compositor requests no more frames of it, which is all that a client can know.
class Visibility : public QObject {
    Q_OBJECT

  public:
    /// The events that may change the answers.
    enum class Occasion {
        ApplicationDidBecomeActive,
        ApplicationDidResignActive,
        ApplicationDidHide,
        ApplicationDidUnhide,
        WindowDidMiniaturize,
        WindowDidDeminiaturize,
        WindowDidChangeOcclusionState,
    };
    Q_ENUM(Occasion)

    explicit Visibility(QObject* parent = nullptr);
    ~Visibility() override;

    /// Whether one of the windows has the keyboard focus.
    [[nodiscard]] bool isApplicationActive() const;

    /// Whether the user has hidden the whole application. X11 and Wayland desktops don't have that.
    [[nodiscard]] bool isApplicationHidden() const;

    /// Whether at least one window is shown, not minimised and not hidden.
    [[nodiscard]] bool isAnyWindowVisible() const;

    /// Whether at least a part of this window can be seen. While a shown window can't, which is
    /// known only on X11, its frames are held back, and the last one is drawn once it can.
    [[nodiscard]] bool canBeSeen(const QWindow& window) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    /// Emitted after each change, and only then.
    void changed(tamsy::Visibility::Occasion occasion);

  private:
    struct WindowState {
        bool isMiniaturized = false;
        bool canBeSeen = false;
        bool owesFrame = false; // a frame was held back
    };

    void applicationStateChanged(Qt::ApplicationState state);
    void update(QWindow* window);
    void updateAll();
    [[nodiscard]] bool isInSight(const QWindow& window) const;
    [[nodiscard]] bool isBelowAnother(const QWindow& window) const;
    [[nodiscard]] bool holdFrameBack(QWindow* window);
    void forget(QWindow* window);

    Qt::ApplicationState applicationState_;
    QHash<QWindow*, WindowState> windows_;
    std::unique_ptr<X11Occlusion> occlusion_; // absent on other platforms
};

} // namespace tamsy

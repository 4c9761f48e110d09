#pragma once

#include <QHash>
#include <QObject>

#include <memory>

class QWindow;

namespace tamsy {

class X11Occlusion;

/// Knows whether anybody can see the program: which of its windows show at least a part of
/// themselves, and whether the application is the active one. It follows every window of the
/// application by itself. Interface thread; made once, before the first window.
///
/// On X11 a window counts as out of sight when it is minimised, on another desktop, fully below
/// another window of ours or, as long as no compositor is at work, fully covered by any. On Wayland
/// it counts so when the compositor asks for no more pictures of it, which is as much as a client
/// is told.
class Visibility : public QObject {
    Q_OBJECT

  public:
    /// What may have changed the answers.
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

    /// One of the windows has the keyboard.
    [[nodiscard]] bool isApplicationActive() const;

    /// The user has hidden the application as a whole. The desktops of X11 and Wayland have no such
    /// thing; it is followed for those that do.
    [[nodiscard]] bool isApplicationHidden() const;

    /// At least one window is shown, not minimised and not out of sight.
    [[nodiscard]] bool isAnyWindowVisible() const;

    /// At least a part of this window can be seen. While none can though the window is up, which
    /// only X11 tells, its frames are held back, and the last one is drawn when it can.
    [[nodiscard]] bool canBeSeen(const QWindow& window) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

  Q_SIGNALS:
    /// Comes after each change, and only then; the answers are those after the change.
    void changed(tamsy::Visibility::Occasion occasion);

  private:
    struct WindowState {
        bool isMiniaturized = false;
        bool canBeSeen = false;
        bool owesFrame = false; // it asked for one that was held back
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

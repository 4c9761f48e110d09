#pragma once

#include <QString>

#include <memory>

class QWindow;

namespace tamsy {

/// Exports one of our windows, so that a portal can place its dialog above it. The name is valid as
/// long as this object exists. Interface thread.
class PortalParent {
  public:
    explicit PortalParent(const QWindow* window);
    ~PortalParent();
    PortalParent(const PortalParent&) = delete;
    PortalParent& operator=(const PortalParent&) = delete;
    PortalParent(PortalParent&&) = delete;
    PortalParent& operator=(PortalParent&&) = delete;

    /// The parent window as `org.freedesktop.portal.FileChooser` expects it; empty without a window
    /// or if the compositor can't export it.
    [[nodiscard]] const QString& name() const { return name_; }

  private:
    class WaylandExport;

    std::unique_ptr<WaylandExport> wayland_; // absent on other platforms
    QString name_;
};

} // namespace tamsy

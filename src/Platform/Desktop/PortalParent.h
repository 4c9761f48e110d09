#pragma once

#include <QString>

#include <memory>

class QWindow;

namespace tamsy {

/// A window of ours under the name by which a portal puts its dialog above it. The name holds as
/// long as this object. Interface thread.
class PortalParent {
  public:
    explicit PortalParent(const QWindow* window);
    ~PortalParent();
    PortalParent(const PortalParent&) = delete;
    PortalParent& operator=(const PortalParent&) = delete;
    PortalParent(PortalParent&&) = delete;
    PortalParent& operator=(PortalParent&&) = delete;

    /// As `org.freedesktop.portal.FileChooser` takes it; empty without a window, and where the
    /// compositor exports none.
    [[nodiscard]] const QString& name() const { return name_; }

  private:
    class WaylandExport;

    std::unique_ptr<WaylandExport> wayland_; // absent on other platforms
    QString name_;
};

} // namespace tamsy

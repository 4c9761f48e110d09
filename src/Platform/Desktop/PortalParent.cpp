#include "Platform/Desktop/PortalParent.h"

#include <QGuiApplication>
#include <QWindow>
#include <qpa/qplatformnativeinterface.h>

#include <string_view>
#include <wayland-client.h>
#include <xdg-foreign-unstable-v2.h>

namespace tamsy {
namespace {

template <auto destroy>
struct Destroyed {
    void operator()(auto* object) const { destroy(object); }
};
template <typename Object, auto destroy>
using Owned = std::unique_ptr<Object, Destroyed<destroy>>;

void* nativeResource(const QByteArray& name) {
    return QGuiApplication::platformNativeInterface()->nativeResourceForIntegration(name);
}

void* surfaceOf(const QWindow& window) {
    return QGuiApplication::platformNativeInterface()->nativeResourceForWindow(
        QByteArrayLiteral("surface"), const_cast<QWindow*>(&window)); // NOLINT: only looked up
}

} // namespace

/// Uses Qt's connection to the compositor with a queue of its own, so that waiting for an answer
/// doesn't dispatch Qt's events.
class PortalParent::WaylandExport {
  public:
    WaylandExport(wl_display* display, wl_surface* surface)
        : queue_(wl_display_create_queue(display)),
          wrapper_(static_cast<wl_display*>(wl_proxy_create_wrapper(display))) {
        wl_proxy_set_queue(reinterpret_cast<wl_proxy*>(wrapper_.get()), queue_.get()); // NOLINT
        registry_.reset(wl_display_get_registry(wrapper_.get()));
        static constexpr wl_registry_listener globals{.global = bindExporter,
                                                      .global_remove = [](auto...) {}};
        wl_registry_add_listener(registry_.get(), &globals, this);
        wl_display_roundtrip_queue(display, queue_.get());
        if (!exporter_)
            return;
        exported_.reset(zxdg_exporter_v2_export_toplevel(exporter_.get(), surface));
        static constexpr zxdg_exported_v2_listener handles{
            .handle = [](void* self, zxdg_exported_v2* /*exported*/, const char* handle) {
                static_cast<WaylandExport*>(self)->handle_ = QString::fromUtf8(handle);
            }};
        zxdg_exported_v2_add_listener(exported_.get(), &handles, this);
        wl_display_roundtrip_queue(display, queue_.get());
    }

    [[nodiscard]] const QString& handle() const { return handle_; }

  private:
    static void bindExporter(void* self, wl_registry* registry, std::uint32_t number,
                             const char* interface, std::uint32_t /*version*/) {
        if (std::string_view(interface) == zxdg_exporter_v2_interface.name)
            static_cast<WaylandExport*>(self)->exporter_.reset(static_cast<zxdg_exporter_v2*>(
                wl_registry_bind(registry, number, &zxdg_exporter_v2_interface, 1)));
    }

    // The queue must outlive its objects.
    Owned<wl_event_queue, wl_event_queue_destroy> queue_;
    Owned<wl_display, wl_proxy_wrapper_destroy> wrapper_;
    Owned<wl_registry, wl_registry_destroy> registry_;
    Owned<zxdg_exporter_v2, zxdg_exporter_v2_destroy> exporter_;
    Owned<zxdg_exported_v2, zxdg_exported_v2_destroy> exported_;
    QString handle_;
};

PortalParent::PortalParent(const QWindow* window) {
    if (window == nullptr || window->handle() == nullptr)
        return;
    if (QGuiApplication::platformName() == QLatin1String("xcb")) {
        name_ = QStringLiteral("x11:%1").arg(window->winId(), 0, 16);
        return;
    }
    auto* display = static_cast<wl_display*>(nativeResource(QByteArrayLiteral("wl_display")));
    auto* surface = static_cast<wl_surface*>(surfaceOf(*window));
    if (display == nullptr || surface == nullptr)
        return;
    wayland_ = std::make_unique<WaylandExport>(display, surface);
    if (!wayland_->handle().isEmpty())
        name_ = QStringLiteral("wayland:") + wayland_->handle();
}

PortalParent::~PortalParent() = default;

} // namespace tamsy

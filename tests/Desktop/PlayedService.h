#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTest>
#include <gtest/gtest.h>

namespace tamsy {

const QString portalService = u"org.freedesktop.portal.Desktop"_qs;
const QString portalPath = u"/org/freedesktop/portal/desktop"_qs;

/// A service that a test plays on a connection of its own, from `offer` on.
class PlayedService : public QDBusVirtualObject {
  public:
    ~PlayedService() override {
        bus.unregisterObject(path_, QDBusConnection::UnregisterTree);
        bus.unregisterService(name_);
    }

    void offer(const QString& name = portalService, const QString& path = portalPath) {
        name_ = name;
        path_ = path;
        ASSERT_TRUE(bus.registerVirtualObject(path, this, QDBusConnection::SubPath));
        ASSERT_TRUE(bus.registerService(name));
    }

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

  protected:
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"played"_qs);

  private:
    QString name_;
    QString path_;
};

} // namespace tamsy

#pragma once

#include "Platform/Mpris/MprisProperties.h"

#include <QDBusConnection>
#include <QObject>
#include <QTest>
#include <QVariantMap>
#include <gtest/gtest.h>

#include <vector>

namespace tamsy {

const QString busName = u"org.mpris.MediaPlayer2.tamsy-music"_qs;

/// What a panel would hear.
class Listener : public QObject {
    Q_OBJECT

  public:
    explicit Listener(QDBusConnection bus) {
        bus.connect(busName, mpris::objectPath, mpris::propertiesInterface, u"PropertiesChanged"_qs,
                    this, SLOT(change(QString, QVariantMap, QStringList)));
        bus.connect(busName, mpris::objectPath, mpris::playerInterface, u"Seeked"_qs, this,
                    SLOT(jump(qlonglong)));
    }
    std::vector<QVariantMap> changes;
    std::vector<qlonglong> jumps;

    /// Does `act`, and waits until something was heard and the next announcement would have come.
    template <typename Act>
    void hear(Act act) {
        changes.clear();
        jumps.clear();
        act();
        EXPECT_TRUE(QTest::qWaitFor([this] { return !changes.empty() || !jumps.empty(); }));
        QTest::qWait(200);
    }

  private Q_SLOTS:
    void change(const QString& interface, const QVariantMap& changed, const QStringList& gone) {
        EXPECT_EQ(interface, QString(mpris::playerInterface));
        EXPECT_TRUE(gone.isEmpty());
        changes.push_back(changed);
    }
    void jump(qlonglong position) { jumps.push_back(position); }
};

} // namespace tamsy

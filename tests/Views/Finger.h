#pragma once

#include <QPointingDevice>
#include <QTest>
#include <QWindow>

namespace tamsy {

/// A finger on the touch screen of a window.
class Finger {
  public:
    explicit Finger(QWindow* window) : window_(window) {}

    void press(QPoint point) {
        QTest::touchEvent(window_, screen_).press(0, point);
        QTest::qWait(10);
    }
    void moveTo(QPoint point) {
        QTest::touchEvent(window_, screen_).move(0, point);
        QTest::qWait(10);
    }
    void release(QPoint point) {
        QTest::touchEvent(window_, screen_).release(0, point);
        QTest::qWait(10);
    }
    void tap(QPoint point) {
        press(point);
        release(point);
    }
    void drag(QPoint from, QPoint to) {
        press(from);
        for (int step = 1; step <= 10; ++step)
            moveTo(from + (to - from) * step / 10);
        release(to);
    }

  private:
    QWindow* const window_;
    // Devices stay registered until the program ends, so all fingers share one.
    QPointingDevice* const screen_ = [] {
        static QPointingDevice* const screen = QTest::createTouchDevice();
        return screen;
    }();
};

} // namespace tamsy

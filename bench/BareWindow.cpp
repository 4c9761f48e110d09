// A minimal Qt Quick program, the baseline for the player's start.

#include <QGuiApplication>
#include <QQuickView>

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QQuickView view;
    view.setColor(Qt::white);
    view.resize(1100, 720);
    view.show();
    return QGuiApplication::exec();
}

// The least a Qt Quick program can be: what the player's start is measured against.

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

#include <QRect>
QRect area() {
    return QGuiApplication::primaryScreen()->geometry();
}

// Planted for the check of translated statics: a function-local static keeps the first translation.
#include <QCoreApplication>
#include <QObject>

class Greeting : public QObject {
    Q_OBJECT

public:
    // Fine: translated at each call.
    static QString fresh() { return tr("Hello; again"); }

    static const QString& cached() {
        static const QString text = tr("Hello");
        return text;
    }
};

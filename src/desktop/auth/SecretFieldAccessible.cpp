#include "desktop/auth/SecretFieldAccessible.h"

#include <QQuickItem>
#include <QQuickWindow>
#include <QTimer>

namespace {

// TextInput.EchoMode
constexpr int normalEcho = 0;
constexpr int noEcho = 1;

bool isTextInput(const QQuickItem* item) {
    return item && item->inherits("QQuickTextInput");
}

bool hidesItsText(const QQuickItem* item) {
    return isTextInput(item) && item->property("echoMode").toInt() != normalEcho;
}

// Qt Quick asks for a field's interface while the field is being made, before its echo mode is
// set: the field's Accessible attached object announces itself as soon as QML creates it. Such a
// field first gets Qt's interface, which Qt keeps; once the field is made and hides its text,
// that interface is dropped, so the next question makes this one.
void replaceOnceMade(QQuickItem* field) {
    QTimer::singleShot(0, field, [field] {
        QAccessibleInterface* current = QAccessible::queryAccessibleInterface(field);
        if (hidesItsText(field) && current && !dynamic_cast<SecretFieldAccessible*>(current)) {
            QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(current));
            QAccessible::queryAccessibleInterface(field);
        }
    });
}

QAccessibleInterface* secretFieldFactory(const QString& className, QObject* object) {
    auto* item = qobject_cast<QQuickItem*>(object);
    if (!isTextInput(item)) {
        return nullptr;
    }
    if (hidesItsText(item)) {
        return new SecretFieldAccessible(item);
    }
    // Asked once for each of the object's classes, the most derived first.
    if (className == QLatin1String(object->metaObject()->className())) {
        replaceOnceMade(item);
    }
    return nullptr;
}

} // namespace

void SecretFieldAccessible::install() {
    // Factories installed later are asked first, so this one comes before Qt Quick's.
    static const bool installed = [] {
        QAccessible::installFactory(&secretFieldFactory);
        return true;
    }();
    Q_UNUSED(installed);
}

SecretFieldAccessible::SecretFieldAccessible(QQuickItem* field)
    : QAccessibleObject(field) {}

QQuickItem* SecretFieldAccessible::field() const {
    return static_cast<QQuickItem*>(object());
}

QString SecretFieldAccessible::maskedText() const {
    const int echoMode = field()->property("echoMode").toInt();
    if (echoMode == normalEcho) {
        return field()->property("text").toString();
    }
    if (echoMode == noEcho) {
        return {};
    }
    // Counted without reading the text itself.
    const QString mask = field()->property("passwordCharacter").toString();
    return QString(field()->property("length").toInt(), mask.isEmpty() ? QChar(u'*') : mask.front());
}

QWindow* SecretFieldAccessible::window() const {
    return field()->window();
}

QAccessibleInterface* SecretFieldAccessible::parent() const {
    // The nearest ancestor that assistive technology sees; the window stands for its content item.
    QQuickWindow* window = field()->window();
    const QQuickItem* content = window ? window->contentItem() : nullptr;
    for (QQuickItem* ancestor = field()->parentItem(); ancestor; ancestor = ancestor->parentItem()) {
        if (ancestor == content) {
            break;
        }
        if (QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(ancestor)) {
            return accessible;
        }
    }
    return window ? QAccessible::queryAccessibleInterface(window) : nullptr;
}

QAccessibleInterface* SecretFieldAccessible::child(int /*index*/) const {
    return nullptr;
}

int SecretFieldAccessible::childCount() const {
    return 0;
}

int SecretFieldAccessible::indexOfChild(const QAccessibleInterface* /*child*/) const {
    return -1;
}

QAccessible::Role SecretFieldAccessible::role() const {
    return QAccessible::EditableText;
}

QAccessible::State SecretFieldAccessible::state() const {
    const QQuickItem* item = field();
    QAccessible::State state;
    state.passwordEdit = true;
    state.focusable = true;
    state.focused = item->hasActiveFocus();
    state.selectableText = true;
    state.readOnly = item->property("readOnly").toBool();
    state.editable = !state.readOnly;
    state.disabled = !item->isEnabled();
    state.invisible =
        !item->window() || !item->window()->isVisible() || !item->isVisible() || qFuzzyIsNull(item->opacity());
    return state;
}

QString SecretFieldAccessible::text(QAccessible::Text type) const {
    switch (type) {
    case QAccessible::Name: {
        const QString name = field()->property("accessibleName").toString();
        return name.isEmpty() ? field()->property("placeholderText").toString() : name;
    }
    case QAccessible::Value:
        return maskedText();
    default:
        return {};
    }
}

QRect SecretFieldAccessible::rect() const {
    const QQuickWindow* window = field()->window();
    if (!window) {
        return {};
    }
    const QRectF scene = field()->mapRectToScene(field()->boundingRect());
    return {window->mapToGlobal(scene.topLeft().toPoint()), scene.size().toSize()};
}

void* SecretFieldAccessible::interface_cast(QAccessible::InterfaceType type) {
    return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this) : nullptr;
}

void SecretFieldAccessible::selection(int selectionIndex, int* startOffset, int* endOffset) const {
    const bool selected = selectionIndex == 0 && selectionCount() == 1;
    *startOffset = selected ? field()->property("selectionStart").toInt() : 0;
    *endOffset = selected ? field()->property("selectionEnd").toInt() : 0;
}

int SecretFieldAccessible::selectionCount() const {
    return field()->property("selectionStart").toInt() != field()->property("selectionEnd").toInt() ? 1 : 0;
}

void SecretFieldAccessible::addSelection(int startOffset, int endOffset) {
    setSelection(0, startOffset, endOffset);
}

void SecretFieldAccessible::removeSelection(int selectionIndex) {
    if (selectionIndex == 0) {
        QMetaObject::invokeMethod(field(), "deselect");
    }
}

void SecretFieldAccessible::setSelection(int selectionIndex, int startOffset, int endOffset) {
    if (selectionIndex == 0) {
        QMetaObject::invokeMethod(field(), "select", Q_ARG(int, startOffset), Q_ARG(int, endOffset));
    }
}

int SecretFieldAccessible::cursorPosition() const {
    return field()->property("cursorPosition").toInt();
}

void SecretFieldAccessible::setCursorPosition(int position) {
    field()->setProperty("cursorPosition", position);
}

QString SecretFieldAccessible::text(int startOffset, int endOffset) const {
    const QString shown = maskedText();
    const int start = qBound(0, startOffset, static_cast<int>(shown.size()));
    const int end = endOffset < 0 ? static_cast<int>(shown.size()) : qBound(start, endOffset, int(shown.size()));
    return shown.mid(start, end - start);
}

int SecretFieldAccessible::characterCount() const {
    return static_cast<int>(maskedText().size());
}

QRect SecretFieldAccessible::characterRect(int offset) const {
    const QQuickWindow* window = field()->window();
    QRectF local;
    if (!window ||
        !QMetaObject::invokeMethod(field(), "positionToRectangle", Q_RETURN_ARG(QRectF, local), Q_ARG(int, offset))) {
        return {};
    }
    // The caret's rectangle at the offset, as wide as the distance to the next one.
    QRectF next;
    if (offset < characterCount() &&
        QMetaObject::invokeMethod(field(), "positionToRectangle", Q_RETURN_ARG(QRectF, next), Q_ARG(int, offset + 1))) {
        local.setRight(next.left());
    }
    const QRectF scene = field()->mapRectToScene(local);
    return {window->mapToGlobal(scene.topLeft().toPoint()), scene.size().toSize()};
}

int SecretFieldAccessible::offsetAtPoint(const QPoint& point) const {
    const QPointF local = field()->mapFromGlobal(QPointF(point));
    if (!field()->contains(local)) {
        return -1;
    }
    // TextInput's positionAt() takes JavaScript arguments only; the characters are few.
    const int count = characterCount();
    for (int offset = 0; offset < count; ++offset) {
        QRectF next;
        QMetaObject::invokeMethod(field(), "positionToRectangle", Q_RETURN_ARG(QRectF, next), Q_ARG(int, offset + 1));
        if (local.x() < next.left()) {
            return offset;
        }
    }
    return count;
}

void SecretFieldAccessible::scrollToSubstring(int startIndex, int /*endIndex*/) {
    QMetaObject::invokeMethod(field(), "ensureVisible", Q_ARG(int, startIndex));
}

QString SecretFieldAccessible::attributes(int /*offset*/, int* startOffset, int* endOffset) const {
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
}

#pragma once

#include <QAccessibleObject>

class QQuickItem;

// What assistive technology sees of a Qt Quick text field whose echo mode hides its text, such as
// the token field: a password text with a name, whose text is the mask the screen shows, never
// the secret. Qt 6.4's own interface for such a field drops its Accessible.name (a password edit
// reports none) and hands its text out in clear. The name comes from the field's accessibleName
// property, else from its placeholder text.
class SecretFieldAccessible : public QAccessibleObject, public QAccessibleTextInterface {
public:
    // Makes every such field get this interface; call before the first window is shown.
    static void install();

    explicit SecretFieldAccessible(QQuickItem* field);

    QWindow* window() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text type) const override;
    QRect rect() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    void selection(int selectionIndex, int* startOffset, int* endOffset) const override;
    int selectionCount() const override;
    void addSelection(int startOffset, int endOffset) override;
    void removeSelection(int selectionIndex) override;
    void setSelection(int selectionIndex, int startOffset, int endOffset) override;
    int cursorPosition() const override;
    void setCursorPosition(int position) override;
    QString text(int startOffset, int endOffset) const override;
    int characterCount() const override;
    QRect characterRect(int offset) const override;
    int offsetAtPoint(const QPoint& point) const override;
    void scrollToSubstring(int startIndex, int endIndex) override;
    QString attributes(int offset, int* startOffset, int* endOffset) const override;

private:
    QQuickItem* field() const;
    // One mask character for each character of the text, as the field draws it.
    QString maskedText() const;
};

#pragma once

#include <QObject>
#include <QStringList>

class AttachmentListModel;
class QClipboard;
class QDropEvent;
class QKeyEvent;
class QWindow;

// Takes files into the draft from the popover window: Ctrl+V with files or an image on the
// clipboard, and files or images dropped anywhere on it. Plain text on the clipboard is left to the
// text field that has the focus; a file on the clipboard beats text.
class AttachmentInput : public QObject {
    Q_OBJECT

public:
    AttachmentInput(QWindow& popover, AttachmentListModel& attachments, QClipboard& clipboard);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // True when the key press pasted attachments and is used up.
    bool pasted(const QKeyEvent& event);
    bool dropped(QDropEvent& event);

    QWindow& m_popover;
    AttachmentListModel& m_attachments;
    QClipboard& m_clipboard;
    // The formats a drop may bring: file URLs, then images.
    QStringList m_dropTypes;
};

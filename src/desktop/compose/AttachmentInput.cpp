#include "desktop/compose/AttachmentInput.h"

#include "core/compose/AttachmentStaging.h"
#include "core/compose/DropHandling.h"
#include "desktop/compose/AttachmentListModel.h"

#include <QClipboard>
#include <QKeyEvent>
#include <QMimeData>
#include <QWindow>
#include <algorithm>

namespace {
bool offersFileURL(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    return std::ranges::any_of(urls, [](const QUrl& url) { return url.isLocalFile(); });
}

// Files win over text; an image counts only when no text comes with it, since a copied text
// often brings a picture of itself along.
bool offersPastableAttachments(const QMimeData& data) {
    return offersFileURL(data) || (!data.hasText() && data.hasImage());
}

} // namespace

AttachmentInput::AttachmentInput(QWindow& popover, AttachmentListModel& attachments, QClipboard& clipboard)
    : m_popover(popover)
    , m_attachments(attachments)
    , m_clipboard(clipboard) {
    popover.installEventFilter(this);
}

bool AttachmentInput::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &m_popover) {
        return false;
    }
    switch (event->type()) {
    case QEvent::KeyPress:
        return pasted(static_cast<const QKeyEvent&>(*event));
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto& drag = static_cast<QDragMoveEvent&>(*event);
        // Told by the formats alone, so that a drag moving over the window decodes nothing. The
        // list asks the image plugins, so it is made at the first drag rather than at start-up.
        if (m_dropTypes.isEmpty()) {
            m_dropTypes = DropHandling::acceptedTypes();
        }
        const bool usable = DropHandling::bringsAcceptedType(*drag.mimeData(), m_dropTypes);
        m_attachments.setDropTargeted(usable);
        if (usable) {
            drag.acceptProposedAction();
        } else {
            drag.ignore();
        }
        return true;
    }
    case QEvent::DragLeave:
        m_attachments.setDropTargeted(false);
        return true;
    case QEvent::Drop:
        return dropped(static_cast<QDropEvent&>(*event));
    default:
        return false;
    }
}

bool AttachmentInput::pasted(const QKeyEvent& event) {
    if (!m_popover.isVisible() || event.key() != Qt::Key_V || event.modifiers() != Qt::ControlModifier) {
        return false;
    }
    const QMimeData* data = m_clipboard.mimeData();
    if (!data || !offersPastableAttachments(*data)) {
        return false;
    }
    const QList<StagedAttachment> staged = AttachmentStaging::stage(*data);
    if (staged.isEmpty()) {
        return false;
    }
    m_attachments.append(staged);
    return true;
}

bool AttachmentInput::dropped(QDropEvent& event) {
    m_attachments.setDropTargeted(false);
    const bool taken = DropHandling::handle(
        *event.mimeData(), this, [this](const QList<StagedAttachment>& staged) { m_attachments.append(staged); });
    if (taken) {
        event.acceptProposedAction();
    }
    return true;
}

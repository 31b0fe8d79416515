#include "desktop/compose/AttachmentListModel.h"

#include "core/compose/AttachmentSizeLimits.h"
#include "core/support/ByteCountText.h"
#include "core/support/Overloaded.h"

namespace {
// A picture pasted from memory is staged without a size, but its file is already written, so the list
// shows the size of that file.
std::optional<qint64> shownSize(const StagedAttachment& attachment) {
    return attachment.fileSizeBytes ? attachment.fileSizeBytes : AttachmentSizeLimits::fileSize(attachment.fileURL);
}

QString noteOn(const StagedAttachment& attachment) {
    const std::optional<qint64> size = shownSize(attachment);
    if (!size) {
        return {};
    }
    return std::visit(Overloaded{[](const AttachmentSizeLimits::Ok&) { return QString(); },
                                 [](const AttachmentSizeLimits::Warning& warning) { return warning.message; },
                                 [](const AttachmentSizeLimits::Rejected& rejected) { return rejected.message; }},
                      AttachmentSizeLimits::validate(*size));
}

AttachmentListModel::Kind kindOf(const StagedAttachment& attachment) {
    if (attachment.isImage) {
        return AttachmentListModel::Image;
    }
    return attachment.isVideo ? AttachmentListModel::Video : AttachmentListModel::File;
}
} // namespace

AttachmentListModel::AttachmentListModel(TaskDraft& draft, QObject* parent)
    : QAbstractListModel(parent)
    , m_draft(draft)
    , m_rows(draft.attachments()) {
    connect(&draft, &TaskDraft::attachmentsChanged, this, &AttachmentListModel::followDraft);
}

void AttachmentListModel::followDraft() {
    const QList<StagedAttachment> next = m_draft.attachments();
    const qsizetype before = m_rows.size();
    const auto sameAttachment = [](const StagedAttachment& a, const StagedAttachment& b) { return a.id == b.id; };
    qsizetype head = 0;
    while (head < before && head < next.size() && sameAttachment(m_rows.at(head), next.at(head))) {
        ++head;
    }
    qsizetype tail = 0;
    while (tail < before - head && tail < next.size() - head &&
           sameAttachment(m_rows.at(before - 1 - tail), next.at(next.size() - 1 - tail))) {
        ++tail;
    }
    // Rows that stay, by their place in the new list, whose record is not the same any more.
    QList<int> changed;
    for (qsizetype row = 0; row < head; ++row) {
        if (m_rows.at(row) != next.at(row)) {
            changed.append(static_cast<int>(row));
        }
    }
    for (qsizetype fromEnd = 1; fromEnd <= tail; ++fromEnd) {
        if (m_rows.at(before - fromEnd) != next.at(next.size() - fromEnd)) {
            changed.append(static_cast<int>(next.size() - fromEnd));
        }
    }

    const qsizetype removed = before - head - tail;
    if (removed > 0) {
        beginRemoveRows({}, static_cast<int>(head), static_cast<int>(head + removed - 1));
        m_rows.remove(head, removed);
        endRemoveRows();
    }
    const qsizetype inserted = next.size() - head - tail;
    if (inserted > 0) {
        beginInsertRows({}, static_cast<int>(head), static_cast<int>(head + inserted - 1));
        m_rows = next;
        endInsertRows();
    } else {
        m_rows = next;
    }
    for (const int row : changed) {
        emit dataChanged(index(row), index(row));
    }
    if (m_rows.size() != before) {
        emit countChanged();
    }
}

int AttachmentListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

QVariant AttachmentListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const StagedAttachment& attachment = m_rows.at(index.row());
    switch (role) {
    case FilenameRole:
        return attachment.filename;
    case SizeTextRole: {
        const std::optional<qint64> size = shownSize(attachment);
        return size ? formattedByteCount(*size) : QString();
    }
    case NoteRole:
        return noteOn(attachment);
    case KindRole:
        return QVariant::fromValue(kindOf(attachment));
    case FileURLRole:
        return attachment.fileURL;
    default:
        return {};
    }
}

QHash<int, QByteArray> AttachmentListModel::roleNames() const {
    return {{FilenameRole, "filename"},
            {SizeTextRole, "sizeText"},
            {NoteRole, "note"},
            {KindRole, "kind"},
            {FileURLRole, "fileURL"}};
}

void AttachmentListModel::setDropTargeted(bool targeted) {
    if (m_isDropTargeted != targeted) {
        m_isDropTargeted = targeted;
        emit isDropTargetedChanged();
    }
}

void AttachmentListModel::append(const QList<StagedAttachment>& attachments) {
    m_draft.appendAttachments(attachments);
}

void AttachmentListModel::remove(int row) {
    if (row >= 0 && row < count()) {
        m_draft.removeAttachment(m_rows.at(row).id);
    }
}

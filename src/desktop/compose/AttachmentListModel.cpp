#include "compose/AttachmentListModel.h"

#include "compose/AttachmentSizeLimits.h"
#include "support/Overloaded.h"

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
    , m_draft(draft) {
    connect(&draft, &TaskDraft::attachmentsChanged, this, [this] {
        beginResetModel();
        endResetModel();
        emit countChanged();
    });
}

int AttachmentListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_draft.attachments().size());
}

QVariant AttachmentListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
        return {};
    }
    const StagedAttachment& attachment = m_draft.attachments().at(index.row());
    switch (role) {
    case FilenameRole:
        return attachment.filename;
    case SizeTextRole: {
        const std::optional<qint64> size = shownSize(attachment);
        return size ? AttachmentSizeLimits::formattedByteCount(*size) : QString();
    }
    case NoteRole:
        return noteOn(attachment);
    case KindRole:
        return QVariant::fromValue(kindOf(attachment));
    default:
        return {};
    }
}

QHash<int, QByteArray> AttachmentListModel::roleNames() const {
    return {{FilenameRole, "filename"}, {SizeTextRole, "sizeText"}, {NoteRole, "note"}, {KindRole, "kind"}};
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
        m_draft.removeAttachment(m_draft.attachments().at(row).id);
    }
}

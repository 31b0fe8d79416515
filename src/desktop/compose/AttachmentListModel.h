#pragma once

#include "core/compose/TaskDraft.h"

#include <QAbstractListModel>
#include <QList>
#include <QtQml/qqmlregistration.h>

// The draft's attachments as rows for the popover: name, size and what the size limits say of it.
// Also tells the page while a drag with files is over the popover.
class AttachmentListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(bool isDropTargeted READ isDropTargeted NOTIFY isDropTargetedChanged)

public:
    // What an attachment is, for its badge.
    enum Kind { File, Image, Video };
    Q_ENUM(Kind)

    enum Role {
        FilenameRole = Qt::UserRole + 1,
        // "524.3 MB", or empty for an image staged from memory.
        SizeTextRole,
        // The size warning or rejection, or empty.
        NoteRole,
        // Its Kind.
        KindRole,
        // The local file URL of its bytes.
        FileURLRole,
    };

    explicit AttachmentListModel(TaskDraft& draft, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return rowCount(); }
    bool isDropTargeted() const { return m_isDropTargeted; }
    void setDropTargeted(bool targeted);

    // Adds to the end of the draft's list.
    void append(const QList<StagedAttachment>& attachments);
    // Takes the row out of the draft; its file stays where it is.
    Q_INVOKABLE void remove(int row);

signals:
    void countChanged();
    void isDropTargetedChanged();

private:
    // Brings the rows to the draft's list with row-level signals: the rows both lists share at their
    // start and end stay, those between are removed and the new ones inserted, and a row that stays
    // but whose record changed is reported changed.
    void followDraft();

    TaskDraft& m_draft;
    // The draft's list as the views were last told it.
    QList<StagedAttachment> m_rows;
    bool m_isDropTargeted = false;
};

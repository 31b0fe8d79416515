#pragma once

#include "core/compose/TaskDraft.h"
#include "core/submit/SubmitController.h"
#include "desktop/compose/FieldChipsViewModel.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

// The composer's text fields and its submit button: the draft's name and description, the mode
// (one task, or one task per line), the lines of bulk mode, and whether a submission can start.
class ComposerViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString descriptionText READ descriptionText WRITE setDescriptionText NOTIFY descriptionTextChanged)
    Q_PROPERTY(bool isBulkMode READ isBulkMode WRITE setBulkMode NOTIFY isBulkModeChanged)
    Q_PROPERTY(QString bulkLines READ bulkLines WRITE setBulkLines NOTIFY bulkLinesChanged)
    Q_PROPERTY(bool canSubmit READ canSubmit NOTIFY canSubmitChanged)
    // The field chips, the same in both modes.
    Q_PROPERTY(FieldChipsViewModel* fieldChips READ fieldChips CONSTANT)

public:
    ComposerViewModel(TaskDraft& draft, SubmitController& submit, FieldChipsViewModel& fieldChips,
                      QObject* parent = nullptr);

    QString name() const { return m_draft.name(); }
    void setName(const QString& name) { m_draft.setName(name); }
    QString descriptionText() const { return m_draft.descriptionText(); }
    void setDescriptionText(const QString& text) { m_draft.setDescriptionText(text); }
    bool isBulkMode() const { return m_submit.isBulkMode(); }
    void setBulkMode(bool bulk) { m_submit.setBulkMode(bulk); }
    QString bulkLines() const { return m_submit.bulkLines(); }
    void setBulkLines(const QString& lines) { m_submit.setBulkLines(lines); }
    bool canSubmit() const { return m_submit.canSubmit(); }
    FieldChipsViewModel* fieldChips() const { return &m_fieldChips; }

    // The submit button and Ctrl+Return; nothing while a submission can't start.
    Q_INVOKABLE void submit();

signals:
    void nameChanged();
    void descriptionTextChanged();
    void isBulkModeChanged();
    void bulkLinesChanged();
    void canSubmitChanged();

private:
    TaskDraft& m_draft;
    SubmitController& m_submit;
    FieldChipsViewModel& m_fieldChips;
};

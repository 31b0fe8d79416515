#include "desktop/compose/ComposerViewModel.h"

ComposerViewModel::ComposerViewModel(TaskDraft& draft, SubmitController& submit, FieldChipsViewModel& fieldChips,
                                     QObject* parent)
    : QObject(parent)
    , m_draft(draft)
    , m_submit(submit)
    , m_fieldChips(fieldChips) {
    connect(&m_draft, &TaskDraft::nameChanged, this, &ComposerViewModel::nameChanged);
    connect(&m_draft, &TaskDraft::descriptionTextChanged, this, &ComposerViewModel::descriptionTextChanged);
    connect(&m_submit, &SubmitController::isBulkModeChanged, this, &ComposerViewModel::isBulkModeChanged);
    connect(&m_submit, &SubmitController::bulkLinesChanged, this, &ComposerViewModel::bulkLinesChanged);
    connect(&m_submit, &SubmitController::canSubmitChanged, this, &ComposerViewModel::canSubmitChanged);
}

void ComposerViewModel::submit() {
    if (m_submit.canSubmit()) {
        m_submit.submitDraft();
    }
}

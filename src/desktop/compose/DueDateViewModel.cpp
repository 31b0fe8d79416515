#include "desktop/compose/DueDateViewModel.h"

#include "core/compose/DueDateChoices.h"
#include "core/compose/ReminderLeads.h"

namespace {
const QString dayFormat = QStringLiteral("yyyy-MM-dd");
constexpr int hourWithoutDate = 17;
} // namespace

DueDateViewModel::DueDateViewModel(TaskDraft& draft, Clock clock, QObject* parent)
    : QObject(parent)
    , m_draft(draft)
    , m_clock(std::move(clock)) {
    connect(&m_draft, &TaskDraft::dueDateChanged, this, &DueDateViewModel::dueDateChanged);
    connect(&m_draft, &TaskDraft::includeDueTimeChanged, this, &DueDateViewModel::includeDueTimeChanged);
    connect(&m_draft, &TaskDraft::reminderEnabledChanged, this, &DueDateViewModel::reminderEnabledChanged);
    connect(&m_draft, &TaskDraft::reminderLeadMinutesChanged, this, &DueDateViewModel::reminderLeadMinutesChanged);
}

QDateTime DueDateViewModel::localDueDate() const {
    const std::optional<QDateTime>& dueDate = m_draft.dueDate();
    return dueDate && dueDate->isValid() ? dueDate->toTimeZone(QTimeZone::systemTimeZone()) : QDateTime();
}

bool DueDateViewModel::hasDueDate() const {
    return localDueDate().isValid();
}

QString DueDateViewModel::dateText() const {
    return hasDueDate() ? localDueDate().date().toString(dayFormat) : QString();
}

int DueDateViewModel::hour() const {
    return hasDueDate() ? localDueDate().time().hour() : hourWithoutDate;
}

int DueDateViewModel::minute() const {
    return hasDueDate() ? localDueDate().time().minute() : 0;
}

QStringList DueDateViewModel::reminderLeadLabels() const {
    QStringList labels;
    for (const qint64 minutes : ReminderLeads::choices()) {
        labels.append(ReminderLeads::label(minutes));
    }
    return labels;
}

int DueDateViewModel::reminderLeadIndex() const {
    return static_cast<int>(ReminderLeads::choices().indexOf(m_draft.reminderLeadMinutes()));
}

void DueDateViewModel::setReminderLeadIndex(int index) {
    if (index >= 0 && index < ReminderLeads::choices().size()) {
        m_draft.setReminderLeadMinutes(ReminderLeads::choices().at(index));
    }
}

void DueDateViewModel::chooseQuick(const QDateTime& dueDate) {
    m_draft.setDueDate(dueDate);
    m_draft.setIncludeDueTime(true);
}

void DueDateViewModel::chooseTodayAtFive() {
    chooseQuick(DueDateChoices::todayAtFive(m_clock));
}

void DueDateViewModel::chooseTomorrowAtNine() {
    chooseQuick(DueDateChoices::tomorrowAtNine(m_clock));
}

bool DueDateViewModel::setDate(const QString& dateText, int hour, int minute) {
    const QDateTime dueDate =
        DueDateChoices::onDay(QDate::fromString(dateText.trimmed(), dayFormat), QTime(hour, minute));
    if (!dueDate.isValid()) {
        return false;
    }
    m_draft.setDueDate(dueDate);
    return true;
}

void DueDateViewModel::clear() {
    m_draft.setDueDate(std::nullopt);
    m_draft.setReminderEnabled(false);
}

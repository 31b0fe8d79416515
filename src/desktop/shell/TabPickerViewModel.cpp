#include "desktop/shell/TabPickerViewModel.h"

TabPickerViewModel::TabPickerViewModel(AppState& app, QObject* parent)
    : QObject(parent)
    , m_app(app) {
    connect(&m_app, &AppState::activeTabChanged, this, &TabPickerViewModel::activeTabChanged);
}

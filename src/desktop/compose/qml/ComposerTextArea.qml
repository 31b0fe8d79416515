import QtQuick
import QtQuick.Controls

// A text area of the composer: plain text that wraps, where Tab and Shift+Tab move the keyboard on
// as in the rest of the page instead of typing a tab.
TextArea {
    id: root

    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    Keys.onPressed: event => {
        if (event.key !== Qt.Key_Tab && event.key !== Qt.Key_Backtab)
            return;
        const forward = event.key === Qt.Key_Tab;
        const next = root.nextItemInFocusChain(forward);
        if (next)
            next.forceActiveFocus(forward ? Qt.TabFocusReason : Qt.BacktabFocusReason);
        event.accepted = true;
    }
}

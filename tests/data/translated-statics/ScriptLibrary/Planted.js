// Planted for the check of translated statics: a JavaScript library is evaluated once, so its
// top-level variables keep the text of the first translation.
.pragma library

var title = qsTr("Tasks")

function label(count) {
    return qsTr("%n tasks", "", count)
}

#include "desktop/shell/SymbolImageProvider.h"

#include <QHash>

namespace {

constexpr int defaultExtent = 16;

// Each symbol with the icon-naming names that show it, best first. Our own picture is
// :/symbols/<symbol>.svg.
const QHash<QString, QStringList>& themeNames() {
    static const QHash<QString, QStringList> names{
        {QStringLiteral("checkmark.circle.fill"),
         {QStringLiteral("emblem-ok-symbolic"), QStringLiteral("emblem-default")}},
        {QStringLiteral("exclamationmark.triangle.fill"), {QStringLiteral("dialog-warning")}},
        {QStringLiteral("xmark.circle.fill"), {QStringLiteral("dialog-error")}},
        {QStringLiteral("xmark.octagon.fill"), {QStringLiteral("process-stop")}},
        {QStringLiteral("xmark"), {QStringLiteral("window-close-symbolic"), QStringLiteral("window-close")}},
        {QStringLiteral("checkmark"), {QStringLiteral("object-select-symbolic"), QStringLiteral("object-select")}},
        {QStringLiteral("minus.circle"), {QStringLiteral("list-remove-symbolic"), QStringLiteral("list-remove")}},
        {QStringLiteral("arrow.triangle.branch"), {QStringLiteral("vcs-branch")}},
        {QStringLiteral("doc.text"), {QStringLiteral("text-x-generic-symbolic"), QStringLiteral("text-x-generic")}},
        {QStringLiteral("list.bullet"), {QStringLiteral("view-list-symbolic"), QStringLiteral("view-list")}},
        {QStringLiteral("arrow.clockwise"), {QStringLiteral("view-refresh-symbolic"), QStringLiteral("view-refresh")}},
        {QStringLiteral("magnifyingglass"), {QStringLiteral("edit-find-symbolic"), QStringLiteral("edit-find")}},
        {QStringLiteral("circlebadge.fill"), {QStringLiteral("media-record-symbolic")}},
        {QStringLiteral("person.crop.circle"),
         {QStringLiteral("avatar-default-symbolic"), QStringLiteral("user-identity")}},
        {QStringLiteral("line.3.horizontal.decrease.circle"), {QStringLiteral("view-filter")}},
        {QStringLiteral("arrow.turn.down.right"), {}},
        {QStringLiteral("link"), {QStringLiteral("insert-link-symbolic"), QStringLiteral("insert-link")}},
        {QStringLiteral("bell"), {QStringLiteral("appointment-soon-symbolic"), QStringLiteral("appointment-soon")}},
        {QStringLiteral("ellipsis"), {QStringLiteral("view-more-symbolic"), QStringLiteral("view-more")}},
        {QStringLiteral("doc.on.doc"), {QStringLiteral("edit-copy-symbolic"), QStringLiteral("edit-copy")}},
        {QStringLiteral("doc.fill"), {QStringLiteral("text-x-generic-symbolic"), QStringLiteral("text-x-generic")}},
        {QStringLiteral("film.fill"), {QStringLiteral("video-x-generic-symbolic"), QStringLiteral("video-x-generic")}},
        {QStringLiteral("building.2.crop.circle"),
         {QStringLiteral("network-workgroup-symbolic"), QStringLiteral("network-workgroup")}},
        {QStringLiteral("chevron.down"), {QStringLiteral("pan-down-symbolic"), QStringLiteral("go-down")}},
        {QStringLiteral("checkmark"), {QStringLiteral("object-select-symbolic"), QStringLiteral("object-select")}},
        {QStringLiteral("star"), {QStringLiteral("non-starred-symbolic"), QStringLiteral("non-starred")}},
        {QStringLiteral("star.fill"), {QStringLiteral("starred-symbolic"), QStringLiteral("starred")}},
        {QStringLiteral("ellipsis.circle"), {QStringLiteral("view-more-symbolic"), QStringLiteral("view-more")}},
        {QStringLiteral("person"), {QStringLiteral("avatar-default-symbolic"), QStringLiteral("user-identity")}},
        {QStringLiteral("calendar"),
         {QStringLiteral("x-office-calendar-symbolic"), QStringLiteral("x-office-calendar")}},
        {QStringLiteral("flag"), {QStringLiteral("flag")}},
        {QStringLiteral("tag"), {QStringLiteral("tag")}},
        {QStringLiteral("chevron.down.circle"), {}},
        {QStringLiteral("tag.circle"), {}},
        {QStringLiteral("calendar.circle"), {}},
        {QStringLiteral("square"), {}},
        {QStringLiteral("checkmark.square.fill"), {}},
        {QStringLiteral("number.circle"), {}},
        {QStringLiteral("link.circle"), {}},
        {QStringLiteral("envelope.circle"), {}},
        {QStringLiteral("phone.circle"), {}},
        {QStringLiteral("textformat.abc"), {}},
        {QStringLiteral("slider.horizontal.3"), {QStringLiteral("configure"), QStringLiteral("preferences-other")}},
        {QStringLiteral("gearshape"),
         {QStringLiteral("preferences-system-symbolic"), QStringLiteral("preferences-system")}},
        {QStringLiteral("minus.circle.fill"), {QStringLiteral("list-remove-symbolic"), QStringLiteral("list-remove")}},
        {QStringLiteral("trash"), {QStringLiteral("user-trash-symbolic"), QStringLiteral("user-trash")}},
        {QStringLiteral("pencil"), {QStringLiteral("document-edit-symbolic"), QStringLiteral("document-edit")}},
        {QStringLiteral("paperclip"), {QStringLiteral("mail-attachment-symbolic"), QStringLiteral("mail-attachment")}},
        {QStringLiteral("circle"), {}},
        {QStringLiteral("record.circle"), {QStringLiteral("media-record")}},
        {QStringLiteral("pause.circle.fill"), {}},
        {QStringLiteral("pause.fill"),
         {QStringLiteral("media-playback-pause-symbolic"), QStringLiteral("media-playback-pause")}},
        {QStringLiteral("play.fill"),
         {QStringLiteral("media-playback-start-symbolic"), QStringLiteral("media-playback-start")}},
        {QStringLiteral("stop.fill"),
         {QStringLiteral("media-playback-stop-symbolic"), QStringLiteral("media-playback-stop")}},
        {QStringLiteral("mic.fill"),
         {QStringLiteral("audio-input-microphone-symbolic"), QStringLiteral("audio-input-microphone")}},
        {QStringLiteral("mic.slash.fill"), {QStringLiteral("microphone-disabled-symbolic")}},
        {QStringLiteral("person.crop.circle.fill"), {}},
        {QStringLiteral("display"), {QStringLiteral("video-display-symbolic"), QStringLiteral("video-display")}},
        {QStringLiteral("crop"), {QStringLiteral("transform-crop")}},
        {QStringLiteral("macwindow"), {QStringLiteral("window-new")}},
        {QStringLiteral("square.and.arrow.down"),
         {QStringLiteral("document-save-symbolic"), QStringLiteral("document-save")}},
    };
    return names;
}

} // namespace

SymbolImageProvider::SymbolImageProvider()
    : QQuickImageProvider(QQuickImageProvider::Pixmap) {}

QIcon SymbolImageProvider::icon(const QString& symbol) {
    const auto names = themeNames().constFind(symbol);
    if (names == themeNames().constEnd()) {
        return {};
    }
    for (const QString& name : *names) {
        if (QIcon::hasThemeIcon(name)) {
            return QIcon::fromTheme(name);
        }
    }
    return QIcon(QStringLiteral(":/symbols/%1.svg").arg(symbol));
}

QPixmap SymbolImageProvider::requestPixmap(const QString& id, QSize* size, const QSize& requestedSize) {
    const QSize extent =
        requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(defaultExtent, defaultExtent);
    QPixmap picture = icon(id).pixmap(extent);
    if (size) {
        *size = picture.size();
    }
    return picture;
}

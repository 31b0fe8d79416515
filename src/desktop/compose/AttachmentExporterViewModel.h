#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>
#include <functional>
#include <optional>

// "Save to Disk…" of an attachment: asks where, in the desktop's save dialog opening on the
// Downloads folder with the file's name proposed, copies the file there over any file of that name,
// and tells the page what went wrong. The dialogs are the page's; tests choose the place instead.
class AttachmentExporterViewModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The app builds the popover's view models.")
    Q_PROPERTY(QString failure READ failure NOTIFY failureChanged)

public:
    // Given the folder to start in and the file proposed there, the place chosen, or nothing when
    // the user cancels.
    using DestinationChooser = std::function<std::optional<QUrl>(const QUrl& folder, const QUrl& proposedFile)>;

    explicit AttachmentExporterViewModel(QObject* parent = nullptr);

    // The system's description of the last failure, until it is dismissed; empty when there is none.
    const QString& failure() const { return m_failure; }
    // Chooses places without the page's dialog, for tests; an empty chooser gives the dialog back.
    void setDestinationChooser(DestinationChooser chooser) { m_chooser = std::move(chooser); }

    // Asks where to save the local file `fileURL`, proposing `suggestedName` in the Downloads folder.
    Q_INVOKABLE void save(const QUrl& fileURL, const QString& suggestedName);
    // The save dialog's answer: copies the file asked about to `destination`.
    Q_INVOKABLE void saveTo(const QUrl& destination);
    // The save dialog was cancelled: nothing is saved.
    Q_INVOKABLE void cancel() { m_pending.reset(); }
    Q_INVOKABLE void dismissFailure();

signals:
    // The page opens its save dialog on `folder` with `proposedFile` selected, and answers with
    // saveTo() or cancel().
    void destinationWanted(const QUrl& folder, const QUrl& proposedFile);
    // A save failed; `failure` says why.
    void failed();
    void failureChanged();

private:
    void setFailure(const QString& failure);

    DestinationChooser m_chooser;
    // The file whose destination is being asked for.
    std::optional<QUrl> m_pending;
    QString m_failure;
};

#include "core/hierarchy/SpaceEntries.h"

#include "core/api/Endpoints.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <exception>

namespace SpaceEntries {
namespace {
// NorvaneClient offers no way to cancel a call. The session is the parent of its replies, so the
// request running for `path` is found there and aborted; its call then fails at once.
void abortRequest(const NorvaneClient& client, const QString& path) {
    const QString suffix = u'/' + path;
    const QList<QNetworkReply*> replies = client.session()->findChildren<QNetworkReply*>(Qt::FindDirectChildrenOnly);
    for (QNetworkReply* reply : replies) {
        if (reply->isRunning() && reply->url().path().endsWith(suffix)) {
            reply->abort();
        }
    }
}

// Runs one of a pair of reads; when it fails, the request of the other one is aborted.
template <typename T>
QCoro::Task<T> abortingSibling(QCoro::Task<T> request, const NorvaneClient& client, QString siblingPath) {
    std::exception_ptr failure;
    try {
        co_return co_await std::move(request);
    } catch (...) {
        failure = std::current_exception();
    }
    abortRequest(client, siblingPath);
    std::rethrow_exception(failure);
}

bool wasAborted(const std::exception_ptr& failure) {
    try {
        std::rethrow_exception(failure);
    } catch (const NVError& error) {
        const auto* network = error.as<NVError::Network>();
        return network && network->error == QNetworkReply::OperationCanceledError;
    } catch (...) {
        return false;
    }
}

void appendLists(QList<ListEntry>& entries, const ListEntry& place, const QList<NVList>& lists) {
    for (const NVList& list : lists) {
        if (!list.archived.value_or(false)) {
            ListEntry entry = place;
            entry.list = list;
            entries.append(std::move(entry));
        }
    }
}
} // namespace

QCoro::Task<QList<ListEntry>> ofWorkspace(const NorvaneClient& client, QString workspaceID) {
    QCoro::Task<QList<Space>> spacesRequest = Endpoints::getSpaces(client, workspaceID);
    const QList<Space> spaces = co_await std::move(spacesRequest);
    QList<ListEntry> entries;
    for (const Space& space : spaces) {
        QCoro::Task<QList<ListEntry>> spaceRequest = ofSpace(client, workspaceID, space);
        entries.append(co_await std::move(spaceRequest));
    }
    co_return entries;
}

QCoro::Task<QList<ListEntry>> ofSpace(const NorvaneClient& client, QString workspaceID, Space space) {
    // Both requests go out now: QCoro's tasks start at once.
    QCoro::Task<QList<Folder>> foldersRequest =
        abortingSibling(Endpoints::getFolders(client, space.id), client, Endpoints::folderlessListsPath(space.id));
    QCoro::Task<QList<NVList>> listsRequest =
        abortingSibling(Endpoints::getFolderlessLists(client, space.id), client, Endpoints::foldersPath(space.id));
    QList<Folder> folders;
    QList<NVList> folderless;
    std::exception_ptr foldersFailure;
    std::exception_ptr listsFailure;
    try {
        folders = co_await std::move(foldersRequest);
    } catch (...) {
        foldersFailure = std::current_exception();
    }
    try {
        folderless = co_await std::move(listsRequest);
    } catch (...) {
        listsFailure = std::current_exception();
    }
    // The failure that came first travels on, not the abort it caused.
    if (foldersFailure && !(listsFailure && wasAborted(foldersFailure))) {
        std::rethrow_exception(foldersFailure);
    }
    if (listsFailure) {
        std::rethrow_exception(listsFailure);
    }

    const ListEntry place{
        workspaceID, space.id, space.name, std::nullopt, std::nullopt, {}, space.statuses.value_or(QList<NVStatus>())};
    QList<ListEntry> entries;
    appendLists(entries, place, folderless);
    for (const Folder& folder : folders) {
        ListEntry inFolder = place;
        inFolder.folderID = folder.id;
        inFolder.folderName = folder.name;
        appendLists(entries, inFolder, folder.lists.value_or(QList<NVList>()));
    }
    co_return entries;
}

} // namespace SpaceEntries

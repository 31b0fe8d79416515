#pragma once

#include <QString>
#include <QUrl>
#include <optional>

// The pictures a person chose to stand behind them in the camera overlay, kept as copies of their own
// in ~/.local/share/NorvaneBar/facecam-backgrounds.
namespace FacecamBackgroundStore {
// Copies the local file `from` into the folder, made with its parents where missing, under a new
// UUID with the file's extension, when it has one; the path of the copy, or none when anything fails.
std::optional<QString> importImage(const QUrl& from);
} // namespace FacecamBackgroundStore

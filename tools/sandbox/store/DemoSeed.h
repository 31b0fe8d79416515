#pragma once

#include <QDateTime>
#include <QJsonObject>

// The built-in seeds, in the form SeedLoader reads. The demo is made the same way on every run
// (a fixed pseudo-random sequence); only its dates follow the clock, so that overdue, today, later
// and undated tasks always exist.
namespace DemoSeed {

// The first demo user: 250 open tasks in the first workspace, so My Day reads three pages of 100.
inline constexpr qint64 firstUserID = 4810001;
inline constexpr qint64 secondUserID = 4810002;
// Signs in to the workspace of hostile names alone; its own name is markup.
inline constexpr qint64 hostileNamesUserID = 4810007;

// The demo; pictures in its hostile names point at webBase, the sandbox's own address.
QJsonObject demo(const QDateTime& now, const QString& webBase);

// The two demo users in one workspace without spaces.
QJsonObject empty();

} // namespace DemoSeed

#pragma once

#include <QString>

// Sizes as every text shows them: decimal units, MB with one decimal below 1000 MB and GB with two
// from there, trailing zeros dropped: "524.3 MB", "998.6 MB", "1 GB", "1.07 GB".
QString formattedByteCount(qint64 bytes);

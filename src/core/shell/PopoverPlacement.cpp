#include "core/shell/PopoverPlacement.h"

#include <algorithm>

namespace PopoverPlacement {

QPoint topLeft(std::optional<QRect> anchor, QPoint pointer, QSize popover, QRect available) {
    const QRect from = anchor && anchor->isValid() ? *anchor : QRect(pointer, QSize(1, 1));

    // Below the anchor when it fits (a panel at the top), else above it (a panel at the bottom).
    int y = from.bottom() + 1 + gap;
    if (y + popover.height() > available.bottom() + 1) {
        y = from.top() - gap - popover.height();
    }
    int x = from.left() + from.width() / 2 - popover.width() / 2;

    // A popover larger than the screen keeps its top left corner visible.
    x = std::max(available.left(), std::min(x, available.right() + 1 - popover.width()));
    y = std::max(available.top(), std::min(y, available.bottom() + 1 - popover.height()));
    return {x, y};
}

} // namespace PopoverPlacement

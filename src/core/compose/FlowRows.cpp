#include "core/compose/FlowRows.h"

#include <algorithm>

namespace FlowRows {

QList<Row> computeRows(const QList<QSizeF>& sizes, qreal spacing, qreal proposedWidth) {
    QList<Row> rows;
    for (qsizetype index = 0; index < sizes.size(); ++index) {
        const QSizeF& size = sizes.at(index);
        if (rows.isEmpty() || rows.last().width + spacing + size.width() > proposedWidth) {
            rows.append(Row{{index}, size.width(), size.height()});
            continue;
        }
        Row& row = rows.last();
        row.indices.append(index);
        row.width += spacing + size.width();
        row.height = std::max(row.height, size.height());
    }
    return rows;
}

QSizeF sizeThatFits(const QList<Row>& rows, qreal spacing) {
    qreal width = 0;
    qreal height = 0;
    for (const Row& row : rows) {
        width = std::max(width, row.width);
        height += row.height;
    }
    if (!rows.isEmpty()) {
        height += spacing * static_cast<qreal>(rows.size() - 1);
    }
    return {width, height};
}

QList<QPointF> placeSubviews(const QList<Row>& rows, const QList<QSizeF>& sizes, qreal spacing) {
    QList<QPointF> positions(sizes.size());
    qreal y = 0;
    for (const Row& row : rows) {
        qreal x = 0;
        for (const qsizetype index : row.indices) {
            const QSizeF& size = sizes.at(index);
            positions[index] = QPointF(x, y + (row.height - size.height()) / 2);
            x += size.width() + spacing;
        }
        y += row.height + spacing;
    }
    return positions;
}

} // namespace FlowRows

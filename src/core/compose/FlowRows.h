#pragma once

#include <QList>
#include <QPointF>
#include <QSizeF>

// The arithmetic of a flow of chips: children left to right, wrapping into rows.
namespace FlowRows {

struct Row {
    QList<qsizetype> indices;
    qreal width = 0;
    // The tallest child's height.
    qreal height = 0;

    bool operator==(const Row&) const = default;
};

// Each child, at its own size, joins the current row while the row's width plus the spacing plus
// its width stays within the proposed width; otherwise it opens a new row. A row is never empty,
// so a child wider than the proposal stands alone.
QList<Row> computeRows(const QList<QSizeF>& sizes, qreal spacing, qreal proposedWidth);

// The widest row by the sum of the rows' heights and the spacing between them.
QSizeF sizeThatFits(const QList<Row>& rows, qreal spacing);

// Where each child's top left corner goes: rows from the top, each child centred vertically in its
// row, spacing between children and between rows.
QList<QPointF> placeSubviews(const QList<Row>& rows, const QList<QSizeF>& sizes, qreal spacing);

} // namespace FlowRows

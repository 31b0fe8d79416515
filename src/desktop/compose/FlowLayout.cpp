#include "desktop/compose/FlowLayout.h"

#include "core/compose/FlowRows.h"

FlowLayout::FlowLayout(QQuickItem* parent)
    : QQuickItem(parent) {}

void FlowLayout::setSpacing(qreal spacing) {
    if (qFuzzyCompare(m_spacing, spacing)) {
        return;
    }
    m_spacing = spacing;
    emit spacingChanged();
    polish();
}

void FlowLayout::itemChange(ItemChange change, const ItemChangeData& data) {
    if (change == ItemChildAddedChange) {
        // A child that grows, shrinks, shows or hides moves the others.
        connect(data.item, &QQuickItem::implicitWidthChanged, this, &QQuickItem::polish);
        connect(data.item, &QQuickItem::implicitHeightChanged, this, &QQuickItem::polish);
        connect(data.item, &QQuickItem::visibleChanged, this, &QQuickItem::polish);
        polish();
    } else if (change == ItemChildRemovedChange) {
        disconnect(data.item, nullptr, this, nullptr);
        polish();
    }
    QQuickItem::itemChange(change, data);
}

void FlowLayout::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (!qFuzzyCompare(newGeometry.width(), oldGeometry.width())) {
        polish();
    }
}

void FlowLayout::updatePolish() {
    QList<QQuickItem*> placed;
    QList<QSizeF> sizes;
    for (QQuickItem* child : childItems()) {
        const QSizeF size(child->implicitWidth(), child->implicitHeight());
        if (child->isVisible() && size.width() > 0 && size.height() > 0) {
            placed.append(child);
            sizes.append(size);
        }
    }
    const QList<FlowRows::Row> rows = FlowRows::computeRows(sizes, m_spacing, width());
    const QList<QPointF> positions = FlowRows::placeSubviews(rows, sizes, m_spacing);
    for (qsizetype index = 0; index < placed.size(); ++index) {
        placed.at(index)->setPosition(positions.at(index));
        placed.at(index)->setSize(sizes.at(index));
    }
    const QSizeF size = FlowRows::sizeThatFits(rows, m_spacing);
    setImplicitSize(size.width(), size.height());
}

#pragma once

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

// Lays its children out left to right at their implicit sizes, wrapping into rows within its width,
// each child centred vertically in its row. Its implicit size is what the rows take. As with Qt's
// positioners, invisible children and children without a size (a Repeater) take no place.
class FlowLayout : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)

public:
    explicit FlowLayout(QQuickItem* parent = nullptr);

    qreal spacing() const { return m_spacing; }
    void setSpacing(qreal spacing);

signals:
    void spacingChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    void updatePolish() override;

private:
    qreal m_spacing = 0;
};

#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>
#include <functional>

// A list of fields, each with a switch that says whether the composer shows it. Where the switch
// stands is read from and written to the settings through the two functions the owner gives.
class FieldToggleModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The settings window builds its view models.")

public:
    enum Role { LabelRole = Qt::UserRole + 1, CheckedRole };
    Q_ENUM(Role)

    struct Row {
        // The field's key: a built-in field's raw value or a custom field's id.
        QString key;
        QString label;
    };
    using IsOn = std::function<bool(const QString& key)>;
    using SetOn = std::function<void(const QString& key, bool on)>;

    FieldToggleModel(IsOn isOn, SetOn setOn, QObject* parent = nullptr);

    void setRows(QList<Row> rows);
    // The switches read the settings again.
    void refreshChecked();

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    // Moves the switch of a row: CheckedRole only.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    IsOn m_isOn;
    SetOn m_setOn;
    QList<Row> m_rows;
};

#include "app/Kestrin/rows/RecordListModel.h"

#include <QSet>

namespace kestrin::app {

RecordListModel::RecordListModel(const QMetaObject &record, QObject *parent)
    : QAbstractListModel(parent)
    , m_record(record)
    , m_id(record.property(record.indexOfProperty("identifier"))) {
    Q_ASSERT(m_id.isValid());
}

int RecordListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RecordListModel::data(const QModelIndex &index, int role) const {
    const int property = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || property < 0 ||
        property >= m_record.propertyCount())
        return {};
    return m_record.property(property).readOnGadget(m_values.at(index.row()).constData());
}

QHash<int, QByteArray> RecordListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int property = 0; property < m_record.propertyCount(); ++property)
        names.insert(Qt::UserRole + property, m_record.property(property).name());
    return names;
}

QString RecordListModel::idOf(const QVariant &value) const {
    return m_id.readOnGadget(value.constData()).toString();
}

int RecordListModel::rowOf(const QString &id, int from) const {
    for (int row = from; row < count(); ++row) {
        if (idOf(m_values.at(row)) == id)
            return row;
    }
    return -1;
}

void RecordListModel::setValues(const QVariantList &values) {
    const int before = count();
    removeOthers(values);
    for (int row = 0; row < values.size(); ++row)
        putAt(row, values.at(row));
    // Left over are repetitions of an id.
    cutTo(static_cast<int>(values.size()));
    if (count() != before)
        Q_EMIT countChanged();
}

void RecordListModel::removeOthers(const QVariantList &values) {
    QSet<QString> kept;
    for (const QVariant &value : values)
        kept.insert(idOf(value));
    for (int row = count() - 1; row >= 0; --row) {
        if (kept.contains(idOf(m_values.at(row))))
            continue;
        beginRemoveRows({}, row, row);
        m_values.removeAt(row);
        endRemoveRows();
    }
}

void RecordListModel::putAt(int row, const QVariant &value) {
    const int found = rowOf(idOf(value), row);
    if (found < 0) {
        beginInsertRows({}, row, row);
        m_values.insert(row, value);
        endInsertRows();
        return;
    }
    if (found != row) {
        beginMoveRows({}, found, found, {}, row);
        m_values.move(found, row);
        endMoveRows();
    }
    if (m_values.at(row) != value) {
        m_values[row] = value;
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void RecordListModel::cutTo(int count) {
    if (count >= m_values.size())
        return;
    beginRemoveRows({}, count, static_cast<int>(m_values.size()) - 1);
    m_values.resize(count);
    endRemoveRows();
}

} // namespace kestrin::app

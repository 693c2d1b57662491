#include "app/Kestrin/rows/RecordListModel.h"

#include <QMetaProperty>
#include <QSet>

namespace kestrin::app {

namespace {

const QMetaObject &pageRow = PageRow::staticMetaObject;

} // namespace

int RecordListModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant RecordListModel::data(const QModelIndex &index, int role) const {
    const int property = role - Qt::UserRole;
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || property < 0 ||
        property >= pageRow.propertyCount())
        return {};
    return pageRow.property(property).readOnGadget(&m_rows.at(index.row()));
}

QHash<int, QByteArray> RecordListModel::roleNames() const {
    QHash<int, QByteArray> names;
    for (int property = 0; property < pageRow.propertyCount(); ++property)
        names.insert(Qt::UserRole + property, pageRow.property(property).name());
    return names;
}

int RecordListModel::rowOf(const QString &id, int from) const {
    for (int row = from; row < count(); ++row) {
        if (m_rows.at(row).id == id)
            return row;
    }
    return -1;
}

void RecordListModel::setRows(const QList<PageRow> &rows) {
    const int before = count();
    removeOthers(rows);
    for (int row = 0; row < rows.size(); ++row)
        putAt(row, rows.at(row));
    // Left over are repetitions of an id.
    cutTo(static_cast<int>(rows.size()));
    if (count() != before)
        Q_EMIT countChanged();
}

void RecordListModel::removeOthers(const QList<PageRow> &rows) {
    QSet<QString> kept;
    for (const PageRow &row : rows)
        kept.insert(row.id);
    for (int row = count() - 1; row >= 0; --row) {
        if (kept.contains(m_rows.at(row).id))
            continue;
        beginRemoveRows({}, row, row);
        m_rows.removeAt(row);
        endRemoveRows();
    }
}

void RecordListModel::putAt(int row, const PageRow &value) {
    const int found = rowOf(value.id, row);
    if (found < 0) {
        beginInsertRows({}, row, row);
        m_rows.insert(row, value);
        endInsertRows();
        return;
    }
    if (found != row) {
        beginMoveRows({}, found, found, {}, row);
        m_rows.move(found, row);
        endMoveRows();
    }
    if (m_rows.at(row) != value) {
        m_rows[row] = value;
        Q_EMIT dataChanged(index(row), index(row));
    }
}

void RecordListModel::cutTo(int count) {
    if (count >= m_rows.size())
        return;
    beginRemoveRows({}, count, static_cast<int>(m_rows.size()) - 1);
    m_rows.resize(count);
    endRemoveRows();
}

} // namespace kestrin::app

#pragma once

#include "app/Kestrin/rows/PageRows.h"

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>

namespace kestrin::app {

/// A list for views: a role for every property of a row, named like it. Rows are told apart by their
/// identifier; when a new list is set, a row whose record is still there stays the same row, and with it what
/// a view has built for it, the keyboard's place included.
class RecordListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The lists come with MacProtectionState.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    using QAbstractListModel::QAbstractListModel;

    void setRows(const QList<PageRow> &rows);
    int count() const { return static_cast<int>(m_rows.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();

  private:
    int rowOf(const QString &id, int from) const;
    void removeOthers(const QList<PageRow> &rows);
    void putAt(int row, const PageRow &value);
    void cutTo(int count);

    QList<PageRow> m_rows;
};

} // namespace kestrin::app

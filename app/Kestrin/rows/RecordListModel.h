#pragma once

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <QMetaProperty>

namespace kestrin::app {

/// A list of equal records for views: a role for every property of the record, named like it. Records are
/// told apart by their property `identifier`; when a new list is set, a row whose record is still there stays
/// the same row, and with it what a view has built for it, the keyboard's place included.
class RecordListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The lists come with MacProtectionState.")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    /// `record` describes the gadgets of the list, which have a property `identifier` of text.
    explicit RecordListModel(const QMetaObject &record, QObject *parent = nullptr);

    template <class Record>
    void setRecords(const QList<Record> &records) {
        QVariantList values;
        values.reserve(records.size());
        for (const Record &record : records)
            values.append(QVariant::fromValue(record));
        setValues(values);
    }

    int count() const { return static_cast<int>(m_values.size()); }

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void countChanged();

  private:
    QString idOf(const QVariant &value) const;
    int rowOf(const QString &id, int from) const;
    void setValues(const QVariantList &values);
    void removeOthers(const QVariantList &values);
    void putAt(int row, const QVariant &value);
    void cutTo(int count);

    const QMetaObject &m_record;
    const QMetaProperty m_id;
    QVariantList m_values;
};

} // namespace kestrin::app

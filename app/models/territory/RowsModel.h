#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <algorithm>

namespace vorle {

/// A list of values for a view, one role ("row") each. Main thread.
class RowsModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the application")
    Q_PROPERTY(int count READ count NOTIFY countChanged FINAL)

public:
    static constexpr int RowRole = Qt::UserRole;

    using QAbstractListModel::QAbstractListModel;

    int count() const { return rowCount(); }
    QHash<int, QByteArray> roleNames() const override { return {{RowRole, "row"}}; }

Q_SIGNALS:
    void countChanged();
};

/// Rows that are told apart by a key. What changes is told row by row, and the list never reset:
/// who looks at a row, or has the keyboard in it, keeps it. `Row` is a gadget with `key()` and
/// `==`.
template <class Row>
class KeyedRows final : public RowsModel {
public:
    using RowsModel::RowsModel;

    int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }
    QVariant data(const QModelIndex &index, int role) const override {
        return role == RowRole && checkIndex(index, CheckIndexOption::IndexIsValid)
                   ? QVariant::fromValue(m_rows.at(index.row()))
                   : QVariant();
    }
    const QList<Row> &rows() const { return m_rows; }

    /// Shows these, whose keys differ.
    void show(const QList<Row> &wanted) {
        const qsizetype before = m_rows.size();
        dropAllBut(wanted);
        for (qsizetype at = 0; at < wanted.size(); ++at) {
            const Row &row = wanted.at(at);
            const qsizetype now = indexOf(row, at);
            if (now < 0) {
                const auto position = static_cast<int>(at);
                beginInsertRows({}, position, position);
                m_rows.insert(at, row);
                endInsertRows();
                continue;
            }
            if (now != at) {
                const auto from = static_cast<int>(now);
                beginMoveRows({}, from, from, {}, static_cast<int>(at));
                m_rows.move(now, at);
                endMoveRows();
            }
            if (!(m_rows.at(at) == row)) {
                m_rows[at] = row;
                const QModelIndex cell = index(static_cast<int>(at));
                Q_EMIT dataChanged(cell, cell);
            }
        }
        if (m_rows.size() != before) {
            Q_EMIT countChanged();
        }
    }

private:
    void dropAllBut(const QList<Row> &wanted) {
        for (qsizetype at = m_rows.size() - 1; at >= 0; --at) {
            const auto isRow = [&](const Row &row) { return row.key() == m_rows.at(at).key(); };
            if (std::none_of(wanted.cbegin(), wanted.cend(), isRow)) {
                const auto position = static_cast<int>(at);
                beginRemoveRows({}, position, position);
                m_rows.removeAt(at);
                endRemoveRows();
            }
        }
    }
    qsizetype indexOf(const Row &row, qsizetype from) const {
        for (qsizetype at = from; at < m_rows.size(); ++at) {
            if (m_rows.at(at).key() == row.key()) {
                return at;
            }
        }
        return -1;
    }

    QList<Row> m_rows;
};

} // namespace vorle

#pragma once

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <vector>

namespace tvrx {

class ConnectionLink;

// An open query result. It holds all its rows from the moment it opens, so that other
// statements on the same connection (the record classes nest queries inside open results
// all the time) never disturb it.
//
// Values are QVariants; a database null is an invalid QVariant. Date-time columns read
// as local QDateTime with the wall-clock time that was stored. Every operation on a
// closed result fails with 3704; a field read at end or start of data with 3021; an
// unknown field name with 3265.
//
// An updatable result (DbConnection::OpenUpdatable) covers one table: fields can be
// assigned and Update() writes the current row back by its key; AddNew() starts a new
// row that Update() inserts; Delete() removes the current row. Moving off a row with
// assigned fields writes it first, as the pharmacy's original data layer did.
class RecordSet {
public:
    RecordSet() = default;

    // A read-only result over rows made in memory (procedures that compute their rows).
    static RecordSet fromRows(QStringList fieldNames, QList<QVariantList> rows);

    // 1 open, 0 closed.
    int State() const { return open_ ? 1 : 0; }
    void Close();

    bool Eof() const;
    bool Bof() const;
    qint32 RecordCount() const;
    void MoveFirst();
    void MoveLast();
    void MoveNext();
    void MovePrevious();
    // "Column = 'value'" or "Column = 12": moves to the first row at or after the current
    // one whose column equals the value (text ignoring letter case), or to end of data.
    void Find(const QString& criterion);

    // By name, ignoring letter case, or by 0-based position.
    QVariant Fields(const QString& name) const;
    QVariant Fields(int index) const;
    // A flag read as the original platform's boolean: -1 for any non-zero value, 0 for
    // zero, null for null.
    QVariant asBoolean(const QString& name) const;
    int FieldCount() const;
    QStringList FieldNames() const;

    bool Updatable() const { return !table_.isEmpty(); }
    void setField(const QString& name, const QVariant& value);
    void Update();
    void AddNew();
    // Runs on each row AddNew starts, before the caller assigns anything: the values a
    // list gives its new rows. What it assigns is written by the same Update as the rest.
    void setNewRowDefaults(std::function<void(RecordSet& row)> defaults);
    void CancelUpdate();
    void Delete();

private:
    friend class ConnectionLink;

    struct Row {
        QVariantList values;
        bool deleted = false;
    };

    void requireOpen() const;
    void requireCurrent() const;
    void requireUpdatable() const;
    int indexOf(const QString& name) const;
    int visibleCount() const { return static_cast<int>(names_.size()); }
    void skipDeleted(int step);
    void flushEdit();
    void writeChanges();
    void insertRow();
    QVariant keyValue() const;
    QVariant storedForm(int column, const QVariant& value) const;

    bool open_ = false;
    // Visible fields first; an updatable result may carry its table's key behind them.
    QStringList names_;
    QStringList allNames_;
    // The visible fields' positions by case-folded name, made at the first lookup by name:
    // a record reads some eighty fields of one row by name.
    mutable QHash<QString, int> positions_;
    std::vector<Row> rows_;
    // Rows removed with Delete, counted so that RecordCount and Eof stay constant-time.
    qint32 deletedRows_ = 0;
    int position_ = 0;

    std::shared_ptr<ConnectionLink> link_;
    QString table_;
    int keyIndex_ = -1;
    QStringList bitColumns_;
    std::vector<bool> changed_;
    // The current row as it was before its first assignment, for CancelUpdate.
    QVariantList original_;
    bool adding_ = false;
    std::function<void(RecordSet&)> newRowDefaults_;
};

}  // namespace tvrx

#include "session/data/RecordSet.h"

#include "session/data/ConnectionLink.h"
#include "session/data/Dialect.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"

#include <QRegularExpression>

#include <algorithm>
#include <utility>

namespace tvrx {

namespace {

struct Criterion {
    QString column;
    QVariant value;
};

// "Column = 'value'" (a doubled quote stands for one), "Column = 12".
Criterion parseCriterion(const QString& text) {
    static const QRegularExpression form(
        QStringLiteral("^\\s*\\[?([A-Za-z_][A-Za-z0-9_.]*)\\]?\\s*=\\s*(.*?)\\s*$"));
    const auto match = form.match(text);
    if (!match.hasMatch())
        fail(err::InvalidProcedureCall, QStringLiteral("Cannot find by \"%1\".").arg(text));
    QString value = match.captured(2);
    if (value.size() >= 2 && value.startsWith(QLatin1Char('\'')) &&
        value.endsWith(QLatin1Char('\''))) {
        value = value.mid(1, value.size() - 2).replace(QStringLiteral("''"), QStringLiteral("'"));
        return {match.captured(1), value};
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    if (!isNumber)
        fail(err::InvalidProcedureCall, QStringLiteral("Cannot find by \"%1\".").arg(text));
    return {match.captured(1), number};
}

bool matches(const QVariant& field, const QVariant& wanted) {
    if (!field.isValid() || field.isNull()) return false;
    if (wanted.typeId() == QMetaType::Double) {
        bool isNumber = false;
        const double value = field.toDouble(&isNumber);
        return isNumber && value == wanted.toDouble();
    }
    return field.toString().compare(wanted.toString(), Qt::CaseInsensitive) == 0;
}

bool isNonZero(const QVariant& value) {
    if (value.typeId() == QMetaType::Bool) return value.toBool();
    if (value.typeId() == QMetaType::QString) return value.toString().trimmed().toDouble() != 0;
    return value.toDouble() != 0;
}

}  // namespace

RecordSet RecordSet::fromRows(QStringList fieldNames, QList<QVariantList> rows) {
    RecordSet result;
    result.names_ = fieldNames;
    result.allNames_ = std::move(fieldNames);
    for (auto& values : rows) result.rows_.push_back({std::move(values), false});
    result.open_ = true;
    return result;
}

void RecordSet::requireOpen() const {
    if (!open_) fail(err::ObjectClosed);
}

void RecordSet::requireCurrent() const {
    requireOpen();
    if (position_ < 0 || position_ >= static_cast<int>(rows_.size()) ||
        rows_[static_cast<size_t>(position_)].deleted) {
        fail(err::NoCurrentRecord);
    }
}

void RecordSet::requireUpdatable() const {
    requireOpen();
    if (!Updatable()) fail(err::NotUpdatable);
}

void RecordSet::Close() {
    requireOpen();
    open_ = false;
    rows_.clear();
    deletedRows_ = 0;
    adding_ = false;
    changed_.assign(changed_.size(), false);
}

bool RecordSet::Eof() const {
    requireOpen();
    return position_ >= static_cast<int>(rows_.size()) || RecordCount() == 0;
}

bool RecordSet::Bof() const {
    requireOpen();
    return position_ < 0 || RecordCount() == 0;
}

qint32 RecordSet::RecordCount() const {
    requireOpen();
    return static_cast<qint32>(rows_.size()) - deletedRows_;
}

void RecordSet::skipDeleted(int step) {
    while (position_ >= 0 && position_ < static_cast<int>(rows_.size()) &&
           rows_[static_cast<size_t>(position_)].deleted) {
        position_ += step;
    }
}

void RecordSet::MoveFirst() {
    requireOpen();
    flushEdit();
    position_ = 0;
    skipDeleted(1);
}

void RecordSet::MoveLast() {
    requireOpen();
    flushEdit();
    position_ = static_cast<int>(rows_.size()) - 1;
    skipDeleted(-1);
    if (position_ < 0) position_ = static_cast<int>(rows_.size());
}

void RecordSet::MoveNext() {
    requireOpen();
    if (Eof()) fail(err::NoCurrentRecord);
    flushEdit();
    ++position_;
    skipDeleted(1);
}

void RecordSet::MovePrevious() {
    requireOpen();
    if (Bof()) fail(err::NoCurrentRecord);
    flushEdit();
    --position_;
    skipDeleted(-1);
}

void RecordSet::Find(const QString& criterion) {
    requireCurrent();
    const Criterion wanted = parseCriterion(criterion);
    const int column = indexOf(wanted.column.section(QLatin1Char('.'), -1));
    flushEdit();
    while (position_ < static_cast<int>(rows_.size())) {
        const Row& row = rows_[static_cast<size_t>(position_)];
        if (!row.deleted && matches(row.values.at(column), wanted.value)) return;
        ++position_;
    }
}

int RecordSet::indexOf(const QString& name) const {
    if (positions_.isEmpty()) {
        // Backwards, so that of two fields with one name the first is found.
        for (int i = visibleCount() - 1; i >= 0; --i)
            positions_.insert(names_.at(i).toCaseFolded(), i);
    }
    const auto found = positions_.constFind(name.toCaseFolded());
    if (found == positions_.cend()) fail(err::ItemNotFound);
    return *found;
}

QVariant RecordSet::Fields(const QString& name) const {
    requireOpen();
    const int index = indexOf(name);
    requireCurrent();
    return rows_[static_cast<size_t>(position_)].values.at(index);
}

QVariant RecordSet::Fields(int index) const {
    requireOpen();
    if (index < 0 || index >= visibleCount()) fail(err::ItemNotFound);
    requireCurrent();
    return rows_[static_cast<size_t>(position_)].values.at(index);
}

QVariant RecordSet::asBoolean(const QString& name) const {
    QVariant value = Fields(name);
    if (!value.isValid()) return value;
    return isNonZero(value) ? -1 : 0;
}

int RecordSet::FieldCount() const {
    requireOpen();
    return visibleCount();
}

QStringList RecordSet::FieldNames() const {
    requireOpen();
    return names_;
}

QVariant RecordSet::storedForm(int column, const QVariant& value) const {
    if (!value.isValid() || value.isNull()) return QVariant();
    for (const QString& bit : bitColumns_) {
        if (bit.compare(allNames_.at(column), Qt::CaseInsensitive) == 0) {
            return isNonZero(value) ? 1 : 0;
        }
    }
    return value;
}

void RecordSet::setField(const QString& name, const QVariant& value) {
    requireUpdatable();
    const int index = indexOf(name);
    requireCurrent();
    QVariantList& values = rows_[static_cast<size_t>(position_)].values;
    if (std::find(changed_.begin(), changed_.end(), true) == changed_.end()) original_ = values;
    values[index] = storedForm(index, value);
    changed_[static_cast<size_t>(index)] = true;
}

QVariant RecordSet::keyValue() const {
    if (keyIndex_ < 0) fail(err::NotUpdatable);
    return rows_[static_cast<size_t>(position_)].values.at(keyIndex_);
}

void RecordSet::flushEdit() {
    if (!Updatable()) return;
    const bool changed = std::find(changed_.begin(), changed_.end(), true) != changed_.end();
    if (adding_ || changed) Update();
}

void RecordSet::Update() {
    requireUpdatable();
    requireCurrent();
    if (adding_) {
        insertRow();
    } else {
        writeChanges();
    }
    changed_.assign(changed_.size(), false);
    adding_ = false;
}

void RecordSet::writeChanges() {
    QStringList assignments;
    QVariantList params;
    const QVariantList& values = rows_[static_cast<size_t>(position_)].values;
    for (int i = 0; i < allNames_.size(); ++i) {
        if (!changed_[static_cast<size_t>(i)]) continue;
        assignments.append(allNames_.at(i) + QStringLiteral(" = ?"));
        params.append(values.at(i));
    }
    if (assignments.isEmpty()) return;
    const QVariant key = keyValue();
    params.append(key);
    link_->execute(
        QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
            .arg(table_, assignments.join(QStringLiteral(", ")), allNames_.at(keyIndex_)),
        params);
}

void RecordSet::insertRow() {
    QStringList columns;
    QStringList marks;
    QVariantList params;
    QVariantList& values = rows_[static_cast<size_t>(position_)].values;
    for (int i = 0; i < allNames_.size(); ++i) {
        if (!changed_[static_cast<size_t>(i)]) continue;
        columns.append(allNames_.at(i));
        marks.append(QStringLiteral("?"));
        params.append(values.at(i));
    }
    if (keyIndex_ < 0) fail(err::NotUpdatable);
    const QString key = allNames_.at(keyIndex_);
    const QString sql = columns.isEmpty()
                            ? link_->dialect().insertEmptyRow(table_, key)
                            : QStringLiteral("INSERT INTO %1 (%2) VALUES (%3) RETURNING %4")
                                  .arg(table_, columns.join(QStringLiteral(", ")),
                                       marks.join(QStringLiteral(", ")), key);
    RecordSet inserted = link_->openRecordSet(sql, params);
    if (!inserted.Eof()) values[keyIndex_] = inserted.Fields(0);
}

void RecordSet::AddNew() {
    requireUpdatable();
    flushEdit();
    QVariantList values;
    for (int i = 0; i < allNames_.size(); ++i) values.append(QVariant());
    rows_.push_back({values, false});
    position_ = static_cast<int>(rows_.size()) - 1;
    adding_ = true;
    changed_.assign(changed_.size(), false);
    if (newRowDefaults_) newRowDefaults_(*this);
}

void RecordSet::setNewRowDefaults(std::function<void(RecordSet& row)> defaults) {
    newRowDefaults_ = std::move(defaults);
}

void RecordSet::CancelUpdate() {
    requireUpdatable();
    if (adding_) {
        rows_.pop_back();
        position_ = static_cast<int>(rows_.size());
        adding_ = false;
    } else if (std::find(changed_.begin(), changed_.end(), true) != changed_.end()) {
        rows_[static_cast<size_t>(position_)].values = original_;
    }
    changed_.assign(changed_.size(), false);
}

void RecordSet::Delete() {
    requireUpdatable();
    requireCurrent();
    if (adding_) {
        CancelUpdate();
        return;
    }
    const QVariant key = keyValue();
    link_->execute(
        QStringLiteral("DELETE FROM %1 WHERE %2 = ?").arg(table_, allNames_.at(keyIndex_)), {key});
    rows_[static_cast<size_t>(position_)].deleted = true;
    ++deletedRows_;
    changed_.assign(changed_.size(), false);
}

}  // namespace tvrx

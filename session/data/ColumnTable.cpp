#include "session/data/ColumnTable.h"

#include "session/data/BoundText.h"
#include "session/data/Dialect.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

#include <QtGlobal>

namespace tvrx::columns {

namespace {

bool isNull(const QVariant& value) {
    return !value.isValid() || value.isNull();
}

// A date member of the platform always holds a date; an unset one is the zero date.
QDateTime dateOf(const QVariant& value) {
    const QDateTime date = value.toDateTime();
    return date.isValid() ? date : conv::ZeroDate();
}

QVariant fieldOf(const RecordSet& rs, const ColumnSpec& column) {
    return column.read.position >= 0 ? rs.Fields(column.read.position) : rs.Fields(column.name);
}

// A number written into a statement as its plain decimal text, as the database reads it.
QVariant numberWritten(const ColumnSpec& column, const QVariant& value) {
    switch (column.type) {
        case ValueType::Double:
        case ValueType::Currency:
            return conv::Val(conv::PlainNumber(value.toDouble()));
        case ValueType::Boolean:
            return value.toBool() ? -1 : 0;
        case ValueType::Date:
            return dateOf(value);
        default:
            return value;
    }
}

// A value between quotes: a text as it is; any other property as its own value, which is
// what the database makes of the text.
QVariant quotedWritten(const ColumnSpec& column, const QVariant& value) {
    switch (column.type) {
        case ValueType::Text:
            return textOf(value);
        case ValueType::Date:
            return dateOf(value);
        default:
            return value;
    }
}

QVariant dateWritten(const ColumnSpec& column, const QVariant& value) {
    const QDateTime date = dateOf(value);
    const QString text = column.write.picture.isEmpty()
                             ? conv::DateTimeText(date)
                             : conv::FormatDate(date, column.write.picture);
    return conv::ToDate(text);
}

// The property's value as the write forms take it: a text member never hands on a null,
// and currency keeps four places.
QVariant writtenValue(ValueType type, const QVariant& value) {
    if (type == ValueType::Text) return textOf(value);
    // A currency member of the platform held four decimal places whatever was assigned
    // to it; the database must not round a fifth place its own way.
    if (type == ValueType::Currency && !isNull(value)) return conv::RoundCurrency(value.toDouble());
    return value;
}

}  // namespace

bool holdsDate(const QVariant& value) {
    switch (value.typeId()) {
        case QMetaType::QDateTime:
            return value.toDateTime().isValid();
        case QMetaType::QDate:
            return value.toDate().isValid();
        case QMetaType::QString:
            return Dialect::dateTimeFromText(value.toString()).isValid();
        default:
            return false;
    }
}

QString textOf(const QVariant& value) {
    if (isNull(value)) return QStringLiteral("");
    switch (value.typeId()) {
        case QMetaType::QString: {
            // Joined to a text, a null QString gives an empty text like any other.
            const QString text = value.toString();
            return text.isNull() ? QStringLiteral("") : text;
        }
        case QMetaType::Bool:
            return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
        case QMetaType::Double:
        case QMetaType::Float:
            return conv::NumberText(value.toDouble());
        case QMetaType::QDateTime:
            return conv::DateTimeText(value.toDateTime());
        case QMetaType::QDate:
            return conv::DateTimeText(value.toDate().startOfDay());
        case QMetaType::QByteArray:
            return QString::fromLatin1(value.toByteArray());
        default:
            return value.toString();
    }
}

std::optional<QVariant> readField(const RecordSet& rs, const ColumnSpec& column) {
    if (column.read.kind == ReadForm::Kind::FromRow) return column.read.rowRule(rs);
    const QVariant field = fieldOf(rs, column);
    switch (column.read.kind) {
        case ReadForm::Kind::NotRead:
            return std::nullopt;
        case ReadForm::Kind::Converted:
            return field;
        case ReadForm::Kind::ZeroText:
            return QVariant(QStringLiteral("0") + textOf(field));
        case ReadForm::Kind::Text:
            return QVariant(textOf(field));
        case ReadForm::Kind::Trimmed:
            return QVariant(conv::Trim(textOf(field)));
        case ReadForm::Kind::NullScreen:
            return mdlMain::ScreenForNull(field, column.read.screenDefault);
        case ReadForm::Kind::IfDate:
            if (!holdsDate(field)) return std::nullopt;
            return field;
        case ReadForm::Kind::Custom:
            return column.read.rule(field);
        case ReadForm::Kind::FromRow:  // taken above, before the field is read
            break;
    }
    return std::nullopt;
}

QVariant convertTo(ValueType type, const QVariant& value) {
    switch (type) {
        case ValueType::Integer:
            return QVariant(static_cast<int>(conv::ToInteger(value)));
        case ValueType::Long:
            return QVariant(conv::ToLong(value));
        case ValueType::Double:
            return QVariant(conv::ToDouble(value));
        case ValueType::Currency:
            return QVariant(conv::ToCurrency(value));
        case ValueType::Date:
            return QVariant(conv::ToDate(value));
        case ValueType::Boolean:
            return QVariant(conv::ToBoolean(value));
        case ValueType::Text:
            if (isNull(value)) fail(err::InvalidUseOfNull);
            return QVariant(textOf(value));
    }
    return value;
}

QVariant boundValue(const ColumnSpec& column, const QVariant& value) {
    QVariant propertyValue = writtenValue(column.type, value);
    const WriteForm& form = column.write;
    switch (form.kind) {
        case WriteForm::Kind::NotWritten:
        case WriteForm::Kind::Value:
            return column.type == ValueType::Date ? QVariant(dateOf(propertyValue)) : propertyValue;
        case WriteForm::Kind::Number:
            return numberWritten(column, propertyValue);
        case WriteForm::Kind::Boolean: {
            const bool flag = column.type == ValueType::Boolean ? propertyValue.toBool()
                                                                : propertyValue.toDouble() != 0;
            return flag ? form.trueValue : form.falseValue;
        }
        case WriteForm::Kind::QuotedRaw:
        case WriteForm::Kind::QuotedDoubled:
            return quotedWritten(column, propertyValue);
        case WriteForm::Kind::DoubledThenCut:
            return doubledThenCut(textOf(propertyValue), form.width);
        case WriteForm::Kind::Date:
            return dateWritten(column, propertyValue);
        case WriteForm::Kind::Custom:
            return form.rule(propertyValue);
    }
    return propertyValue;
}

QString selectText(const QString& table, const QStringList& columns, const QString& key) {
    const QString list =
        columns.isEmpty() ? QStringLiteral("*") : columns.join(QStringLiteral(", "));
    return QStringLiteral("SELECT %1 FROM %2 WHERE %3 = ?").arg(list, table, key);
}

QString updateText(const QString& table, const QStringList& columns, const QString& key) {
    QStringList assignments;
    for (const QString& column : columns) assignments.append(column + QStringLiteral(" = ?"));
    return QStringLiteral("UPDATE %1 SET %2 WHERE %3 = ?")
        .arg(table, assignments.join(QStringLiteral(", ")), key);
}

QString insertText(const QString& table, const QStringList& columns) {
    const QStringList marks(columns.size(), QStringLiteral("?"));
    return QStringLiteral("INSERT INTO %1 (%2) VALUES (%3)")
        .arg(table, columns.join(QStringLiteral(", ")), marks.join(QStringLiteral(", ")));
}

int positionOf(const std::vector<ColumnSpec>& columnSpecs, const QString& table,
               const QString& name) {
    for (size_t i = 0; i < columnSpecs.size(); ++i) {
        if (columnSpecs[i].name.compare(name, Qt::CaseInsensitive) == 0) return static_cast<int>(i);
    }
    qFatal("The columns of %s name no column %s", qPrintable(table), qPrintable(name));
}

}  // namespace tvrx::columns

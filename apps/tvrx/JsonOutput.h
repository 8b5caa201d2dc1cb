#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace tvrx::cli {

// A JSON object whose members keep the order they were added in, as "tvrx show" lists a
// record's columns in the record's order. Every "--json" prints one object on one line of
// standard output (docs/CLI.md).
class JsonObjectText {
public:
    JsonObjectText() = default;
    // The members of the object in its own (alphabetical) order.
    explicit JsonObjectText(const QJsonObject& object);

    void add(const QString& key, const QJsonValue& value);
    void add(const QString& key, const JsonObjectText& object);
    QString text() const;

private:
    QStringList members_;
};

// A value read from the database or a property: date-times as local wall-clock time
// "YYYY-MM-DD HH:MM:SS", anything else as Qt gives it.
QJsonValue jsonValueOf(const QVariant& value);

void printJson(const JsonObjectText& object);
void printJson(const QJsonObject& object);

}  // namespace tvrx::cli

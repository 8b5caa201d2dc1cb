#include "JsonOutput.h"

#include "session/data/Dialect.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace tvrx::cli {

namespace {

// Qt writes whole documents only: the value is written as the one member of an array,
// whose brackets are then cut off.
QString valueText(const QJsonValue& value) {
    const QByteArray array = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(array.mid(1, array.size() - 2));
}

}  // namespace

JsonObjectText::JsonObjectText(const QJsonObject& object) {
    for (auto member = object.begin(); member != object.end(); ++member)
        add(member.key(), member.value());
}

void JsonObjectText::add(const QString& key, const QJsonValue& value) {
    members_.append(valueText(key) + QStringLiteral(": ") + valueText(value));
}

void JsonObjectText::add(const QString& key, const JsonObjectText& object) {
    members_.append(valueText(key) + QStringLiteral(": ") + object.text());
}

QString JsonObjectText::text() const {
    return QStringLiteral("{%1}").arg(members_.join(QStringLiteral(", ")));
}

QJsonValue jsonValueOf(const QVariant& value) {
    if (value.typeId() == QMetaType::QDateTime) return Dialect::dateTimeText(value.toDateTime());
    return QJsonValue::fromVariant(value);
}

void printJson(const JsonObjectText& object) {
    std::printf("%s\n", object.text().toUtf8().constData());
}

void printJson(const QJsonObject& object) {
    printJson(JsonObjectText(object));
}

}  // namespace tvrx::cli

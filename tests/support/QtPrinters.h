#pragma once

#include <QString>
#include <QStringList>

#include <ostream>

// Readable gtest messages for Qt's texts (gtest finds these by argument-dependent lookup,
// so they stand in the global namespace, where Qt's classes are).
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList& texts, std::ostream* out) {
    *out << "{ \"" << texts.join(QStringLiteral("\", \"")).toStdString() << "\" }";
}

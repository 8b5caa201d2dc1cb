#pragma once

#include "session/runtime/ScriptedUserInteraction.h"
#include "support/DataRows.h"

#include <QHash>
#include <QString>
#include <QStringList>

namespace tvrx::test {

// Escapes of the data files: "\n" a line feed, "\r" a carriage return.
inline QString unescaped(QString text) {
    return text.replace(QStringLiteral("\\r"), QStringLiteral("\r"))
        .replace(QStringLiteral("\\n"), QStringLiteral("\n"));
}

// A question as the scripted user recorded it: "Kind: argument | argument | ...", blanks
// at the end dropped.
inline QString asked(const ScriptedUserInteraction::Call& call) {
    QString text =
        kindName(call.kind) + QStringLiteral(": ") + call.args.join(QStringLiteral(" | "));
    while (text.endsWith(u' ')) text.chop(1);
    return text;
}

// The questions of tests/data/dialogs.tsv by name, with "{1}", "{2}" standing for the
// values a case gives. A name that is not there fails the test.
inline QString expectedDialog(const QString& name, const QStringList& values = {}) {
    static const QHash<QString, QString> dialogs = [] {
        QHash<QString, QString> byName;
        for (const DataRow& row : dataRows(QStringLiteral("dialogs.tsv")))
            byName.insert(row.cells.value(0), row.cells.value(1) + QStringLiteral(": ") +
                                                  unescaped(row.cells.value(2)));
        return byName;
    }();
    EXPECT_TRUE(dialogs.contains(name)) << "no dialog " << name.toStdString();
    QString text = dialogs.value(name);
    for (qsizetype i = 0; i < values.size(); ++i)
        text.replace(QStringLiteral("{%1}").arg(i + 1), values[i]);
    while (text.endsWith(u' ')) text.chop(1);
    return text;
}

}  // namespace tvrx::test

#pragma once

#include "session/data/RecordSet.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <map>
#include <memory>
#include <vector>

namespace tvrx {

class DbConnection;

// The data catalogue deMain: its own connection RxDB and the named commands the host and
// the library run. A command's rows land in the record set rs(name), which the caller
// closes before the command runs again.
class Catalogue {
public:
    // Text and Table give rows to read; Updatable is a statement over one table, "Select
    // columns from table Where condition", whose rows can be changed, added and deleted.
    enum class Kind { Text, Table, Procedure, Updatable };

    struct Command {
        const char* name;
        Kind kind;
        // The statement, the table, or the procedure's name.
        const char* source;
        // Parameter names in the order they are passed; informative.
        std::vector<const char*> parameters;
    };

    Catalogue();
    ~Catalogue();

    // The catalogue's own connection.
    DbConnection& RxDB() { return *rxdb_; }

    // Every command of the catalogue.
    static const std::vector<Command>& commands();
    // The command of that name (ignoring letter case), or null.
    static const Command* command(const QString& name);

    // Runs a command over RxDB with its parameters in order. Fails with 3265 for an
    // unknown name and 3705 while the command's record set is still open.
    void Run(const QString& name, const QVariantList& params = {});
    // The record set "rs" + name: the rows of the command's last run.
    RecordSet& rs(const QString& name);
    // The "RETURN_VALUE" of a procedure command's last run (null if none).
    QVariant returnValue(const QString& name) const;

private:
    std::unique_ptr<DbConnection> rxdb_;
    std::map<QString, RecordSet> results_;
    std::map<QString, QVariant> returnValues_;
};

}  // namespace tvrx

#pragma once

#include <QCommandLineParser>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace tvrx::cli {

// Exit codes of both programs.
inline constexpr int kExitOk = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;
inline constexpr int kExitAborted = 3;

// The arguments of one program or sub-command: what it declares it takes, then what the
// user gave. Declaring builds the usage line and the help from the same words, so they
// cannot drift apart from what is accepted. Options may stand anywhere among the
// arguments, as "--name VALUE" or "--name=VALUE"; "-" is an argument (standard input),
// and everything after "--" is one.
class CommandLine {
public:
    enum class Presence { Optional, Required, Repeatable };

    // invocation: what the user typed to get here, "tvrx decode" or "tvrx-switch".
    CommandLine(QString invocation, QString description);

    // An argument the user must give, in order.
    void addArgument(const QString& name, const QString& description);
    // Any number of further arguments after the declared ones.
    void addFurtherArguments(const QString& name, const QString& description);
    void addOption(const QString& name, const QString& valueName, const QString& description,
                   Presence presence = Presence::Optional);
    void addFlag(const QString& name, const QString& description);
    // "--db URL", taken from the environment variable TVRX_DB when not given. An optional
    // database may be missing; the command then decides what it needs.
    void addDatabaseOption(Presence presence = Presence::Required);
    // "--json": print one JSON object (docs/CLI.md).
    void addJsonOption();
    // Everything after the first argument is an argument, even when it starts with "-",
    // so that negative numbers and texts can be given as they are.
    void stopOptionsAtFirstArgument();

    // Reads the user's arguments (without the invocation). Gives the exit code when the
    // command is not to run: 0 after printing the help, 2 after printing what is wrong.
    std::optional<int> read(const QStringList& arguments);

    const QString& invocation() const { return invocation_; }
    const QStringList& arguments() const { return arguments_; }
    bool isSet(const QString& name) const { return parser_.isSet(name); }
    QString value(const QString& name) const { return parser_.value(name); }
    QStringList values(const QString& name) const { return parser_.values(name); }
    QString database() const { return database_; }
    bool json() const { return hasJson_ && parser_.isSet(QStringLiteral("json")); }

    // The argument at index as a record's key; nothing when it is not a whole number.
    std::optional<qint32> key(qsizetype index) const;

    // Print "<invocation>: problem" (and the usage line for a usage error) on stderr and
    // give the exit code.
    int usageError(const QString& problem) const;
    int failed(const QString& problem) const;

    QString usageLine() const;
    QString helpText() const;

private:
    struct Declared {
        QString name;
        QString valueName;  // empty for a flag or an argument
        QString description;
        Presence presence = Presence::Optional;
    };

    std::optional<QString> problemWithArguments() const;

    QString invocation_;
    QString description_;
    QCommandLineParser parser_;
    QList<Declared> declaredArguments_;
    std::optional<Declared> furtherArguments_;
    QList<Declared> declaredOptions_;
    bool hasDatabase_ = false;
    bool databaseRequired_ = true;
    bool hasJson_ = false;
    QStringList arguments_;
    QString database_;
};

}  // namespace tvrx::cli

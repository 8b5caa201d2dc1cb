#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace tvrx::sw {

// One line of the rules: the prepared response that answers a request holding a text.
struct Rule {
    int line = 0;
    QString text;  // empty for the "otherwise" line, which answers every request
    QString file;  // as written in the rules
    QString response;
};

// Which prepared response answers which request. The rules file holds, one per line:
//
//     if TEXT then FILE     the first line whose TEXT occurs in the request answers it
//     otherwise FILE        the answer when no "if" line does; exactly one, the last line
//
// with comments after "#" at the start of a line. TEXT is in the readable notation
// (<FS>, <GS> ...), and so are the files, named relative to the rules file's folder
// (the working folder for rules read from standard input, "-").
class Rules {
public:
    // The rules of the file with every response read, or the first problem found.
    static std::optional<Rules> load(const QString& path, QString& problem);

    const Rule& answerFor(const QString& request) const;
    qsizetype size() const { return rules_.size(); }

private:
    QList<Rule> rules_;
};

}  // namespace tvrx::sw

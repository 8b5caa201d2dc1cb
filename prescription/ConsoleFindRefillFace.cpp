#include "prescription/ConsoleFindRefillFace.h"

#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"

#include <map>

namespace tvrx {

namespace {

using Kind = FindRefillGesture::Kind;

const QString kPrompt = QStringLiteral(
    "Row number to edit, OK for the current row, F to find another number, C "
    "to cancel");

// The words a gesture may be typed as, without letter case.
const std::map<QString, FindRefillGesture>& words() {
    static const std::map<QString, FindRefillGesture> table{
        {QStringLiteral("ok"), {Kind::Ok, std::nullopt, 0}},
        {QStringLiteral("o"), {Kind::Ok, std::nullopt, 0}},
        {QStringLiteral("f"), {Kind::FindAnother, std::nullopt, 0}},
        {QStringLiteral("find"), {Kind::FindAnother, std::nullopt, 0}},
        {QStringLiteral("c"), {Kind::Cancel, std::nullopt, 0}},
        {QStringLiteral("cancel"), {Kind::Cancel, std::nullopt, 0}},
        {QStringLiteral("f2"), {Kind::Key, std::nullopt, 113}},
    };
    return table;
}

}  // namespace

ConsoleFindRefillFace::ConsoleFindRefillFace(std::FILE* out) : out_(out) {}

FindRefillGesture ConsoleFindRefillFace::next(const frmFindRefill& form) {
    print(form);
    const QString typed =
        mdlMain::user().InputBox(kPrompt, form.Caption, QString()).trimmed().toLower();
    if (typed.isEmpty()) return {Kind::Closed, std::nullopt, 0};
    const auto word = words().find(typed);
    if (word != words().end()) {
        FindRefillGesture gesture = word->second;
        if (gesture.kind == Kind::Ok) gesture.row = form.Row;
        return gesture;
    }
    bool isNumber = false;
    const int number = typed.toInt(&isNumber);
    if (isNumber && number >= 1 && number <= form.rows().size()) return {Kind::Ok, number - 1, 0};
    // Anything else clicks OK with no row selected, which the form answers with its box.
    return {Kind::Ok, std::nullopt, 0};
}

void ConsoleFindRefillFace::print(const frmFindRefill& form) {
    std::fprintf(out_, "[%s]\n      %s\n", qPrintable(form.Caption),
                 qPrintable(frmFindRefill::captions().join(QStringLiteral(" | "))));
    for (qsizetype i = 0; i < form.rows().size(); ++i) {
        const char marker = form.Row == i ? '>' : ' ';
        std::fprintf(out_, "%c %3d) %s\n", marker, int(i + 1),
                     qPrintable(form.rows().at(i).join(QStringLiteral(" | "))));
    }
    std::fflush(out_);
}

}  // namespace tvrx

#include "reports/RecordingDocument.h"

#include <utility>

namespace tvrx {

namespace {

QString cellsText(const QStringList& cells) {
    return cells.join(QStringLiteral(" | "));
}

}  // namespace

QString RecordingDocument::Operation::text() const {
    return args.isEmpty() ? name : name + u' ' + args.join(u' ');
}

qint32 RecordingDocument::PageCount() const {
    return begun_ ? 1 + pageBreaks_ : 0;
}

QString RecordingDocument::plainText() const {
    QStringList lines = lines_;
    while (!lines.isEmpty() && lines.last().isEmpty()) lines.removeLast();
    return lines.join(u'\n');
}

void RecordingDocument::beginDocument(const PageSettings& settings) {
    runs_.clear();
    tables_.clear();
    lines_ = {QString()};
    pageBreaks_ = 0;
    begun_ = true;
    documentSettings_ = settings;
    record(QStringLiteral("StartDoc"), {Device()});
}

void RecordingDocument::finishDocument() {
    record(QStringLiteral("EndDoc"));
}

void RecordingDocument::writeText(const QString& text, const Style& style) {
    record(QStringLiteral("Text"), {text});
    addRun(RunKind::Text, text, style);
    const QStringList lines = documentLines(text);
    lines_.last() += lines.first();
    lines_.append(lines.mid(1));
}

void RecordingDocument::writeParagraph(const QString& text, const Style& style) {
    record(QStringLiteral("Paragraph"), {text});
    addRun(RunKind::Paragraph, text, style);
    if (!lines_.last().isEmpty()) lines_.append(QString());
    const QStringList lines = documentLines(text);
    lines_.last() = lines.first();
    lines_.append(lines.mid(1));
    lines_.append(QString());
}

void RecordingDocument::writeTable(const DocumentTable& table, const Style& /*style*/) {
    record(QStringLiteral("Table"), {QString::number(table.columns.size()),
                                     QString::number(table.header.size() + table.body.size())});
    tables_.append(table);
    if (lines_.last().isEmpty()) lines_.removeLast();
    for (const QStringList& row : table.header) lines_.append(cellsText(row));
    for (const QStringList& row : table.body) lines_.append(cellsText(row));
    lines_.append(QString());
}

void RecordingDocument::writePageBreak() {
    record(QStringLiteral("NewPage"));
    ++pageBreaks_;
    if (!lines_.last().isEmpty()) lines_.append(QString());
}

int RecordingDocument::print() {
    record(QStringLiteral("PrintDoc"));
    const int failure = takeFailure();
    if (failure == docerr::None) ++prints_;
    return failure;
}

int RecordingDocument::printerDialog(int mode, bool& accepted) {
    record(QStringLiteral("PrintDialog"), {QString::number(mode)});
    const int failure = takeFailure();
    accepted = failure == docerr::None;
    return failure;
}

void RecordingDocument::record(const QString& name, QStringList args) {
    operations_.append({name, std::move(args)});
}

void RecordingDocument::addRun(RunKind kind, const QString& text, const Style& style) {
    runs_.append({kind, text, style.bold, style.size, style.colour});
}

int RecordingDocument::takeFailure() {
    return std::exchange(failNext_, docerr::None);
}

}  // namespace tvrx

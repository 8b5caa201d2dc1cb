#pragma once

#include "reports/PageDocument.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace tvrx {

// A document that lays nothing out: it keeps what it was asked to draw (every operation in
// order, each piece of text with the font state it was drawn in, the tables and the page
// settings) so that tests and hosts without a screen can see a report's content. Its
// pages are the ones NewPage began. Printing and the printer dialog are recorded and
// succeed, unless a test made the next one fail.
class RecordingDocument : public PageDocument {
public:
    enum class RunKind { Text, Paragraph };
    // One piece of text as it was handed over, with the font state it was drawn in.
    struct Run {
        RunKind kind = RunKind::Text;
        QString text;
        bool bold = false;
        double size = 10;
        qint32 colour = 0;
    };
    // One call, by its name and its arguments as text ("FontSize", "14").
    struct Operation {
        QString name;
        QStringList args;
        QString text() const;
    };

    qint32 PageCount() const override;
    QString plainText() const override;

    const QList<Operation>& operations() const { return operations_; }
    const QList<Run>& runs() const { return runs_; }
    const QList<DocumentTable>& tables() const { return tables_; }
    // The settings the latest document began with.
    const PageSettings& documentSettings() const { return documentSettings_; }
    int prints() const { return prints_; }
    // The next print or printer dialog fails with this number (docerr).
    void failNextPrint(int number) { failNext_ = number; }

protected:
    void beginDocument(const PageSettings& settings) override;
    void finishDocument() override;
    void writeText(const QString& text, const Style& style) override;
    void writeParagraph(const QString& text, const Style& style) override;
    void writeTable(const DocumentTable& table, const Style& style) override;
    void writePageBreak() override;
    int print() override;
    int printerDialog(int mode, bool& accepted) override;

private:
    void record(const QString& name, QStringList args = {});
    void addRun(RunKind kind, const QString& text, const Style& style);
    int takeFailure();

    QList<Operation> operations_;
    QList<Run> runs_;
    QList<DocumentTable> tables_;
    PageSettings documentSettings_;
    // The plain text so far; the last line is the paragraph being written.
    QStringList lines_;
    bool begun_ = false;
    qint32 pageBreaks_ = 0;
    int prints_ = 0;
    int failNext_ = docerr::None;
};

}  // namespace tvrx

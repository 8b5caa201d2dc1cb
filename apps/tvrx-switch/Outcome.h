#pragma once

#include <QChar>
#include <QList>
#include <QString>
#include <QStringList>

// What the payer decided, before it is written as a response (ResponseWriter.h).
namespace tvrx::sw {

// A drug utilisation review finding: this claim's drug against another of the member's
// history.
struct DurFinding {
    QString reason;       // "DD": drug-drug interaction
    int severity = 1;     // 1 major, 2 moderate, 3 minor
    int whereFilled = 1;  // 1 this pharmacy, 3 another pharmacy
    QString fillDate;     // YYYYMMDD of the other drug's fill
    double quantity = 0;  // of the other drug's fill
    int database = 4;     // 4: developed by the processor
    int prescriber = 1;   // 1 the same prescriber, 2 another
    QString text;         // the other drug's name
};

// What a plan pays for a claim, in whole cents.
struct Amounts {
    qint64 ingredientCost = 0;
    qint64 dispensingFee = 0;
    qint64 salesTax = 0;
    qint64 patientPay = 0;
    qint64 totalPaid = 0;
};

// The answer to one claim, or to a reversal.
struct Outcome {
    // P paid, D duplicate of a paid claim, C captured, R rejected; a reversal A or R.
    QChar status = u'R';
    QStringList rejects;
    QString message;  // a rejection's message opens with a readable reason
    QString reference;
    QString rxNumber;  // the prescription number the claim sent
    Amounts amounts;
    bool coinsurance = false;  // the patient's pay is a coinsurance share
    QList<DurFinding> findings;
    QString planId;
    QString helpDesk;
};

// The answer to a whole transmission.
struct Answer {
    bool headerRejected = false;
    QList<Outcome> outcomes;  // one per claim group, in order
};

}  // namespace tvrx::sw

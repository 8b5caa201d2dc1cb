#include "prescription/PriceTable.h"
#include "prescription/clsPrescription.h"

#include "session/data/Catalogue.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"
#include "session/text/Encodings.h"

namespace tvrx {

namespace {

// The pharmacy's default tables: of a cash sale (a fill without a drug) and of a plan.
struct Defaults {
    qint32 cash = 0;
    qint32 plan = 0;
};

// What the patient's plan says about prices. A plan table of 0 or less is the pharmacy's
// default plan table.
struct Plan {
    bool found = false;
    qint32 brandPT = 0;
    qint32 genericPT = 0;
    qint32 copayPS = 0;
    qint32 genCopayPS = 0;
    double copay = 0;
    double genericCopay = 0;
};

QVariant orZero(const QVariant& field) {
    return mdlMain::ScreenForNull(field, 0);
}

// Each default is 20 when the column is empty. Without an Options row both reads fail
// and the defaults stay 0.
Defaults readDefaults(Frame& frame) {
    Defaults defaults;
    RecordSet rs;
    frame([&] {
        rs = records::mainConnection().OpenRecordSet(
            QStringLiteral("SELECT DefaultCA, DefaultINS FROM Options"));
    });
    frame([&] {
        defaults.cash =
            conv::ToLong(mdlMain::ScreenForNull(rs.Fields(QStringLiteral("DefaultCA")), 20));
    });
    frame([&] {
        defaults.plan =
            conv::ToLong(mdlMain::ScreenForNull(rs.Fields(QStringLiteral("DefaultINS")), 20));
    });
    return defaults;
}

// The plan of a patient's coverage row, through the catalogue; below 1 when none.
qint32 planOfCoverage(qint32 patInsId) {
    Catalogue& catalogue = mdlMain::catalogue();
    catalogue.Run(QStringLiteral("dbo_PatientIns"), {patInsId});
    return conv::ToLong(catalogue.returnValue(QStringLiteral("dbo_PatientIns")));
}

Plan readPlan(Frame& frame, qint32 patInsId, qint32 defaultPlanTable) {
    Plan plan;
    qint32 insId = 0;
    frame([&] { insId = planOfCoverage(patInsId); });
    if (insId < 1) return plan;
    RecordSet rs;
    frame([&] {
        rs = records::mainConnection().OpenRecordSet(
            QStringLiteral("SELECT InsID, Copay, GenericCopay, BrandPT, GenericPT, CopayPS, "
                           "GenCopayPS FROM INSURANCE WHERE InsID = ?"),
            {insId});
    });
    // A test that fails resumes inside its block.
    bool hasRow = true;
    frame([&] { hasRow = !rs.Eof(); });
    if (!hasRow) return plan;
    frame([&] { plan.brandPT = conv::ToLong(orZero(rs.Fields(QStringLiteral("BrandPT")))); });
    if (plan.brandPT <= 0) plan.brandPT = defaultPlanTable;
    frame([&] { plan.genericPT = conv::ToLong(orZero(rs.Fields(QStringLiteral("GenericPT")))); });
    if (plan.genericPT <= 0) plan.genericPT = defaultPlanTable;
    frame([&] { plan.genCopayPS = conv::ToLong(orZero(rs.Fields(QStringLiteral("GenCopayPS")))); });
    frame([&] { plan.copayPS = conv::ToLong(orZero(rs.Fields(QStringLiteral("CopayPS")))); });
    frame([&] { plan.copay = conv::ToCurrency(orZero(rs.Fields(QStringLiteral("Copay")))); });
    frame([&] {
        plan.genericCopay = conv::ToCurrency(orZero(rs.Fields(QStringLiteral("GenericCopay"))));
    });
    plan.found = true;
    return plan;
}

// Whether the pharmacy's database has a price table of that number.
bool tableExists(Frame& frame, qint32 table) {
    RecordSet rs;
    frame([&] {
        rs = records::mainConnection().OpenRecordSet(
            QStringLiteral("SELECT PriceTableID FROM PriceTable WHERE PriceTableID = ?"), {table});
    });
    // A test that fails resumes inside its block: the table counts as there.
    bool exists = true;
    frame([&] { exists = !rs.Eof(); });
    return exists;
}

}  // namespace

// The rules in their order. The current table, the copay table and the copay are not
// cleared first: a fill priced again keeps what no rule replaces.
void clsPrescription::SetPriceTables(qint32 nDefGen, qint32 nDefBrand) {
    Frame frame("clsPrescription:SetPriceTables");
    const Defaults defaults = readDefaults(frame);
    Plan plan;
    if (PatientID() == 0)
        PatientPT = 0;
    else if (PatInsID != 0)
        plan = readPlan(frame, PatInsID, defaults.plan);
    if (DrugID() == 0) {
        DrugPT = 0;
        Generic = false;
    }

    // The plan's tables win, then the drug's, then the patient's; a table the pharmacy
    // does not have is forgotten.
    if (plan.brandPT > 0 || plan.genericPT > 0) {
        CurrentPT = Generic ? plan.genericPT : plan.brandPT;
        CopayPT = Generic ? plan.genCopayPS : plan.copayPS;
        Copay = Generic ? plan.genericCopay : plan.copay;
    } else if (DrugPT > 0) {
        if (tableExists(frame, DrugPT))
            CurrentPT = DrugPT;
        else
            DrugPT = 0;
    } else if (PatientPT > 0) {
        if (tableExists(frame, PatientPT))
            CurrentPT = PatientPT;
        else
            PatientPT = 0;
    } else {
        CurrentPT = 0;
    }

    // Without a plan the copay is priced by the drug's or the patient's table; a plan with
    // a fixed copay gives that copay, and one without prices it by its own tables.
    if (!plan.found) {
        CopayFromTable = true;
        CopayPT = DrugPT > 0 ? DrugPT : PatientPT > 0 ? PatientPT : 0;
    } else if (Copay > 0) {
        CopayFromTable = false;
    } else {
        CopayFromTable = true;
        if (CopayPT == 0) CopayPT = Generic ? plan.genericPT : plan.brandPT;
    }

    if (CopayPT < 1 && CopayFromTable) CopayPT = Generic ? nDefGen : nDefBrand;
    if (CurrentPT < 1) CurrentPT = Generic ? nDefGen : DrugID() != 0 ? nDefBrand : defaults.cash;
}

double clsPrescription::GetCustomPrice(double dAWP, double dCost, qint32& lPT, double dQty) {
    return mdlMain::GetPrice(lPT, dAWP, dCost, LastMarkUpAddend, PriceTableID, dQty);
}

double clsPrescription::GetRetail(double dAWP, double dCost, double dQty) {
    return mdlMain::GetPrice(CurrentPT, dAWP, dCost, LastMarkUpAddend, PriceTableID, dQty);
}

double clsPrescription::GetCopay(double dAWP, double dCost, double dQty) {
    double copay = 0;
    Frame frame("clsPrescription:GetCopay");
    frame([&] {
        if (!CopayFromTable) {
            copay = Copay;
            return;
        }
        double unusedAddend = 0;
        copay = mdlMain::GetPrice(CopayPT, dAWP, dCost, unusedAddend, PriceTableID, dQty);
    });
    return copay;
}

}  // namespace tvrx

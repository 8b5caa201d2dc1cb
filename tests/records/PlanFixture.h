#pragma once

#include "records/PropertyCases.h"
#include "records/clsINSURANCE.h"
#include "session/data/DbConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Session.h"

namespace tvrx::test {

// The pharmacy's schema with the session's connection handed over through a record, and a
// plan directory of the test's own plans in the same database, which the session uses as
// its lookup database.
class PlanFixture : public NoStrayReports<SchemaFixture> {
protected:
    void SetUp() override {
        SchemaFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        clsINSURANCE().setConnection(db);
        ASSERT_TRUE(reporter->reports().isEmpty());
        createTable(QStringLiteral(
            "CREATE TABLE PlanDirectory (BIN @TEXT@, PCN @TEXT@, PlanName @TEXT@, "
            "ShortName @TEXT@, PBM @TEXT@, Carrier @TEXT@, Version @TEXT@, States @TEXT@, "
            "Status @TEXT@, MaxScripts @TEXT@, RefSheet @TEXT@)"));
        const QStringList plans[] = {
            {"610011", "ACME RX", "ACME HEALTH PLAN", "A B C", "NONE", "", "D.0", "TX", "ACTIVE",
             "4", "ACMESHT"},
            {"610222", "PCN12345678X", "BLUE RIVER PHARMACY", "BLUERIVERX", "RIVER PBM", "RIVERCO",
             "51", "NORTHEAST", "ACTIVE", "1", "BRIVER51"},
            {"610333", "", "CEDAR CARE 50% PLAN", "CEDAR", "NONE", "", "51", "ALL", "ACTIVE", "3",
             ""},
        };
        for (const QStringList& plan : plans) {
            QVariantList values;
            for (const QString& value : plan) values.append(value);
            db->Execute(QStringLiteral("INSERT INTO PlanDirectory VALUES (?, ?, ?, ?, ?, ?, ?, "
                                       "?, ?, ?, ?)"),
                        values);
        }
        mdlMain::LookupConnection = connect();
    }

    // A plan row of INSURANCE with this BIN, processor number and name.
    qint16 addPlan(const QString& bin, const QString& pcn, const QString& name, int deleted = 0) {
        const qint32 key = Procedures::newKey(*db, QStringLiteral("NewInsurance"));
        db->Execute(
            QStringLiteral("UPDATE INSURANCE SET BIN = ?, ProcNumb = ?, Name = ?, "
                           "InsCode = ?, Form = ?, Deleted = ? WHERE InsID = ?"),
            {bin, pcn, name, QStringLiteral("OLD") + bin, QStringLiteral("32"), deleted, key});
        return static_cast<qint16>(key);
    }

    qlonglong planCount() {
        return db->Scalar(QStringLiteral("SELECT COUNT(*) FROM INSURANCE")).toLongLong();
    }

    QVariant column(const char* name, qint32 insId) {
        return db->Scalar(QStringLiteral("SELECT %1 FROM INSURANCE WHERE InsID = ?")
                              .arg(QString::fromLatin1(name)),
                          {insId});
    }
};

}  // namespace tvrx::test

#include "ShowKinds.h"

#include "records/PATINS.h"
#include "records/clsINSURANCE.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

namespace tvrx::cli {

ShowKind showPlanKind() {
    return {QStringLiteral("plan"), QStringLiteral("InsID"),
            QStringLiteral("an insurance plan, by InsID"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) -> std::optional<ShownRecord> {
                clsINSURANCE plan;
                plan.setConnection(std::move(connection));
                // The key is 16-bit: a larger one is reported as an overflow.
                Frame frame("tvrx:show plan");
                frame([&] { plan.InsID = conv::IntegerFromDouble(key); });
                if (frame.failures() > 0 || !plan.GetData()) return std::nullopt;
                ShownRecord shown{{QStringLiteral("InsID"), plan.InsID}};
                appendColumns(shown, insuranceColumns(), plan);
                return shown;
            }};
}

ShowKind showCoverageKind() {
    return {
        QStringLiteral("coverage"), QStringLiteral("PatInsID"),
        QStringLiteral("a plan held by a patient, by PatInsID"),
        [](std::shared_ptr<DbConnection> connection, qint32 key) -> std::optional<ShownRecord> {
            PATINS coverage;
            coverage.setConnection(std::move(connection));
            coverage.PatInsID = key;
            if (!coverage.GetData()) return std::nullopt;
            const PATINS& c = coverage;
            return ShownRecord{
                {QStringLiteral("Medicare"), c.Medicare},
                {QStringLiteral("ClaimFields"), c.ClaimFields},
                {QStringLiteral("PatInsID"), c.PatInsID},
                {QStringLiteral("OPatInsID"), c.OPatInsID},
                {QStringLiteral("InsID"), c.InsID()},
                {QStringLiteral("PatientID"), c.PatientID},
                {QStringLiteral("InsCode"), c.InsCode},
                {QStringLiteral("GroupNumber"), c.GroupNumber},
                {QStringLiteral("InsuranceGroup"), c.InsuranceGroup},
                {QStringLiteral("Relationship"), c.Relationship},
                {QStringLiteral("CardNumber"), c.CardNumber},
                {QStringLiteral("SubscribersName"), c.SubscribersName},
                {QStringLiteral("ExpDate"), c.ExpDate},
                {QStringLiteral("PersonNumber"), c.PersonNumber},
                {QStringLiteral("Location"), c.Location},
                {QStringLiteral("OtherCoverage"), c.OtherCoverage},
                {QStringLiteral("Clarification"), c.Clarification},
                {QStringLiteral("Version"), c.Version()},
                {QStringLiteral("Name"), c.Name()},
                {QStringLiteral("OtherPayerCoverageType"), c.OtherPayerCoverageType},
                {QStringLiteral("OtherPayerAmountPaidQualifier"), c.OtherPayerAmountPaidQualifier},
            };
        }};
}

}  // namespace tvrx::cli

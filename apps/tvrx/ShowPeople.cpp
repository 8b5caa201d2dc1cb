#include "ShowKinds.h"

#include "records/Facility.h"
#include "records/clsDoc.h"
#include "records/clsDrug.h"
#include "records/clsPatient.h"
#include "session/data/DbConnection.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

namespace tvrx::cli {

bool rowExists(DbConnection& connection, const QString& table, const QString& keyColumn,
               const QVariant& key, const char* label) {
    bool exists = false;
    Frame frame(label);
    frame([&] {
        exists =
            connection
                .Scalar(
                    QStringLiteral("SELECT COUNT(*) FROM %1 WHERE %2 = ?").arg(table, keyColumn),
                    {key})
                .toInt() > 0;
    });
    return exists;
}

namespace {

template <class Record>
std::optional<ShownRecord> loaded(std::shared_ptr<DbConnection> connection,
                                  const ColumnTable<Record>& table, const QVariant& key,
                                  const char* label, const std::function<void(Record&)>& load) {
    if (!rowExists(*connection, table.table(), table.key(), key, label)) return std::nullopt;
    Record record;
    record.setConnection(std::move(connection));
    load(record);
    ShownRecord shown;
    appendReadColumns(shown, table, record);
    return shown;
}

}  // namespace

ShowKind showPatientKind() {
    return {QStringLiteral("patient"), QStringLiteral("PatientID"),
            QStringLiteral("a patient (or an employer), by PatientID"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) {
                return loaded<clsPatient>(std::move(connection), patientColumns(), key,
                                          "tvrx:show patient", [key](clsPatient& patient) {
                                              patient.PatientID = key;
                                              patient.GetData();
                                          });
            }};
}

ShowKind showPrescriberKind() {
    return {QStringLiteral("prescriber"), QStringLiteral("MDID"),
            QStringLiteral("a prescriber, by MDID"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) {
                return loaded<clsDoc>(std::move(connection), docColumns(), key,
                                      "tvrx:show prescriber", [key](clsDoc& doc) {
                                          doc.MDID = key;
                                          doc.GetData();
                                      });
            }};
}

// The package size is read by its own rule and the dosing times come from DrugTimes, so
// both follow the described columns.
ShowKind showDrugKind() {
    return {QStringLiteral("drug"), QStringLiteral("DrugID"), QStringLiteral("a drug, by DrugID"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) {
                clsDrug drug;
                std::optional<ShownRecord> shown =
                    loaded<clsDrug>(std::move(connection), drugColumns(), key, "tvrx:show drug",
                                    [&drug, key](clsDrug& loading) {
                                        loading.DrugID = key;
                                        loading.GetData();
                                        drug = loading;
                                    });
                if (!shown) return shown;
                shown->append({QStringLiteral("PackageSize"), drug.PackageSize});
                shown->append({QStringLiteral("DrugTimes"), drug.DrugTimes});
                return shown;
            }};
}

// The key is 16-bit: a larger one is reported as an overflow.
ShowKind showFacilityKind() {
    return {QStringLiteral("facility"), QStringLiteral("FacilityID"),
            QStringLiteral("a facility, by FacilityID"),
            [](std::shared_ptr<DbConnection> connection, qint32 key) -> std::optional<ShownRecord> {
                qint16 facilityID = 0;
                Frame frame("tvrx:show facility");
                frame([&] { facilityID = conv::IntegerFromDouble(key); });
                if (frame.failures() > 0) return std::nullopt;
                std::optional<ShownRecord> shown =
                    loaded<Facility>(std::move(connection), facilityColumns(), facilityID,
                                     "tvrx:show facility", [facilityID](Facility& facility) {
                                         facility.FacilityID = facilityID;
                                         facility.GetData();
                                     });
                if (shown) shown->prepend({QStringLiteral("FacilityID"), facilityID});
                return shown;
            }};
}

}  // namespace tvrx::cli

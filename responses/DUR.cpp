#include "responses/DUR.h"

namespace tvrx {

std::shared_ptr<DUR> colDUR::Add(const QString& Number, const QString& Severity,
                                 const QString& LastFillDate, const QString& LastFillLocation,
                                 const QString& LastFillQty, const QString& DB,
                                 const QString& Prescriber, const QString& Message,
                                 const QString& ServiceCode, const QString& sKey) {
    auto finding = std::make_shared<DUR>();
    finding->Number = Number;
    finding->Severity = Severity;
    finding->LastFillDate = LastFillDate;
    finding->LastFillLocation = LastFillLocation;
    finding->LastFillQty = LastFillQty;
    finding->DB = DB;
    finding->Prescriber = Prescriber;
    finding->Message = Message;
    finding->ServiceCode = ServiceCode;
    KeyedCollection<DUR>::Add(finding, sKey);
    return finding;
}

}  // namespace tvrx

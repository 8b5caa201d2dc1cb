#include "prescription/clsPrescription.h"

#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Clock.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/text/Conversions.h"

#include <array>

namespace tvrx {

// The number comes from the database under a lock, so two workstations never start two
// prescriptions under one number. When none can be had the object stays as it was: going
// on would load and then overwrite the fill it held.
bool clsPrescription::NewPrescription(qint32 RPhID, qint32 /*StartNumber*/, qint32 TechID) {
    Frame frame("clsPrescription:NewPrescription");
    Procedures::Result created;
    frame([&] {
        created = Procedures::call(records::mainConnection(), QStringLiteral("spr_NewRxNewNumber"),
                                   {RPh});
    });
    if (frame.failures() > 0) return false;
    qint32 number = 0;
    PrescriptionType = NewRx;
    frame([&] { RXInfoID = conv::ToLong(created.ReturnValue); });
    frame([&] { number = conv::ToLong(created.Output.value(QStringLiteral("@RxNumber"))); });
    GetData();
    const QDateTime now = mdlMain::clock().now();
    Number = number;
    RefillNumber = 0;
    DateFilled = now;
    OriginalDate = now.date().startOfDay();
    RPh = RPhID;
    Tech = TechID;
    Form = 1;
    OtherType = QStringLiteral("1");
    PaidQualifier = QStringLiteral("7");
    OtherDate = now.date().startOfDay();
    OtherIDQualifier = QStringLiteral("03");
    setProductIDQualifier(QStringLiteral("03"));
    Deleted = 0;
    return true;
}

QString clsPrescription::FillMode() const {
    static const std::array<const char*, 5> kModes{"?", "NEW ", "REFILL ", "EDIT ", "GENERATED "};
    const int type = static_cast<int>(PrescriptionType);
    return QString::fromLatin1(type >= 1 && type <= 4 ? kModes[size_t(type)] : kModes[0]);
}

}  // namespace tvrx

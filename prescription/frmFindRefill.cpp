#include "prescription/frmFindRefill.h"

#include "prescription/ConsoleFindRefillFace.h"
#include "prescription/RefillDialogs.h"
#include "session/data/Catalogue.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"
#include "session/text/Conversions.h"

#include <QMetaType>

namespace tvrx {

namespace {

const QString kFindRxNumberAll = QStringLiteral("dbo_FindRxNumberAll");
constexpr int kF2 = 113;

RecordSet& fills() {
    return mdlMain::catalogue().rs(kFindRxNumberAll);
}

// A value as the list's column format shows it; a null shows nothing.
QString shown(const QVariant& value, frmFindRefill::Format format) {
    if (value.isNull()) return {};
    switch (format) {
        case frmFindRefill::Format::ShortDate: {
            const QDate date = conv::ToDate(value).date();
            return QStringLiteral("%1/%2/%3").arg(date.month()).arg(date.day()).arg(date.year());
        }
        case frmFindRefill::Format::YesNo:
            return conv::ToDouble(value) != 0 ? QStringLiteral("Yes") : QStringLiteral("No");
        case frmFindRefill::Format::Currency:
            return conv::FormatCurrency(conv::ToDouble(value));
        case frmFindRefill::Format::General:
            break;
    }
    switch (value.typeId()) {
        case QMetaType::QString:
            return value.toString();
        case QMetaType::QDateTime:
            return conv::DateTimeText(value.toDateTime());
        default:
            return conv::NumberText(conv::ToDouble(value));
    }
}

}  // namespace

const std::vector<frmFindRefill::Column>& frmFindRefill::columns() {
    static const std::vector<Column> table{
        {"RXInfoID", "RXInfoID", Format::General},
        {"Number", "Number", Format::General},
        {"Refill", "RefillNumber", Format::General},
        {"Date", "Date", Format::ShortDate},
        {"Quantity", "Qty", Format::General},
        {"Qty Left", "QtyRemain", Format::General},
        {"Voided", "Voided", Format::YesNo},
        {"Cost", "Cost", Format::Currency},
        {"Price", "Price", Format::Currency},
        {"Copay", "Copay", Format::Currency},
        {"DS", "DS", Format::General},
    };
    return table;
}

QStringList frmFindRefill::captions() {
    QStringList names;
    for (const Column& column : columns()) names << QString::fromLatin1(column.Caption);
    return names;
}

void frmFindRefill::Show(FindRefillFace& face) {
    visible_ = true;
    Form_Load();
    Form_Activate();
    while (visible_) {
        const FindRefillGesture gesture = face.next(*this);
        switch (gesture.kind) {
            case FindRefillGesture::Kind::Ok:
                Row = gesture.row;
                cmdOK_Click();
                break;
            case FindRefillGesture::Kind::DoubleClick:
                Row = gesture.row;
                TDBList1_DblClick();
                break;
            case FindRefillGesture::Kind::FindAnother:
                cmdRedo_Click();
                break;
            case FindRefillGesture::Kind::Key:
                Form_KeyDown(gesture.keyCode);
                break;
            case FindRefillGesture::Kind::Cancel:
            case FindRefillGesture::Kind::Closed:
                // However the window went away, nothing was chosen: a choice left over
                // from an earlier showing must not load.
                cmdCancel_Click();
                break;
        }
    }
}

void frmFindRefill::Show() {
    Show(findRefillFace());
}

void frmFindRefill::Form_Load() {
    Frame frame("frmFindRefill:Form_Load");
    frame([&] { rebind(); });
    frame([&] { setCaption(); });
}

void frmFindRefill::Form_Activate() {
    if (!rows_.isEmpty()) Row = 0;
}

void frmFindRefill::Form_KeyDown(int KeyCode) {
    if (KeyCode == kF2) cmdCancel_Click();
}

void frmFindRefill::cmdOK_Click() {
    Frame frame("frmFindRefill:cmdOK_Click");
    frame([&] {
        if (!Row) {
            mdlMain::user().MsgBox(QStringLiteral("Select a row before clicking OK"),
                                   Buttons::OKOnly, Icon::Information, 1, appConfig().ProductName);
            return;
        }
        choose();
    });
}

void frmFindRefill::TDBList1_DblClick() {
    Frame frame("frmFindRefill:TDBList1_DblClick");
    frame([&] { choose(); });
}

void frmFindRefill::cmdCancel_Click() {
    Frame frame("frmFindRefill:cmdCancel_Click");
    frame([&] {
        mdlMain::FindRefillRxInfoID = 0;
        visible_ = false;
    });
}

void frmFindRefill::cmdRedo_Click() {
    Frame frame("frmFindRefill:cmdRedo_Click");
    frame([&] {
        const QString answer = mdlMain::user().InputBox(
            QStringLiteral("Enter a prescription number"), appConfig().ProductName, QString());
        if (answer.isEmpty()) return;
        const qint32 number = conv::LongFromDouble(conv::Val(answer));
        if (number <= 0) return;
        RecordSet& rs = fills();
        QVariant kept;
        if (rs.State() == 1 && rs.RecordCount() > 0) {
            rs.MoveFirst();
            kept = rs.Fields(QStringLiteral("Number"));
        }
        if (rs.State() == 1) rs.Close();
        Catalogue& catalogue = mdlMain::catalogue();
        catalogue.Run(kFindRxNumberAll, {number});
        if (fills().RecordCount() == 0) {
            refill::sayNotFound(number);
            fills().Close();
            catalogue.Run(kFindRxNumberAll, {kept});
            rebind();
            return;
        }
        rebind();
        setCaption();
    });
}

void frmFindRefill::rebind() {
    rows_.clear();
    Row.reset();
    RecordSet& rs = fills();
    if (rs.RecordCount() == 0) return;
    for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) {
        QStringList cells;
        for (const Column& column : columns())
            cells << shown(rs.Fields(QString::fromLatin1(column.DataField)), column.format);
        rows_.append(cells);
    }
    Row = 0;
}

void frmFindRefill::setCaption() {
    RecordSet& rs = fills();
    rs.MoveFirst();
    const QVariant number = rs.Fields(QStringLiteral("Number"));
    const QVariant patient = rs.Fields(QStringLiteral("Patient"));
    // The caption is joined as the platform joined texts with a null: it fails.
    if (number.isNull() || patient.isNull()) fail(err::InvalidUseOfNull);
    Caption = QStringLiteral("RX ") + conv::Trim(shown(number, Format::General)) +
              QStringLiteral(" FOR ") + patient.toString();
}

// The fill of the current row is the choice: its RXInfoID, column 0.
void frmFindRefill::choose() {
    if (!Row || *Row < 0 || *Row >= rows_.size()) fail(err::InvalidUseOfNull);
    mdlMain::FindRefillRxInfoID = conv::ToLong(rows_.at(*Row).at(0));
    visible_ = false;
}

FindRefillFace& findRefillFace() {
    if (!mdlMain::FindRefillService)
        mdlMain::FindRefillService = std::make_shared<ConsoleFindRefillFace>();
    return *mdlMain::FindRefillService;
}

void setFindRefillFace(std::shared_ptr<FindRefillFace> face) {
    mdlMain::FindRefillService = std::move(face);
}

}  // namespace tvrx

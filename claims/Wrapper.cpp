#include "claims/Wrapper.h"

#include "claims/frmTransmit.h"
#include "session/data/Connections.h"
#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/runtime/AppConfig.h"
#include "session/runtime/Clock.h"
#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/Failure.h"
#include "session/runtime/Frame.h"
#include "session/runtime/Session.h"
#include "session/runtime/UserInteraction.h"

namespace tvrx {

namespace {

const QString kNoDataSource = QStringLiteral("Must designate data source first");
constexpr qint16 kDelaySeconds = 60;

const QString kInsertClaim = QStringLiteral(
    "INSERT INTO Claims (RxInfoID, Response, Reversal, OtherIns, ClaimText, HeaderText, "
    "ClaimDateTime) VALUES (?, ?, ?, ?, ?, ?, %1)");

int flag(bool value) {
    return value ? 1 : 0;
}

}  // namespace

Wrapper::Wrapper() : colRX_(std::make_shared<tvrx::colRX>()) {
    colRX_->PrintDevice = printDevice_;
    colRX_->Add();
    mdlMain::ConnectLookup();
}

Wrapper::~Wrapper() = default;

void Wrapper::setPrintDevice(const QString& device) {
    Frame frame("Wrapper:PrintDevice");
    frame([&] { printDevice_ = device; });
    frame([&] {
        if (!colRX_) fail(err::ObjectVariableNotSet);
        colRX_->PrintDevice = device;
    });
}

std::shared_ptr<tvrx::colRX> Wrapper::colRX() {
    if (!colRX_) {
        colRX_ = std::make_shared<tvrx::colRX>();
        colRX_->PrintDevice = printDevice_;
    }
    return colRX_;
}

void Wrapper::setcolRX(std::shared_ptr<tvrx::colRX> prescriptions) {
    colRX_ = std::move(prescriptions);
}

void Wrapper::setConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::setConnection(std::move(connection), QStringLiteral("Wrapper:Connection"));
}

void Wrapper::setAltConnection(std::shared_ptr<DbConnection> connection) {
    mdlMain::AlternateConnection = std::move(connection);
}

void Wrapper::setUseAltSource(bool useAlternate) {
    if (!mdlMain::AlternateConnection) {
        mdlMain::user().MsgBox(kNoDataSource, Buttons::OKOnly, Icon::Critical, 1,
                               appConfig().ProductName);
        return;
    }
    mdlMain::UseAlternateSource = useAlternate;
}

bool Wrapper::ExchangeClaimFile(const QString& sTVIDirectory, const QString& sClaimText,
                                const ResponseReader& reader) {
    bool answered = false;
    Frame frame("Wrapper:SubmitClaim");
    const ExchangeFiles files(sTVIDirectory, mdlMain::clock().now());
    frmTransmit form;
    frame([&] { form.Delay = kDelaySeconds; });
    // Watching starts before the request goes out, so no part of the answer is missed.
    frame([&] { form.setFilename(files.responsePath()); });
    frame([&] { files.sendRequest(sClaimText, exchangeSettings()); });
    frame([&] { form.Show(transmitFace()); });
    frame([&] { answered = form.Success; });
    if (answered) {
        frame([&] {
            if (reader) reader(files.responsePath());
        });
        frame([&] { files.removeResponse(); });
    } else {
        frame([&] { files.removeTemporary(); });
        frame([&] { files.withdrawRequest(); });
    }
    frame([&] { form.Unload(); });
    return answered;
}

void Wrapper::AddClaimRecord(qint32 RxInfoID, bool Response, bool Reversal, bool OtherIns,
                             const QString& ClaimText, const QString& HeaderText) {
    Frame frame("Wrapper:AddClaimRecord");
    frame([&] {
        DbConnection& db = records::mainConnection();
        db.Execute(
            kInsertClaim.arg(db.dialect().serverTime()),
            {RxInfoID, flag(Response), flag(Reversal), flag(OtherIns), ClaimText, HeaderText});
    });
}

}  // namespace tvrx

#pragma once

#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"

#include <QJsonObject>
#include <QList>
#include <QStringList>

namespace tvrx {

class clsClaimResponse;

namespace cli {

// What decoding a payer's response did besides filling the response: its result, the
// message boxes it showed and the failures it reported.
struct DecodedResponse {
    QString claim;  // the text as it was handed over
    bool result = false;
    QList<ScriptedUserInteraction::Call> boxes;
    QList<ErrorReport> reports;
};

// Runs BuildResponse on the response's Claim as a workstation would, except that nobody
// is asked anything: every message box takes its default answer and is remembered, and
// the failures go to a reporter of their own. The session's user and reporter are put
// back afterwards.
DecodedResponse decodeResponse(clsClaimResponse& response);

// The decoded response as "tvrx decode" prints it, one line each, in the readable
// notation.
QStringList responseLines(const clsClaimResponse& response, const DecodedResponse& decoded);

// The decoded response as "tvrx decode --json" prints it (docs/DECODE.md).
QJsonObject decodedJson(const clsClaimResponse& response, const DecodedResponse& decoded);

}  // namespace cli
}  // namespace tvrx

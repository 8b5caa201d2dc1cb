#pragma once

#include "responses/clsClaimResponse.h"
#include "session/runtime/RecordingErrorReporter.h"
#include "session/runtime/ScriptedUserInteraction.h"
#include "session/text/ClaimNotation.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>

// A decoded response in the JSON form that `tvrx decode --json` prints for scripts and that
// the tests compare with; docs/DECODE.md describes every member.
namespace tvrx {

// Every property of the response, the decoded values no property reads (under "private"),
// the rejects and the DUR findings.
QJsonObject responseJson(const clsClaimResponse& response);
// The message boxes shown, each as text, icon and title.
QJsonArray boxesJson(const QList<ScriptedUserInteraction::Call>& calls);
// The failures reported, each as location, number and description.
QJsonArray reportsJson(const QList<ErrorReport>& reports);

// A response text kept in a file in the readable notation: lines that start with "#" are
// comments, and line ends are not part of the text, so a long text may be wrapped.
NotationResult readResponseFile(const QString& path);
// The same for the contents of such a file.
NotationResult readResponseText(const QByteArray& contents);

}  // namespace tvrx

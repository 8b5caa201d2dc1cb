#include "Command.h"

namespace tvrx::cli {

Command encodeCommand() {
    return {QStringLiteral("encode"), QStringLiteral("show the claim text encodings at work"),
            QStringLiteral("tvrx encode overpunch|overpunch-return|phone|zip|fixed ..."),
            [](const QStringList&) { return kExitFailed; }};
}

}  // namespace tvrx::cli

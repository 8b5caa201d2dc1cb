#include "records/RecordForms.h"

#include "session/text/Encodings.h"

namespace tvrx::records {

ReadForm zipOfText() {
    return ReadForm::custom([](const QVariant& field) {
        QString text = columns::textOf(field);
        return QVariant(mdlMain::ZipString(text));
    });
}

ReadForm phoneOfText() {
    return ReadForm::custom([](const QVariant& field) {
        QString text = columns::textOf(field);
        return QVariant(mdlMain::PhoneString(text));
    });
}

}  // namespace tvrx::records

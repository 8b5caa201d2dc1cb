#include "prescription/clsPrescription.h"

#include "session/data/DbConnection.h"
#include "session/data/MainConnection.h"
#include "session/data/Procedures.h"
#include "session/runtime/Frame.h"
#include "session/text/Conversions.h"

#include <QXmlStreamWriter>

#include <functional>
#include <vector>

// The change log of a fill: the pharmacy's record of who changed a fill's date,
// quantities, prices, days supply, names, directions or drug, and from what to what.
namespace tvrx {

namespace {

using C = clsPrescription;

// One watched value: its element in the log, whether the fill differs from the picture
// taken at the last read or log, the two values as the log shows them, and the step that
// moves the picture forward.
struct WatchedItem {
    QString element;
    std::function<bool(const C&)> changed;
    std::function<QString(const C&)> before;
    std::function<QString(const C&)> after;
    std::function<void(C&)> keep;
};

template <class T>
WatchedItem watch(const char* element, T C::*property, T C::*picture, QString (*shown)(const T&)) {
    return {QString::fromLatin1(element),
            [=](const C& rx) { return !(rx.*picture == rx.*property); },
            [=](const C& rx) { return shown(rx.*picture); },
            [=](const C& rx) { return shown(rx.*property); },
            [=](C& rx) { rx.*picture = rx.*property; }};
}

QString dateShown(const QDateTime& value) {
    return conv::FormatDate(value, QStringLiteral("MM/DD/YYYY hh:mm:ss"));
}

QString quantityShown(const double& value) {
    return conv::RTrim(conv::NumberText(value));
}

QString moneyShown(const double& value) {
    return conv::Format(value, QStringLiteral("$ #.00"));
}

QString textShown(const QString& value) {
    return conv::RTrim(value);
}

// XML 1.0 holds no control characters but tab, line feed and carriage return, and no
// unpaired surrogates or the two non-characters; the log shows them as "?" (the fill's
// own row keeps them).
QString xmlSafe(const QString& text) {
    QString safe = text;
    for (qsizetype i = 0; i < safe.size(); ++i) {
        const QChar c = safe.at(i);
        const char16_t u = c.unicode();
        if (c.isHighSurrogate() && i + 1 < safe.size() && safe.at(i + 1).isLowSurrogate()) {
            ++i;
            continue;
        }
        const bool control = u < 0x20 && u != u'\t' && u != u'\n' && u != u'\r';
        if (control || c.isSurrogate() || u == 0xFFFE || u == 0xFFFF) safe[i] = QLatin1Char('?');
    }
    return safe;
}

}  // namespace

// The watched values, in the order their elements stand in a log entry.
struct PrescriptionLog {
    static const std::vector<WatchedItem>& items();
};

const std::vector<WatchedItem>& PrescriptionLog::items() {
    static const std::vector<WatchedItem> items{
        watch("Date", &C::DateFilled, &C::m_dtLogDate, dateShown),
        watch("Qty", &C::Qty, &C::m_dLogQty, quantityShown),
        watch("Price", &C::Price, &C::m_dLogPrice, moneyShown),
        watch("Copay", &C::Copay, &C::m_dLogCopay, moneyShown),
        watch("QtyLeft", &C::QtyRemain, &C::m_dLogQtyRemain, quantityShown),
        watch("DS", &C::m_sDS, &C::m_sLogDS, textShown),
        watch("Patient", &C::Patient, &C::m_sLogPatient, textShown),
        watch("Doctor", &C::Doctor, &C::m_sLogDoctor, textShown),
        watch("SIG", &C::SIG, &C::m_sLogSIG, textShown),
        watch("Drug", &C::Drug, &C::m_sLogDrug, textShown),
    };
    return items;
}

void clsPrescription::SaveForLog() {
    for (const WatchedItem& item : PrescriptionLog::items()) item.keep(*this);
}

// Writes one LOG_RX row naming each watched value that changed since the last read or
// log, and moves the picture forward so that the next Update logs only newer changes.
void clsPrescription::AddLogEntry() {
    Frame frame("clsPrescription:AddLogEntry");
    QString changes;
    QXmlStreamWriter xml(&changes);
    bool changed = false;
    xml.writeStartElement(QStringLiteral("RX_Changes"));
    for (const WatchedItem& item : PrescriptionLog::items()) {
        // A value's log form is a conversion, and a conversion can fail.
        frame([&] {
            if (!item.changed(*this)) return;
            changed = true;
            xml.writeEmptyElement(item.element);
            xml.writeAttribute(QStringLiteral("Original_Value"), xmlSafe(item.before(*this)));
            xml.writeAttribute(QStringLiteral("New_Value"), xmlSafe(item.after(*this)));
            item.keep(*this);
        });
    }
    xml.writeEndElement();
    if (!changed) return;
    frame([&] {
        DbConnection& db = records::mainConnection();
        const QString insert = QStringLiteral(
                                   "INSERT INTO LOG_RX (LogDate, RxInfoID, Changes, RPhID, TechID) "
                                   "VALUES (%1, ?, ?, ?, ?)")
                                   .arg(db.dialect().serverTime());
        // Log rows brought from another system keep their own keys; the log still grows.
        Procedures::insertWithNewKey(db, QStringLiteral("LOG_RX"), QStringLiteral("LogRxID"), [&] {
            return QVariant(db.Execute(insert, {RXInfoID, changes, m_lEditRPhID, m_lEditTechID}));
        });
    });
}

}  // namespace tvrx

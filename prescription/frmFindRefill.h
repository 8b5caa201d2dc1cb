#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace tvrx {

class FindRefillFace;

// The refill finder: the fills of one prescription number (deleted and voided ones too)
// in a list, for the user to choose the fill to edit, or to look up another number. It
// works on the catalogue's rsdbo_FindRxNumberAll, which the caller has run with the
// number, and leaves the chosen fill's RXInfoID in mdlMain::FindRefillRxInfoID (0 when
// none was chosen).
//
// The form holds its list and its buttons and runs their handlers; a face (FindRefillFace)
// only shows the list and hands back what the user did: a desktop dialog, a list on the
// console, or a test's script.
class frmFindRefill {
public:
    // How a column's value is shown.
    enum class Format { General, ShortDate, YesNo, Currency };
    struct Column {
        const char* Caption;
        const char* DataField;
        Format format;
    };
    struct Button {
        QString Caption;
    };

    // The list's columns, left to right.
    static const std::vector<Column>& columns();
    static QStringList captions();

    QString Caption;
    Button cmdOK{QStringLiteral("&Ok")};
    Button cmdCancel{QStringLiteral("&Cancel")};
    Button cmdRedo{QStringLiteral("&Find another number")};

    // TDBList1: the rows as shown, and the current row (none: the marker is Null).
    const QList<QStringList>& rows() const { return rows_; }
    std::optional<int> Row;

    // Loads the form and shows it modally through the face; returns once it is hidden.
    void Show(FindRefillFace& face);
    // Shows it through the session's face.
    void Show();
    bool visible() const { return visible_; }

    void Form_Load();
    void Form_Activate();
    void Form_KeyDown(int KeyCode);
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdRedo_Click();
    void TDBList1_DblClick();

private:
    // Binds the list to the record set's rows again.
    void rebind();
    void setCaption();
    void choose();

    QList<QStringList> rows_;
    bool visible_ = false;
};

// What the user did on the finder. Ok and DoubleClick carry the row selected then (none:
// no row selected); Key a key code; Closed is every other way the window went away (its
// close button, Escape, the end of input), which the form takes as Cancel.
struct FindRefillGesture {
    enum class Kind { Ok, DoubleClick, Cancel, FindAnother, Key, Closed };
    Kind kind = Kind::Closed;
    std::optional<int> row;
    int keyCode = 0;
};

// How the finder is shown: next shows the form as it stands and returns the user's next
// gesture.
class FindRefillFace {
public:
    virtual ~FindRefillFace() = default;
    virtual FindRefillGesture next(const frmFindRefill& form) = 0;
};

// The face the finder is shown on: the console's unless a host set another.
FindRefillFace& findRefillFace();
void setFindRefillFace(std::shared_ptr<FindRefillFace> face);

}  // namespace tvrx

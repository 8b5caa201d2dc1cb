#include "support/ModalDriver.h"
#include "ui/ChoiceDialog.h"
#include "ui/QtUserInteraction.h"
#include "ui/RowPicker.h"

#include <QAbstractButton>
#include <QDialogButtonBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

namespace tvrx {
namespace {

using test::onNextModal;

QAbstractButton* buttonCaptioned(QWidget* dialog, const QString& caption) {
    for (auto* button : dialog->findChildren<QAbstractButton*>()) {
        if (button->text().remove(QLatin1Char('&')) == caption) return button;
    }
    return nullptr;
}

QStringList captionsOf(const QMessageBox* box) {
    QStringList captions;
    for (auto* button : box->buttons()) captions.append(button->text().remove(QLatin1Char('&')));
    captions.sort();
    return captions;
}

using enum Answer;
using enum Buttons;

struct ButtonSetCase {
    Buttons buttons;
    QStringList captions;
    QList<Answer> answers;
    Icon icon;
    QMessageBox::Icon shown;
};

const ButtonSetCase kButtonSets[] = {
    {OKOnly, {"OK"}, {OK}, Icon::None, QMessageBox::NoIcon},
    {OKCancel, {"OK", "Cancel"}, {OK, Cancel}, Icon::Critical, QMessageBox::Critical},
    {AbortRetryIgnore,
     {"Abort", "Retry", "Ignore"},
     {Abort, Retry, Ignore},
     Icon::Exclamation,
     QMessageBox::Warning},
    {YesNoCancel,
     {"Yes", "No", "Cancel"},
     {Yes, No, Cancel},
     Icon::Question,
     QMessageBox::Question},
    {YesNo, {"Yes", "No"}, {Yes, No}, Icon::Information, QMessageBox::Information},
    {RetryCancel, {"Retry", "Cancel"}, {Retry, Cancel}, Icon::Critical, QMessageBox::Critical},
};

TEST(QtUserInteractionTest, MsgBoxAnswersWithTheButtonPressed) {
    QtUserInteraction ui;
    for (const ButtonSetCase& set : kButtonSets) {
        for (qsizetype i = 0; i < set.captions.size(); ++i) {
            const QString caption = set.captions.at(i);
            onNextModal<QMessageBox>([&](QMessageBox* box) {
                QStringList expected = set.captions;
                expected.sort();
                EXPECT_EQ(captionsOf(box), expected);
                EXPECT_EQ(box->windowTitle(), "Refill");
                EXPECT_EQ(box->icon(), set.shown);
                EXPECT_EQ(box->text(), "Refill now?\nQuantity 30");
                QAbstractButton* button = buttonCaptioned(box, caption);
                ASSERT_NE(button, nullptr) << caption.toStdString();
                QTest::mouseClick(button, Qt::LeftButton);
            });
            EXPECT_EQ(ui.MsgBox("Refill now?\r\nQuantity 30", set.buttons, set.icon, 1, "Refill"),
                      set.answers.at(i))
                << caption.toStdString();
        }
    }
}

TEST(QtUserInteractionTest, MsgBoxEnterTakesTheDefaultAndEscapeTheCancel) {
    struct Case {
        Buttons buttons;
        int defaultButton;
        int key;
        Answer expected;
    };
    const Case cases[] = {
        {OKOnly, 1, Qt::Key_Return, OK},
        {OKCancel, 2, Qt::Key_Return, Cancel},
        {AbortRetryIgnore, 2, Qt::Key_Return, Retry},
        {YesNoCancel, 3, Qt::Key_Enter, Cancel},
        {YesNo, 2, Qt::Key_Return, No},
        {RetryCancel, 1, Qt::Key_Return, Retry},
        // A default outside the set falls back to its first button.
        {YesNo, 0, Qt::Key_Return, Yes},
        {YesNoCancel, 4, Qt::Key_Return, Yes},
        {YesNoCancel, 1, Qt::Key_Escape, Cancel},
        {OKOnly, 1, Qt::Key_Escape, OK},
        {AbortRetryIgnore, 2, Qt::Key_Escape, Abort},
        {YesNo, 1, Qt::Key_Escape, No},
    };
    QtUserInteraction ui;
    for (const Case& c : cases) {
        onNextModal<QMessageBox>([&](QMessageBox* box) {
            EXPECT_EQ(box->windowTitle(), "Tessivar");  // no title given: the product name
            QTest::keyClick(box, Qt::Key(c.key));
        });
        EXPECT_EQ(ui.MsgBox("Continue?", c.buttons, Icon::None, c.defaultButton, {}), c.expected)
            << static_cast<int>(c.buttons) << " default " << c.defaultButton;
    }
}

// Only the first three captions count, as the button count says; each loses its blanks.
TEST(QtUserInteractionTest, ChooseReturnsThePositionOfTheButtonUsed) {
    struct Case {
        const char* how;
        int defaultButton;
        std::function<void(ChoiceDialog*)> act;
        int expected;
    };
    const auto click = [](int index) {
        return [index](ChoiceDialog* d) {
            QTest::mouseClick(d->choiceButtons().at(index), Qt::LeftButton);
        };
    };
    const auto key = [](Qt::Key k, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        return [k, modifiers](ChoiceDialog* d) {
            d->activateWindow();
            ASSERT_TRUE(QTest::qWaitForWindowActive(d));
            QTest::keyClick(d, k, modifiers);
        };
    };
    const Case cases[] = {
        {"click second", 1, click(1), 2},
        {"Enter on default", 2, key(Qt::Key_Return), 2},
        {"access key O", 1, key(Qt::Key_O, Qt::AltModifier), 2},
        {"access key C", 1, key(Qt::Key_C, Qt::AltModifier), 3},
        {"Escape", 1, key(Qt::Key_Escape), 3},
        {"window closed", 1, [](ChoiceDialog* d) { d->close(); }, 3},
    };
    QtUserInteraction ui;
    for (const Case& c : cases) {
        onNextModal<ChoiceDialog>([&](ChoiceDialog* dialog) {
            EXPECT_EQ(dialog->windowTitle(), "REVERSE PRESCRIPTION");
            EXPECT_EQ(dialog->message(), "No refills remaining.\nClick your reversal choice");
            QStringList texts;
            for (auto* button : dialog->choiceButtons()) texts.append(button->text());
            EXPECT_EQ(texts, QStringList({"REVERSE &MAIN", "REVERSE &OTHER", "&CANCEL"}));
            EXPECT_TRUE(dialog->choiceButtons().at(c.defaultButton - 1)->isDefault());
            c.act(dialog);
        });
        EXPECT_EQ(ui.Choose("REVERSE &MAIN, REVERSE &OTHER, &CANCEL, &CLOSE", 3, c.defaultButton,
                            "REVERSE PRESCRIPTION",
                            "No refills remaining.\r\nClick your reversal choice", 3),
                  c.expected)
            << c.how;
    }
}

const QStringList kColumns = {"Rx", "Fill date", "Drug"};
const QList<QStringList> kRows = {
    {"100234", "2026-01-02", "Amoxicillin 500 mg"},
    {"100235", "2026-02-03", "Lisinopril 10 mg"},
    {"100236", "2026-03-04"},
};

TEST(QtUserInteractionTest, PickRowReturnsThePickedRowOrNone) {
    struct Case {
        const char* how;
        std::function<void(RowPicker*)> act;
        std::optional<int> expected;
    };
    const auto doubleClick = [](int row) {
        return [row](RowPicker* p) {
            QTableWidget* table = p->table();
            const QPoint cell = table->visualItemRect(table->item(row, 0)).center();
            // A person's double-click is a click followed by the double-click event.
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, cell);
            QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, cell);
        };
    };
    const auto clickThenOk = [](int row) {
        return [row](RowPicker* p) {
            QTableWidget* table = p->table();
            QTest::mouseClick(table->viewport(), Qt::LeftButton, {},
                              table->visualItemRect(table->item(row, 1)).center());
            QTest::mouseClick(p->okButton(), Qt::LeftButton);
        };
    };
    const Case cases[] = {
        {"double-click second row", doubleClick(1), 1},
        {"short row picked with OK", clickThenOk(2), 2},
        {"OK on the first row, selected from the start",
         [](RowPicker* p) { QTest::mouseClick(p->okButton(), Qt::LeftButton); }, 0},
        {"cancel", [](RowPicker* p) { QTest::mouseClick(p->cancelButton(), Qt::LeftButton); },
         std::nullopt},
    };
    QtUserInteraction ui;
    for (const Case& c : cases) {
        onNextModal<RowPicker>([&](RowPicker* p) {
            EXPECT_EQ(p->windowTitle(), "Find Refill");
            ASSERT_EQ(p->table()->columnCount(), 3);
            EXPECT_EQ(p->table()->horizontalHeaderItem(2)->text(), "Drug");
            ASSERT_EQ(p->table()->rowCount(), 3);
            EXPECT_EQ(p->table()->item(1, 2)->text(), "Lisinopril 10 mg");
            c.act(p);
        });
        EXPECT_EQ(ui.PickRow("Find Refill", kColumns, kRows), c.expected) << c.how;
    }
}

TEST(QtUserInteractionTest, InputBoxGivesTheTextOrEmptyOnCancel) {
    struct Case {
        const char* how;
        QString typed;  // typed over the default, unless empty
        QDialogButtonBox::StandardButton press;
        QString expected;
    };
    const Case cases[] = {
        {"typed and OK", "Blue Cross", QDialogButtonBox::Ok, "Blue Cross"},
        {"default kept with OK", "", QDialogButtonBox::Ok, "ACME"},
        {"typed and Cancel", "Blue Cross", QDialogButtonBox::Cancel, ""},
    };
    QtUserInteraction ui;
    for (const Case& c : cases) {
        onNextModal<QInputDialog>([&](QInputDialog* dialog) {
            EXPECT_EQ(dialog->windowTitle(), "Insurance Lookup");
            EXPECT_EQ(dialog->labelText(), "Plan name:");
            auto* edit = dialog->findChild<QLineEdit*>();
            ASSERT_NE(edit, nullptr);
            EXPECT_EQ(edit->text(), "ACME");
            if (!c.typed.isEmpty()) {
                edit->selectAll();
                QTest::keyClicks(edit, c.typed);
            }
            auto* buttons = dialog->findChild<QDialogButtonBox*>();
            ASSERT_NE(buttons, nullptr);
            QTest::mouseClick(buttons->button(c.press), Qt::LeftButton);
        });
        EXPECT_EQ(ui.InputBox("Plan name:", "Insurance Lookup", "ACME"), c.expected) << c.how;
    }
}

}  // namespace
}  // namespace tvrx

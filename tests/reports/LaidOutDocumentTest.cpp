#include "reports/LaidOutDocument.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

struct ErrorCount : DocumentEvents {
    void vp_NewPage() override {}
    void vp_EndDoc() override {}
    void vp_Error() override { ++errors; }
    void vp_PreviewPageChanged(qint32) override {}
    int errors = 0;
};

// This test program runs without a QGuiApplication: laying out text there would stop the
// process, so the document lays out nothing and says why.
TEST(LaidOutDocumentWithoutGuiTest, ReportsThatItCannotLayOutInsteadOfStoppingTheProcess) {
    ASSERT_FALSE(LaidOutDocument::canLayOut());
    LaidOutDocument doc;
    ErrorCount events;
    doc.setEvents(&events);
    doc.StartDoc();
    doc.setFontBold(true);
    doc.addText(QStringLiteral("INTERACTION FOUND\n"));
    doc.addTable(QStringLiteral("<900;"), {}, QStringLiteral("x;"), 0, 0);
    doc.EndDoc();
    EXPECT_EQ(doc.Error(), docerr::NoLayout);
    EXPECT_EQ(events.errors, 1);
    EXPECT_EQ(doc.PageCount(), 0);
    QTemporaryDir folder;
    EXPECT_FALSE(doc.writePdf(folder.filePath(QStringLiteral("report.pdf"))));
    EXPECT_TRUE(doc.pageImage(1, 72).isNull());
}

}  // namespace
}  // namespace tvrx

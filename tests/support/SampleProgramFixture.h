#pragma once

#include "support/DatabaseFixture.h"
#include "support/TvrxProgram.h"

namespace tvrx::test {

// A database holding the sample pharmacy, made as a user makes one: with "tvrx init
// --sample". The command tests run the program over it.
class SampleProgramFixture : public DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        if (!programBuilt()) GTEST_SKIP() << "the command-line host is not built";
        ASSERT_EQ(runTvrx({"init", "--db", connectionString(), "--sample"}).exitCode, 0);
    }
};

}  // namespace tvrx::test

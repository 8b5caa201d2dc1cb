#pragma once

#include "session/data/Schema.h"
#include "support/DatabaseFixture.h"

namespace tvrx::test {

// A database fixture whose database already has the pharmacy's schema.
class SchemaFixture : public DatabaseFixture {
protected:
    void SetUp() override {
        DatabaseFixture::SetUp();
        if (IsSkipped() || HasFatalFailure()) return;
        ASSERT_NO_THROW(applySchema(*db));
    }
};

}  // namespace tvrx::test

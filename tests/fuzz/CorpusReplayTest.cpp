#include "fuzz/targets/FuzzSession.h"
#include "fuzz/targets/FuzzTargets.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

namespace tvrx {
namespace {

struct FuzzTarget {
    const char* name;  // the folder of its seed corpus under fuzz/corpus/
    int (*run)(const std::uint8_t* data, std::size_t size);
};

// Every fuzz target, so that its seed corpus (and any crash input added to it) is run by
// the ordinary build too.
const FuzzTarget kFuzzTargets[] = {
    {"encodings", fuzz::fuzzEncodings},
    {"build_response", fuzz::fuzzBuildResponse},
};

TEST(CorpusReplayTest, EveryCorpusFileRunsClean) {
    for (const FuzzTarget& target : kFuzzTargets) {
        const QDir corpus(QStringLiteral(TVRX_SOURCE_DIR "/fuzz/corpus/") +
                          QString::fromLatin1(target.name));
        const QFileInfoList files = corpus.entryInfoList(QDir::Files, QDir::Name);
        EXPECT_FALSE(files.isEmpty()) << "no seed corpus in " << corpus.path().toStdString();
        for (const QFileInfo& info : files) {
            SCOPED_TRACE(info.filePath().toStdString());
            QFile file(info.filePath());
            ASSERT_TRUE(file.open(QIODevice::ReadOnly));
            const QByteArray input = file.readAll();
            try {
                target.run(reinterpret_cast<const std::uint8_t*>(input.constData()),
                           static_cast<std::size_t>(input.size()));
            } catch (const fuzz::FuzzCheckFailed& failed) {
                ADD_FAILURE() << failed.what();
            }
        }
    }
}

}  // namespace
}  // namespace tvrx

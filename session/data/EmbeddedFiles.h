#pragma once

#include <span>
#include <string_view>

namespace tvrx {

// A file of the database folder built into the library.
struct EmbeddedFile {
    std::string_view name;  // file name without its folder
    std::string_view text;  // the file's bytes, UTF-8
};

// The migrations of the main database (db/schema), in the order of their names.
std::span<const EmbeddedFile> schemaMigrationFiles();

// The sample pharmacy (db/sample): one tab-separated file per table.
std::span<const EmbeddedFile> samplePharmacyFiles();

// The alternate price source (db/pricesource): its migrations and its sample price tables.
std::span<const EmbeddedFile> priceSourceMigrationFiles();
std::span<const EmbeddedFile> priceSourceSampleFiles();

}  // namespace tvrx

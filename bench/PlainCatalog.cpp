#include "bench/PlainCatalog.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace qvx_bench {

namespace {

constexpr int kDataTypeCount = 10;
constexpr std::size_t kThumbnailSize = 16;
// 2024-01-15 10:30:00 UTC in milliseconds since 1970.
constexpr std::int64_t kEpochMillis = 1705314600000;

const char* const kDataTypeNames[kDataTypeCount] = {"VARCHAR", "CHAR",      "INTEGER", "BIGINT",  "DECIMAL",
                                                    "DOUBLE",  "DATE",      "TIMESTAMP", "BOOLEAN", "BLOB"};

std::string numbered(const char* pattern, int first, int second = 0) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, first, second);
  return text;
}

class PlainBuilder {
 public:
  PlainBuilder(int schemas, int tables, int columns, int foreignKeys)
      : schemas_(std::max(schemas, 0)),
        tables_(std::max(tables, 0)),
        columns_(std::max(columns, 0)),
        foreignKeys_(std::max(foreignKeys, 0)) {}

  std::unique_ptr<PlainCatalog> build() {
    auto catalog = std::make_unique<PlainCatalog>();
    catalog->id = nextIdentity();
    catalog->name = "catalog";
    catalog->created = kEpochMillis;
    catalog->connectionPassword = "s3cret";
    for (int ordinal = 0; ordinal < kDataTypeCount; ++ordinal) {
      auto dataType = std::make_unique<PlainDataTypeDef>();
      dataType->name = kDataTypeNames[ordinal];
      dataType->sqlName = kDataTypeNames[ordinal];
      dataType->maxLength = ordinal < 2 ? 65535 : 0;
      catalog->dataTypes.push_back(std::move(dataType));
    }
    dataTypes_ = &catalog->dataTypes;
    allTables_.reserve(static_cast<std::size_t>(schemas_) * static_cast<std::size_t>(tables_));
    for (int s = 0; s < schemas_; ++s) catalog->schemas.push_back(makeSchema(s));
    for (auto const& [key, target] : pendingTargets_) key->targetTable = allTables_[target];
    return catalog;
  }

 private:
  PlainIdentity nextIdentity() {
    ++issued_;
    return PlainIdentity{issued_ * 0x9E3779B97F4A7C15ULL, issued_};
  }

  std::unique_ptr<PlainSchema> makeSchema(int s) {
    auto schema = std::make_unique<PlainSchema>();
    schema->id = nextIdentity();
    schema->name = numbered("schema_%d", s);
    schema->owner = numbered("owner_%d", s % 3);
    for (int t = 0; t < tables_; ++t) schema->tables.push_back(makeTable(s, t));
    return schema;
  }

  std::unique_ptr<PlainTable> makeTable(int s, int t) {
    auto table = std::make_unique<PlainTable>();
    allTables_.push_back(table.get());
    table->id = nextIdentity();
    if (t % 10 == 9) {
      table->isView = true;
      table->kind = 1;
      table->query = numbered("SELECT * FROM table_%d_%d", s, t - 1);
    }
    table->name = numbered("table_%d_%d", s, t);
    if (t % 2 == 0) {
      table->hasDescription = true;
      table->description = numbered("Table %d of schema %d", t, s);
      table->tags = {numbered("tag%d", t % 5), "hot"};
    }
    table->rowCount = static_cast<std::int64_t>(t) * 1000003;
    table->layout = std::make_unique<PlainPosition>(PlainPosition{t, s});
    if (t % 50 == 0) {
      for (std::size_t i = 0; i < kThumbnailSize; ++i) {
        table->thumbnail.push_back(static_cast<unsigned char>((i * 7 + static_cast<std::size_t>(t)) % 256));
      }
    }
    for (int c = 0; c < columns_; ++c) table->columns.push_back(makeColumn(*table, c));
    if (columns_ > 0) table->primaryKey.push_back(table->columns[0].get());
    if (t % 3 == 0 && columns_ > 1) table->primaryKey.push_back(table->columns[1].get());
    for (int f = 0; f < foreignKeys_; ++f) table->foreignKeys.push_back(makeForeignKey(*table, f));
    return table;
  }

  std::unique_ptr<PlainColumn> makeColumn(PlainTable& table, int c) {
    auto column = std::make_unique<PlainColumn>();
    column->id = nextIdentity();
    column->table = &table;
    column->name = numbered("col_%d", c);
    column->dataType = c % kDataTypeCount;
    column->length = 8 * (c + 1);
    column->precision = static_cast<std::int16_t>(c % 20);
    column->scale = static_cast<std::int8_t>(c % 5);
    column->nullable = c % 3 != 0;
    if (c % 4 == 1) {
      column->hasDefaultValue = true;
      column->defaultValue = "none";
    }
    column->selectivity = 1.0 / (c + 1);
    column->weight = static_cast<float>(c) * 0.5F;
    column->created = kEpochMillis + 1000LL * c;
    column->initial = static_cast<char16_t>(u'a' + c % 26);
    column->sampleValues = {c, 2 * c, 3 * c};
    column->type = (*dataTypes_)[static_cast<std::size_t>(c % kDataTypeCount)].get();
    return column;
  }

  std::unique_ptr<PlainForeignKey> makeForeignKey(PlainTable& table, int f) {
    auto key = std::make_unique<PlainForeignKey>();
    key->id = nextIdentity();
    key->name = numbered("fk_%d", f);
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    const std::uint64_t tableCount = static_cast<std::uint64_t>(schemas_) * static_cast<std::uint64_t>(tables_);
    pendingTargets_.emplace_back(key.get(), static_cast<std::size_t>((state_ >> 33) % tableCount));
    if (columns_ > 0) key->columns.push_back(table.columns[static_cast<std::size_t>((f + 1) % columns_)].get());
    key->rules = f % 2 == 0 ? std::vector<std::int32_t>{0} : std::vector<std::int32_t>{1, 3};
    return key;
  }

  const int schemas_;
  const int tables_;
  const int columns_;
  const int foreignKeys_;
  std::uint64_t issued_ = 0;
  std::uint64_t state_ = 42;
  std::vector<std::unique_ptr<PlainDataTypeDef>> const* dataTypes_ = nullptr;
  std::vector<PlainTable*> allTables_;
  std::vector<std::pair<PlainForeignKey*, std::size_t>> pendingTargets_;
};

}  // namespace

std::size_t PlainCatalog::objectCount() const {
  std::size_t count = 1;
  for (auto const& schema : schemas) {
    ++count;
    for (auto const& table : schema->tables) {
      count += 1 + table->columns.size() + table->foreignKeys.size() + (table->layout ? 1 : 0);
    }
  }
  return count;
}

std::unique_ptr<PlainCatalog> buildPlainCatalog(int schemas, int tables, int columns, int foreignKeys) {
  return PlainBuilder(schemas, tables, columns, foreignKeys).build();
}

}  // namespace qvx_bench

#include "examples/catalog/CatalogWorkload.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogIPackage.h"
#include "examples/catalog/CatalogSeeds.h"
#include "examples/catalog/Column.h"
#include "examples/catalog/DataTypeDef.h"
#include "examples/catalog/ForeignKey.h"
#include "examples/catalog/Position.h"
#include "examples/catalog/Schema.h"
#include "examples/catalog/Table.h"
#include "examples/catalog/View.h"
#include "icore/QVXRuntime.h"
#include "platform/QvxAssert.h"
#include "platform/WkDate.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::QVXRuntime;

namespace {

constexpr int kDataTypeCount = 10;
constexpr std::size_t kThumbnailSize = 16;

// Picks the foreign-key targets: a linear congruential generator whose draws are
// taken from the high bits of its 64-bit state.
class TargetGenerator {
 public:
  std::uint64_t next(std::uint64_t bound) {
    state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
    return (state_ >> 33) % bound;
  }

 private:
  std::uint64_t state_ = 42;
};

// 01/15/2024:10:30:00.000, the creation time of the catalog and the base of its columns'.
WkDate workloadEpoch() {
  WkDate date;
  date.setDate(2024, 1, 15);
  date.setTime(10, 30, 0);
  return date;
}

// The patterns of the generated names, converted to IUString once rather than per name.
struct NamePatterns {
  IUString schema{"schema_%d"};
  IUString owner{"owner_%d"};
  IUString table{"table_%d_%d"};
  IUString query{"SELECT * FROM table_%d_%d"};
  IUString description{"Table %d of schema %d"};
  IUString tag{"tag%d"};
  IUString column{"col_%d"};
  IUString foreignKey{"fk_%d"};
};

class WorkloadBuilder {
 public:
  WorkloadBuilder(int schemas, int tables, int columns, int foreignKeys)
      : schemas_(std::max(schemas, 0)),
        tables_(std::max(tables, 0)),
        columns_(std::max(columns, 0)),
        foreignKeys_(std::max(foreignKeys, 0)),
        package_(CatalogIPackage::iGetInstance()),
        runtime_(QVXRuntime::getInstance()),
        epoch_(workloadEpoch()),
        epochSeconds_(epoch_.toTime()) {}

  Catalog* build() {
    auto catalog = std::make_unique<Catalog>();
    runtime_->assignUUID(catalog.get());
    catalog->setName("catalog");
    catalog->setCreated(epoch_);
    catalog->setConnectionPassword(IUString("s3cret"));
    for (int ordinal = 0; ordinal < kDataTypeCount; ++ordinal) {
      seeds_[ordinal] = CatalogSeeds::getDataTypeSeed(static_cast<DataType>(ordinal));
      QVX_ASSERT(seeds_[ordinal] != nullptr);
      catalog->addDataType(seeds_[ordinal]);
    }
    allTables_.reserve(static_cast<std::size_t>(schemas_) * static_cast<std::size_t>(tables_));
    for (int s = 0; s < schemas_; ++s) addSchema(*catalog, s);
    // Targets are drawn as the keys are made but may lie ahead, so they are set last.
    for (auto const& [foreignKey, target] : pendingTargets_) foreignKey->setTargetTable(allTables_[target]);
    return catalog.release();
  }

 private:
  // Each object goes to its container as soon as it exists, so that the catalog frees
  // everything made so far if a later step throws.
  void addSchema(Catalog& catalog, int s) {
    auto* schema = new Schema();
    catalog.addSchema(schema);
    runtime_->assignUUID(schema);
    schema->setName(IUString::format(patterns_.schema, s));
    schema->setOwner(IUString::format(patterns_.owner, s % 3));
    for (int t = 0; t < tables_; ++t) addTable(*schema, s, t);
  }

  void addTable(Schema& schema, int s, int t) {
    Table* table = nullptr;
    if (t % 10 == 9) {
      auto* view = new View();
      schema.addTable(view);
      view->setQuery(IUString::format(patterns_.query, s, t - 1));
      table = view;
    } else {
      table = new Table();
      schema.addTable(table);
    }
    allTables_.push_back(table);
    runtime_->assignUUID(table);
    table->setName(IUString::format(patterns_.table, s, t));
    if (t % 2 == 0) {
      table->setDescription(IUString::format(patterns_.description, t, s));
      table->addTag(IUString::format(patterns_.tag, t % 5));
      table->addTag("hot");
    }
    table->setRowCount(static_cast<std::int64_t>(t) * 1000003);
    table->setLayout(new Position(t, s));
    if (t % 50 == 0) {
      std::vector<char> thumbnail(kThumbnailSize);
      for (std::size_t i = 0; i < kThumbnailSize; ++i) {
        thumbnail[i] = static_cast<char>((i * 7 + static_cast<std::size_t>(t)) % 256);
      }
      table->setThumbnail(std::move(thumbnail));
    }
    for (int c = 0; c < columns_; ++c) addColumn(*table, c);
    if (columns_ > 0) table->addPrimaryKeyColumn(table->getColumns()[0]);
    if (t % 3 == 0 && columns_ > 1) table->addPrimaryKeyColumn(table->getColumns()[1]);
    for (int f = 0; f < foreignKeys_; ++f) addForeignKey(*table, f);
  }

  void addColumn(Table& table, int c) {
    auto* column = new Column();
    table.addColumn(column);
    runtime_->assignUUID(column);
    column->setName(IUString::format(patterns_.column, c));
    column->setDataType(package_->getLiteral(static_cast<DataType>(c % kDataTypeCount)));
    column->setLength(8 * (c + 1));
    column->setPrecision(static_cast<std::int16_t>(c % 20));
    column->setScale(static_cast<char>(c % 5));
    column->setNullable(c % 3 != 0);
    if (c % 4 == 1) column->setDefaultValue(IUString("none"));
    column->setSelectivity(1.0 / (c + 1));
    column->setWeight(static_cast<float>(c) * 0.5F);
    column->setCreated(WkDate::fromTime(epochSeconds_ + c));
    column->setInitial(static_cast<char16_t>(u'a' + c % 26));
    for (int multiple = 1; multiple <= 3; ++multiple) column->addSampleValue(multiple * c);
    column->setType(seeds_[c % kDataTypeCount]);
  }

  void addForeignKey(Table& table, int f) {
    auto* foreignKey = new ForeignKey();
    table.addForeignKey(foreignKey);
    runtime_->assignUUID(foreignKey);
    foreignKey->setName(IUString::format(patterns_.foreignKey, f));
    const std::uint64_t tableCount = static_cast<std::uint64_t>(schemas_) * static_cast<std::uint64_t>(tables_);
    pendingTargets_.emplace_back(foreignKey, static_cast<std::size_t>(generator_.next(tableCount)));
    if (columns_ > 0) foreignKey->addColumn(table.getColumns()[static_cast<std::size_t>((f + 1) % columns_)]);
    if (f % 2 == 0) {
      foreignKey->addRule(package_->getLiteral(RefRule::CASCADE));
    } else {
      foreignKey->addRule(package_->getLiteral(RefRule::RESTRICT));
      foreignKey->addRule(package_->getLiteral(RefRule::NO_ACTION));
    }
  }

  const int schemas_;
  const int tables_;
  const int columns_;
  const int foreignKeys_;
  CatalogIPackage* package_;
  QVXRuntime* runtime_;
  const WkDate epoch_;
  const std::int64_t epochSeconds_;
  const NamePatterns patterns_;
  DataTypeDef* seeds_[kDataTypeCount] = {};
  std::vector<Table*> allTables_;  // in creation order: index s * T + t
  std::vector<std::pair<ForeignKey*, std::size_t>> pendingTargets_;
  TargetGenerator generator_;
};

}  // namespace

Catalog* buildCatalog(int schemas, int tables, int columns, int foreignKeys) {
  return WorkloadBuilder(schemas, tables, columns, foreignKeys).build();
}

Catalog* buildCatalog(CatalogWorkloadSize const& size) {
  return buildCatalog(size.schemas, size.tablesPerSchema, size.columnsPerTable, size.foreignKeysPerTable);
}

}  // namespace com::example::catalog

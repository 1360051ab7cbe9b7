// The benchmark workload catalog(S, T, C, F) as plain C++ structs, the way a C++ user
// would hold the same graph without this library, with Boost.Serialization functions
// that work with both its binary and its XML archives. The serializer benchmarks time
// Boost saving and loading this graph as the peer of our binary stream and XML document.
//
// Same objects, values and references as the library's workload builder: a View is a
// PlainTable with a query, identities are 16 bytes, dates milliseconds since 1970.
// Foreign-key targets are written after the containment tree: through the pointer,
// Boost would otherwise write each not-yet-written target table in place and recurse
// from table to table.
#pragma once

#include <boost/serialization/nvp.hpp>
#include <boost/serialization/split_member.hpp>
#include <boost/serialization/string.hpp>
#include <boost/serialization/unique_ptr.hpp>
#include <boost/serialization/vector.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace qvx_bench {

struct PlainIdentity {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(high) & BOOST_SERIALIZATION_NVP(low);
  }
};

struct PlainDataTypeDef {
  std::string name;
  std::string sqlName;
  std::int32_t maxLength = 0;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(sqlName) & BOOST_SERIALIZATION_NVP(maxLength);
  }
};

struct PlainTable;

struct PlainColumn {
  PlainIdentity id;
  std::string name;
  PlainTable* table = nullptr;
  std::int32_t dataType = 0;
  std::int32_t length = 0;
  std::int16_t precision = 0;
  std::int8_t scale = 0;
  bool nullable = true;
  bool hasDefaultValue = false;
  std::string defaultValue;
  double selectivity = 0.0;
  float weight = 0.0F;
  std::int64_t created = 0;
  char16_t initial = 0;
  std::vector<std::int32_t> sampleValues;
  PlainDataTypeDef* type = nullptr;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(table) &
        BOOST_SERIALIZATION_NVP(dataType) & BOOST_SERIALIZATION_NVP(length) & BOOST_SERIALIZATION_NVP(precision) &
        BOOST_SERIALIZATION_NVP(scale) & BOOST_SERIALIZATION_NVP(nullable) &
        BOOST_SERIALIZATION_NVP(hasDefaultValue) & BOOST_SERIALIZATION_NVP(defaultValue) &
        BOOST_SERIALIZATION_NVP(selectivity) & BOOST_SERIALIZATION_NVP(weight) & BOOST_SERIALIZATION_NVP(created);
    std::uint16_t initialUnit = initial;
    archive& boost::serialization::make_nvp("initial", initialUnit);
    initial = static_cast<char16_t>(initialUnit);
    archive& BOOST_SERIALIZATION_NVP(sampleValues) & BOOST_SERIALIZATION_NVP(type);
  }
};

struct PlainForeignKey {
  PlainIdentity id;
  std::string name;
  PlainTable* targetTable = nullptr;  // written by PlainCatalog, see the file comment
  std::vector<PlainColumn*> columns;
  std::vector<std::int32_t> rules;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(columns) &
        BOOST_SERIALIZATION_NVP(rules);
  }
};

struct PlainPosition {
  std::int32_t x = 0;
  std::int32_t y = 0;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(x) & BOOST_SERIALIZATION_NVP(y);
  }
};

struct PlainTable {
  PlainIdentity id;
  std::string name;
  bool hasDescription = false;
  std::string description;
  std::int32_t kind = 0;
  std::int64_t rowCount = 0;
  std::vector<std::unique_ptr<PlainColumn>> columns;
  std::vector<PlainColumn*> primaryKey;
  std::vector<std::unique_ptr<PlainForeignKey>> foreignKeys;
  std::vector<std::string> tags;
  std::unique_ptr<PlainPosition> layout;
  std::vector<unsigned char> thumbnail;
  bool isView = false;
  std::string query;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(hasDescription) &
        BOOST_SERIALIZATION_NVP(description) & BOOST_SERIALIZATION_NVP(kind) & BOOST_SERIALIZATION_NVP(rowCount) &
        BOOST_SERIALIZATION_NVP(columns) & BOOST_SERIALIZATION_NVP(primaryKey) &
        BOOST_SERIALIZATION_NVP(foreignKeys) & BOOST_SERIALIZATION_NVP(tags) & BOOST_SERIALIZATION_NVP(layout) &
        BOOST_SERIALIZATION_NVP(thumbnail) & BOOST_SERIALIZATION_NVP(isView) & BOOST_SERIALIZATION_NVP(query);
  }
};

struct PlainSchema {
  PlainIdentity id;
  std::string name;
  std::string owner;
  std::vector<std::unique_ptr<PlainTable>> tables;

  template <class Archive>
  void serialize(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(owner) &
        BOOST_SERIALIZATION_NVP(tables);
  }
};

struct PlainCatalog {
  PlainIdentity id;
  std::string name;
  std::string version = "1.0";
  std::int64_t created = 0;
  std::string connectionPassword;
  std::vector<std::unique_ptr<PlainDataTypeDef>> dataTypes;
  std::vector<std::unique_ptr<PlainSchema>> schemas;

  template <class Archive>
  void save(Archive& archive, unsigned int /*version*/) const {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(version) &
        BOOST_SERIALIZATION_NVP(created) & BOOST_SERIALIZATION_NVP(connectionPassword) &
        BOOST_SERIALIZATION_NVP(dataTypes) & BOOST_SERIALIZATION_NVP(schemas);
    std::vector<PlainTable*> foreignKeyTargets;
    forEachForeignKey([&foreignKeyTargets](PlainForeignKey& key) { foreignKeyTargets.push_back(key.targetTable); });
    archive& BOOST_SERIALIZATION_NVP(foreignKeyTargets);
  }

  template <class Archive>
  void load(Archive& archive, unsigned int /*version*/) {
    archive& BOOST_SERIALIZATION_NVP(id) & BOOST_SERIALIZATION_NVP(name) & BOOST_SERIALIZATION_NVP(version) &
        BOOST_SERIALIZATION_NVP(created) & BOOST_SERIALIZATION_NVP(connectionPassword) &
        BOOST_SERIALIZATION_NVP(dataTypes) & BOOST_SERIALIZATION_NVP(schemas);
    std::vector<PlainTable*> foreignKeyTargets;
    archive& BOOST_SERIALIZATION_NVP(foreignKeyTargets);
    std::size_t next = 0;
    forEachForeignKey([&foreignKeyTargets, &next](PlainForeignKey& key) {
      key.targetTable = next < foreignKeyTargets.size() ? foreignKeyTargets[next++] : nullptr;
    });
  }

  template <class Archive>
  void serialize(Archive& archive, unsigned int fileVersion) {
    boost::serialization::split_member(archive, *this, fileVersion);
  }

  template <class Visit>
  void forEachForeignKey(Visit visit) const {
    for (auto const& schema : schemas) {
      for (auto const& table : schema->tables) {
        for (auto const& key : table->foreignKeys) visit(*key);
      }
    }
  }

  // Objects in the graph, counted as the library counts them (data-type seeds excluded).
  std::size_t objectCount() const;
};

// catalog(S, T, C, F) with the same values and references as the library's workload.
std::unique_ptr<PlainCatalog> buildPlainCatalog(int schemas, int tables, int columns, int foreignKeys);

}  // namespace qvx_bench

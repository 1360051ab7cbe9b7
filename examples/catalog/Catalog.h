// The root of a data catalog: its version and creation date, the schemas it contains,
// the data type definitions (shared seed objects) it offers, and the password of its
// connection, which is kept only in encrypted form.
#pragma once

#include <optional>

#include "examples/catalog/CatalogSupport.h"
#include "examples/catalog/NamedElement.h"
#include "platform/IVector.h"
#include "platform/WkDate.h"

namespace com::example::catalog {

class DataTypeDef;
class Schema;

class QVX_CATALOG_API Catalog : public NamedElement {
 public:
  static constexpr int kVersionPropertyId = 2;
  static constexpr int kCreatedPropertyId = 3;
  static constexpr int kSchemasPropertyId = 4;
  static constexpr int kDataTypesPropertyId = 5;
  static constexpr int kConnectionPasswordPropertyId = 6;

  Catalog();
  // Destroys the schemas, which the catalog contains.
  ~Catalog() override;

  IUString const& getVersion() const;
  void setVersion(IUString version);
  WkDate const& getCreated() const;
  void setCreated(WkDate const& created);

  support::ObjectList<Schema> getSchemas() const;
  // The catalog takes ownership; a schema contained elsewhere is moved here.
  void addSchema(Schema* schema);
  // The schema then belongs to the caller; false when the catalog does not contain it.
  bool removeSchema(Schema* schema);

  support::ObjectList<DataTypeDef> getDataTypes() const;
  void addDataType(DataTypeDef* dataType);
  bool removeDataType(DataTypeDef* dataType);

  // The password in clear text. It is stored encrypted through the registered
  // encryption provider, and the reflective interface sees only the encrypted text, so
  // neither interchange form carries the clear text. Provider failures propagate.
  std::optional<IUString> getConnectionPassword() const;
  void setConnectionPassword(std::optional<IUString> clearText);

  void const* iGet(IProperty const& property, unsigned int* length, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int length, IBOOLEAN flag) override;
 protected:
  void const* getValue(IProperty const& property, unsigned int* length) const;
  void setValue(IProperty const& property, void* value, unsigned int length);

 private:
  IUString version_{"1.0"};
  WkDate created_;
  IVector<IObject*> schemas_{support::kCollectionCapacity};
  IVector<IObject*> dataTypes_{support::kCollectionCapacity};
  std::optional<IUString> encryptedPassword_;
};

}  // namespace com::example::catalog

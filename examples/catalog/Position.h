// The position of a table on a diagram: a value-class object, contained by its table,
// without identity or handle of its own.
#pragma once

#include <cstdint>

#include "examples/catalog/CatalogExport.h"
#include "examples/catalog/CatalogIPackage.h"
#include "icore/internal/IObjectInternal.h"

namespace com::example::catalog {

using com::veltrana::qvx::icore::internal::IObjectInternal;

class QVX_CATALOG_API Position : public IObjectInternal {
 public:
  static constexpr int kXPropertyId = 0;
  static constexpr int kYPropertyId = 1;

  Position();
  Position(std::int32_t x, std::int32_t y);
  ~Position() override;

  std::int32_t getX() const;
  void setX(std::int32_t x);
  std::int32_t getY() const;
  void setY(std::int32_t y);

  void const* iGet(IProperty const& property, unsigned int* index, IBOOLEAN flag) const override;
  void iSet(IProperty const& property, void* value, unsigned int index, IBOOLEAN flag) override;
  // Position has no multi-valued property, so this always throws.
  IBOOLEAN iHasItems(IProperty const& property) override;

 private:
  std::int32_t x_ = 0;
  std::int32_t y_ = 0;
};

}  // namespace com::example::catalog

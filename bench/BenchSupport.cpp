// The shared catalogs and helpers of BenchSupport.h.
#include "bench/BenchSupport.h"

#include <memory>
#include <vector>

#include "examples/catalog/Catalog.h"
#include "examples/catalog/CatalogWorkload.h"
#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/QVXRuntime.h"
#include "platform/IVector.h"
#include "platform/WkEncryption.h"

namespace qvx_bench {

using com::example::catalog::buildCatalog;
using com::example::catalog::Catalog;
using com::example::catalog::kBenchCatalog;
using com::veltrana::qvx::icore::IObject;
using com::veltrana::qvx::icore::IProperty;
using com::veltrana::qvx::icore::QVXRuntime;

void useBenchEncryptionKey() {
  unsigned char key[WkEncryption::kKeyLength];
  for (std::size_t i = 0; i < sizeof key; ++i) key[i] = static_cast<unsigned char>(i * 13 + 5);
  WkEncryption::setKey(key, sizeof key);
}

namespace {
std::unique_ptr<Catalog> gSharedCatalogs[2];
}

Catalog const& sharedBenchCatalog(int which) {
  std::unique_ptr<Catalog>& slot = gSharedCatalogs[which == 0 ? 0 : 1];
  if (!slot) {
    useBenchEncryptionKey();
    slot.reset(buildCatalog(kBenchCatalog));
  }
  return *slot;
}

void releaseSharedBenchCatalogs() {
  for (auto& catalog : gSharedCatalogs) catalog.reset();
}

std::size_t countContainedObjects(IObject const* root) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  std::size_t count = 0;
  std::vector<IObject const*> pending{root};
  while (!pending.empty()) {
    IObject const* object = pending.back();
    pending.pop_back();
    ++count;
    auto const& info = *runtime->getIObjectInfo(object);
    for (IProperty* property : info.getIClass()->getAllProperties(IFALSE)) {
      if (!property->isContainment()) continue;
      void const* value = info.get(*property, IFALSE);
      if (value == nullptr) continue;
      if (!property->isCollection()) {
        pending.push_back(static_cast<IObject const*>(value));
        continue;
      }
      for (IObject* child : *static_cast<IVector<IObject*> const*>(value)) pending.push_back(child);
    }
  }
  return count;
}

}  // namespace qvx_bench

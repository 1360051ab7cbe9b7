#include "icore/runtime/SeedRegistry.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <memory>
#include <mutex>
#include <unordered_set>
#include <vector>

#include "icore/IClass.h"
#include "icore/IObject.h"
#include "icore/IObjectInfo.h"
#include "icore/IProperty.h"
#include "icore/QVXMsgCatalog.h"
#include "icore/QVXRuntime.h"
#include "icore/runtime/SeedIdentity.h"
#include "io/ResourceResolver.h"
#include "io/XMLDeserializer.h"
#include "io/exception/IOException.h"
#include "platform/IOutputStream.h"
#include "platform/QvxAssert.h"

namespace com::veltrana::qvx::icore::runtime {

using io::exception::IOException;

namespace {

// A containment whose values are themselves seed objects, so registering an object
// registers them too.
bool holdsSeededObjects(IProperty const& property) {
  if (property.isPrimitive() || property.isEnum() || !property.isContainment()) return false;
  IType const* type = property.getType();
  if (type == nullptr || !type->isClass()) return false;
  auto const* valueClass = static_cast<IClass const*>(type);
  return valueClass->isSeeded() && valueClass->isIdentifiableClass();
}

IBOOLEAN isOfClass(IObject const* object, IClass const& objectClass) {
  IClass const* own = QVXRuntime::getInstance()->getIClass(object);
  return own != nullptr && own->isTypeOf(objectClass) ? ITRUE : IFALSE;
}

}  // namespace

SeedRegistry* SeedRegistry::getInstance() {
  static auto* const instance = new SeedRegistry();  // never destroyed: usable until exit
  return instance;
}

SeedRegistry::SeedRegistry() : registry_(21) {}

SeedRegistry::~SeedRegistry() = default;

IObject* SeedRegistry::getObjectById(IUString const& id) {
  SeedLoaderCallback callback = nullptr;
  {
    std::lock_guard<WkMutex> guard(lock_);
    if (IObject* known = findRegistered(id)) return known;
    callback = loaderCallback_;
  }
  // Unlocked from here on while loading: see the class comment.
  if (callback != nullptr) {
    if (IObject* loaded = callback(id)) return adoptLoadedObject(loaded);
  }
  registerAllSeedObjects(id);
  std::lock_guard<WkMutex> guard(lock_);
  return findRegistered(id);
}

IObject* SeedRegistry::findRegistered(IUString const& id) const {
  auto found = registry_.find(id);
  return found != registry_.end() ? found->second : nullptr;
}

IObject* SeedRegistry::adoptLoadedObject(IObject* loaded) {
  IObjectInfo const* info = QVXRuntime::getInstance()->getIObjectInfo(static_cast<IObject const*>(loaded));
  auto const* seedIdentity = info != nullptr ? dynamic_cast<SeedIdentity const*>(info->getIdentity()) : nullptr;
  std::lock_guard<WkMutex> guard(lock_);
  if (seedIdentity != nullptr) {
    IObject* registered = findRegistered(seedIdentity->getIdString());
    if (registered != nullptr && registered != loaded) {
      delete loaded;  // a copy: another thread's load of the same id came first
      return registered;
    }
  }
  registerSeedObject(loaded);
  return loaded;
}

IVector<IObject*>* SeedRegistry::getObjectsByType(IClass const& objectClass) {
  std::lock_guard<WkMutex> guard(lock_);
  std::unique_ptr<IVector<IObject*>> matches;
  for (auto const& [id, object] : registry_) {
    if (!isOfClass(object, objectClass)) continue;
    if (!matches) matches = std::make_unique<IVector<IObject*>>();
    matches->append(object);
  }
  return matches.release();  // null when nothing matched: callers rely on it
}

IVector<IObject*>* SeedRegistry::getAllRegisteredObjects() {
  std::lock_guard<WkMutex> guard(lock_);
  auto all = std::make_unique<IVector<IObject*>>(registry_.size() + 1, 200, 1000);
  for (auto const& [id, object] : registry_) all->append(object);
  return all.release();
}

void SeedRegistry::removeObjectsByType(IClass const& objectClass) {
  std::lock_guard<WkMutex> guard(lock_);
  // Decide everything before deleting anything: deleting a container frees the
  // contained objects, which are registered too and must not be looked at afterwards.
  std::vector<IObject*> doomed;
  std::unordered_set<IObject const*> seen;
  QVXRuntime* runtime = QVXRuntime::getInstance();
  for (auto const& [id, object] : registry_) {
    if (!isOfClass(object, objectClass)) continue;
    IObjectInfo const* info = runtime->getIObjectInfo(static_cast<IObject const*>(object));
    if (info == nullptr || info->getContainer() != nullptr) continue;
    if (seen.insert(object).second) doomed.push_back(object);
  }
  for (IObject* object : doomed) delete object;
  // Everything goes, whatever its class: the other entries may point into what was
  // just deleted, and callers expect an empty registry afterwards.
  registry_.clear();
}

SeedRegistry::SeedLoaderCallback SeedRegistry::registerSeedLoaderCallback(SeedLoaderCallback callback) {
  std::lock_guard<WkMutex> guard(lock_);
  SeedLoaderCallback previous = loaderCallback_;
  loaderCallback_ = callback;
  return previous;
}

void SeedRegistry::debugDumpRegistryContents(IOutputStream& out) {
  std::lock_guard<WkMutex> guard(lock_);
  for (auto const& [id, object] : registry_) {
    const auto lowBits = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(object));
    out << "Id\t =" << id << "\n" << "Object\t =" << lowBits << "\n\n";
  }
}

void SeedRegistry::registerSeedObject(IObject const* object) {
  QVXRuntime* runtime = QVXRuntime::getInstance();
  // An explicit work list instead of recursion, so that deep containment trees cannot
  // exhaust the stack. Children are pushed in reverse, so objects are registered in
  // the order a depth-first walk would visit them.
  std::vector<IObject const*> pending{object};
  std::vector<IObject const*> children;
  while (!pending.empty()) {
    IObject const* current = pending.back();
    pending.pop_back();
    IObjectInfo const* info = runtime->getIObjectInfo(current);
    QVX_ASSERT(info != nullptr);
    if (info == nullptr) continue;
    IClass const* objectClass = info->getIClass();
    // Seed objects are identifiable by definition; anything else is a broken loader.
    QVX_ASSERT(objectClass != nullptr && objectClass->isIdentifiableClass());
    if (objectClass == nullptr || !objectClass->isIdentifiableClass()) continue;
    IIdentity const* identity = info->getIdentity();
    QVX_ASSERT(identity != nullptr);
    if (identity == nullptr) continue;
    if (auto const* seedIdentity = dynamic_cast<SeedIdentity const*>(identity)) {
      addObjectInRegistry(seedIdentity->getIdString(), const_cast<IObject*>(current));
    }
    // A proxy has no values to walk.
    if (info->isProxy()) continue;

    children.clear();
    for (IProperty const* property : objectClass->getAllProperties(IFALSE)) {
      if (!holdsSeededObjects(*property)) continue;
      void const* value = info->get(*property, IFALSE);
      if (value == nullptr) continue;
      if (!property->isCollection()) {
        children.push_back(static_cast<IObject const*>(value));
        continue;
      }
      for (IObject* element : *static_cast<IVector<IObject*> const*>(value)) {
        if (element != nullptr) children.push_back(element);
      }
    }
    pending.insert(pending.end(), children.rbegin(), children.rend());
  }
}

void SeedRegistry::registerAllSeedObjects(IUString const& id) {
  const IUString fileName = createFileNameFromId(id);
  // A seed file that refers to an id it lacks would be read again from inside its own
  // reading, without end; a file already being read on this thread is not read again.
  thread_local std::vector<IUString> filesBeingRead;
  if (std::find(filesBeingRead.begin(), filesBeingRead.end(), fileName) != filesBeingRead.end()) return;
  IUString error;
  const IUString folder = io::ResourceResolver::getResourcePath(fileName, error);
  if (folder.isEmpty()) throw IOException(error);
  std::ifstream input((folder + fileName).toUtf8(), std::ios::in | std::ios::binary);
  if (!input.is_open()) throw IOException(qvxFormatMsg(76000, fileName));
  filesBeingRead.push_back(fileName);
  struct ReadingDone {
    std::vector<IUString>& files;
    ~ReadingDone() { files.pop_back(); }
  } done{filesBeingRead};
  // Read without the lock, since reading may load package libraries; each object is
  // then registered under it. A file read again after a miss, or by two threads at
  // once, brings copies of registered objects: the registered ones stay (callers may
  // hold them) and the copies go.
  io::XMLDeserializer reader(&input, nullptr);
  std::unique_ptr<IVector<IObject*>> objects(reader.deserialize());
  for (IObject* object : *objects) adoptLoadedObject(object);
}

void SeedRegistry::addObjectInRegistry(IUString id, IObject* object) {
  // The first object registered under an id stays: callers may already hold it.
  registry_.emplace(std::move(id), object);
}

IUString SeedRegistry::createFileNameFromId(IUString const& id) {
  IUString stem = id.substr(0, id.find(u'/'));
  const std::size_t lastDot = stem.rfind(u'.');
  if (lastDot != IUString::npos) stem = stem.substr(0, lastDot);
  stem.replaceAll(IUString(u":"), IUString(u"."));
  return stem + IUString(u".seed.xml");
}

}  // namespace com::veltrana::qvx::icore::runtime

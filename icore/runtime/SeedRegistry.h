// The process-wide registry of seeded objects: shared reference data that streams and
// documents refer to by seed id only. A lookup that misses asks the host's loader
// callback, then the seed file named after the id (found through the resource resolver).
#pragma once

#include <unordered_map>

#include "platform/IUString.h"
#include "platform/IVector.h"
#include "platform/QvxExport.h"
#include "platform/WkMutex.h"

class IOutputStream;

namespace com::veltrana::qvx::icore {
class IClass;
class IObject;
}  // namespace com::veltrana::qvx::icore

namespace com::veltrana::qvx::icore::runtime {

// Fills lazily and keeps what it registered until removeObjectsByType empties it. It
// owns the objects read from seed files and, once registered, those that the loader
// callback hands over; removeObjectsByType deletes them.
//
// Thread-safe: one recursive lock guards the map and the callback. It is NOT held
// while the loader callback runs or a seed file is read, because both may load a
// package library: the loader holds its own lock (and the system's) while the
// library's static initialisers run, and those may use this registry, so holding ours
// across the call would order the two locks both ways and could deadlock. A callback
// may call back into the registry. Two threads that miss the same id at once may both
// load it; the first object registered under an id stays, and a later copy that the
// registry was handed is deleted.
class QVX_API SeedRegistry {
 public:
  // Returns the seeded object with seed id `id`, or null; the callback's result is
  // registered (with its seeded contents) as it is returned.
  typedef IObject* (*SeedLoaderCallback)(IUString const& id);

  static SeedRegistry* getInstance();

  // The object registered under `id`, else the loader callback's object, else what the
  // seed file for `id` holds under it; null when none of them has it. Throws
  // io::exception::IOException when the seed file is needed but cannot be found or read.
  IObject* getObjectById(IUString const& id);
  // Every registered object whose class is `objectClass` or a subclass of it; null (not
  // an empty vector) when there is none. The caller owns the vector, not the objects.
  IVector<IObject*>* getObjectsByType(IClass const& objectClass);
  // Every registered object, in the map's order; never null. The caller owns the
  // vector, not the objects.
  IVector<IObject*>* getAllRegisteredObjects();
  // Deletes the registered top-level objects (no container) of `objectClass` or a
  // subclass, with what they contain, and then forgets every registered object,
  // whatever its class: afterwards the registry is empty.
  void removeObjectsByType(IClass const& objectClass);
  // Installs `callback` (null removes it) and returns the one it replaces.
  SeedLoaderCallback registerSeedLoaderCallback(SeedLoaderCallback callback);
  // For each entry: "Id\t =<id>\nObject\t =<low 32 bits of the address>\n\n".
  void debugDumpRegistryContents(IOutputStream& out);

  SeedRegistry(const SeedRegistry&) = delete;
  SeedRegistry& operator=(const SeedRegistry&) = delete;

 private:
  SeedRegistry();
  ~SeedRegistry();

  // Adds `object` under its seed id and, walking its containments, every contained
  // object of a seeded identifiable class. Called with the lock held.
  void registerSeedObject(IObject const* object);
  // Registers `loaded`, which the loader callback made and the registry now owns, and
  // returns it; when another thread registered an object under its id meanwhile,
  // deletes `loaded` and returns that object instead.
  IObject* adoptLoadedObject(IObject* loaded);
  // Reads the seed file that should hold `id` (without the lock) and registers its
  // top-level objects.
  void registerAllSeedObjects(IUString const& id);
  void addObjectInRegistry(IUString id, IObject* object);
  // The object registered under `id`, or null. Called with the lock held.
  IObject* findRegistered(IUString const& id) const;
  // "a.b:T.x/y" -> "a.b.T.seed.xml": the text before the first "/", cut at its last
  // ".", with ":" turned into ".".
  static IUString createFileNameFromId(IUString const& id);

  std::unordered_map<IUString, IObject*> registry_;
  SeedLoaderCallback loaderCallback_ = nullptr;
  WkMutex lock_;
};

}  // namespace com::veltrana::qvx::icore::runtime

// The growable array used for every list-valued result and multi-valued property.
// Its capacity follows three numbers given at construction: the initial capacity,
// then doubling while the capacity is below the doubling limit, then steps of the
// increment. Element access is bounds-checked and throws IVectorException
// ("Index is out of bound."); an allocation that fails, or a capacity beyond
// 4294967295 elements, throws "IVector failed to grow.". A vector of pointers never
// owns what they point to, except the values it made itself with appendValue.
//
// Objects hold one vector per multi-valued property, millions of them mostly empty or
// short, so a vector is kept small (24 bytes; 32 with value blocks): its own buffer,
// 32-bit counts, and no storage at all until the first element arrives. capacity()
// already reports the initial capacity before then, so the growth sequence is the
// same as if the buffer had been reserved at construction.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/IVectorException.h"

namespace ivector_detail {

// Pointers to numbers and characters may point into blocks of values that the vector
// owns (appendValue): a multi-valued number property then costs one block for all its
// values instead of one allocation per value.
template <typename T>
constexpr bool kHasValueBlocks = std::is_pointer_v<T> && std::is_arithmetic_v<std::remove_pointer_t<T>>;

// The blocks of values of a vector of pointers to V. A block is never moved or
// reallocated, so the address of a value stays valid for the life of the block; a slot
// is not reused until every block is released. The first block, usually the only one,
// carries an 8-byte header; later blocks also link to the block before them. The first
// block may also carry the vector's first buffer of pointers after its slots
// (takeWithBuffer): a short list of numbers then costs one allocation, not two.
template <typename V>
class ValueBlocks {
 public:
  ValueBlocks() = default;
  ValueBlocks(const ValueBlocks&) = delete;
  ValueBlocks& operator=(const ValueBlocks&) = delete;
  ValueBlocks(ValueBlocks&& other) noexcept : last_(std::exchange(other.last_, nullptr)) {}
  ValueBlocks& operator=(ValueBlocks&& other) noexcept {
    if (this != &other) {
      release();
      last_ = std::exchange(other.last_, nullptr);
    }
    return *this;
  }
  ~ValueBlocks() { release(); }

  // A slot holding `value`. The first block has `firstCapacity` slots, later ones
  // double the previous one. Throws std::bad_alloc when no block can be had.
  V* take(V value, std::uint32_t firstCapacity) {
    if (last_ == nullptr || last_->used == last_->capacity) addBlock(firstCapacity);
    V* slot = slotsOf(last_) + last_->used++;
    *slot = value;
    return slot;
  }

  // The first slot, holding `value`, of a first block of `capacity` slots followed by
  // room for `bufferBytes` aligned for pointers, which `buffer` receives. Only while
  // there is no block. Throws std::bad_alloc when the block cannot be had.
  V* takeWithBuffer(V value, std::uint32_t capacity, std::size_t bufferBytes, void*& buffer) {
    capacity = std::clamp<std::uint32_t>(capacity, 1, kMaxBlockCapacity);
    void* memory = ::operator new(bufferOffset(capacity) + bufferBytes);
    last_ = ::new (memory) Header{capacity, 0, 0U, 1U};
    buffer = bytesOf(last_) + bufferOffset(capacity);
    return take(value, capacity);
  }

  // True when `buffer` is the room that takeWithBuffer gave: it goes with the blocks.
  bool carries(const void* buffer) const {
    if (last_ == nullptr || buffer == nullptr) return false;
    Header* first = last_;
    while (first->hasPrevious) first = previousOf(first);
    return first->carriesBuffer && buffer == bytesOf(first) + bufferOffset(first->capacity);
  }

  bool holds(const V* value) const {
    const auto address = reinterpret_cast<std::uintptr_t>(value);
    for (Header* block = last_; block != nullptr; block = previousOf(block)) {
      const auto first = reinterpret_cast<std::uintptr_t>(slotsOf(block));
      if (address >= first && address < first + block->capacity * sizeof(V)) return true;
    }
    return false;
  }

  void release() noexcept {
    while (last_ != nullptr) {
      Header* previous = previousOf(last_);
      ::operator delete(last_);
      last_ = previous;
    }
  }

  void swap(ValueBlocks& other) noexcept { std::swap(last_, other.last_); }
  bool any() const { return last_ != nullptr; }

 private:
  struct Header {
    std::uint32_t capacity;
    std::uint32_t used : 30;
    std::uint32_t hasPrevious : 1;
    std::uint32_t carriesBuffer : 1;
  };
  // A block is its Header, then the link to the previous block when there is one, then
  // the slots, each part aligned for the next.
  static constexpr std::size_t kLinkOffset = (sizeof(Header) + alignof(Header*) - 1) / alignof(Header*) * alignof(Header*);
  static constexpr std::size_t slotOffset(bool hasPrevious) {
    const std::size_t start = hasPrevious ? kLinkOffset + sizeof(Header*) : sizeof(Header);
    return (start + alignof(V) - 1) / alignof(V) * alignof(V);
  }
  // Where a first block's room for the vector's buffer starts: after its slots,
  // aligned for pointers.
  static constexpr std::size_t bufferOffset(std::uint32_t capacity) {
    const std::size_t end = slotOffset(false) + std::size_t{capacity} * sizeof(V);
    return (end + alignof(void*) - 1) / alignof(void*) * alignof(void*);
  }
  static unsigned char* bytesOf(Header* block) { return reinterpret_cast<unsigned char*>(block); }
  static Header* previousOf(Header* block) {
    return block->hasPrevious ? *reinterpret_cast<Header**>(bytesOf(block) + kLinkOffset) : nullptr;
  }
  static V* slotsOf(Header* block) {
    return reinterpret_cast<V*>(bytesOf(block) + slotOffset(block->hasPrevious != 0));
  }

  void addBlock(std::uint32_t firstCapacity) {
    const bool hasPrevious = last_ != nullptr;
    const std::uint32_t capacity =
        !hasPrevious ? std::clamp<std::uint32_t>(firstCapacity, 1, kMaxBlockCapacity)
                     : std::min<std::uint32_t>(last_->capacity, kMaxBlockCapacity / 2) * 2;
    void* memory = ::operator new(slotOffset(hasPrevious) + std::size_t{capacity} * sizeof(V));
    auto* block = ::new (memory) Header{capacity, 0, hasPrevious ? 1U : 0U, 0U};
    if (hasPrevious) ::new (bytesOf(block) + kLinkOffset) Header*(last_);
    last_ = block;
  }

  // `used` has 30 bits.
  static constexpr std::uint32_t kMaxBlockCapacity = 0x3FFFFFFFU;

  Header* last_ = nullptr;
};

// Vectors whose elements cannot point into value blocks carry none. The store is the
// vector's last member, so every IVector<T*> starts with the same members and generic
// code may read any collection's size and elements as IVector<void*>.
template <typename T, bool = kHasValueBlocks<T>>
class ValueStore {
 public:
  bool holdsValue(const void*) const { return false; }
  bool carriesBuffer(const void*) const { return false; }
  void releaseValueBlocks() noexcept {}
  void swapValueBlocks(ValueStore&) noexcept {}
};

template <typename T>
class ValueStore<T, true> {
 public:
  ValueBlocks<std::remove_pointer_t<T>> valueBlocks_;

  bool holdsValue(const void* value) const {
    return valueBlocks_.holds(static_cast<const std::remove_pointer_t<T>*>(value));
  }
  bool carriesBuffer(const void* buffer) const { return valueBlocks_.carries(buffer); }
  void releaseValueBlocks() noexcept { valueBlocks_.release(); }
  void swapValueBlocks(ValueStore& other) noexcept { valueBlocks_.swap(other.valueBlocks_); }
};

}  // namespace ivector_detail

template <typename T>
class IVector {
  static_assert(!std::is_same_v<T, bool>, "use IBOOLEAN elements, not bool");
  static_assert(alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "over-aligned elements are not supported");
  using Store = ivector_detail::ValueStore<T>;

 public:
  using value_type = T;
  using iterator = T*;
  using const_iterator = const T*;

  explicit IVector(std::size_t initialCapacity = 10, std::size_t increment = 200, std::size_t doublingLimit = 1000)
      : capacity_(checkedCapacity(initialCapacity)),
        increment_(saturated(increment == 0 ? 1 : increment)),
        doublingLimit_(saturated(doublingLimit)) {}

  // Copies keep the source's growth policy and capacity. They share the source's
  // pointers, values of its blocks included; the blocks stay the source's.
  IVector(const IVector& other)
      : capacity_(other.capacity_), increment_(other.increment_), doublingLimit_(other.doublingLimit_) {
    if (other.size_ == 0) return;
    T* buffer = allocate(capacity_);
    try {
      std::uninitialized_copy(other.begin(), other.end(), buffer);
    } catch (...) {
      ::operator delete(buffer);
      throw;
    }
    data_ = buffer;
    size_ = other.size_;
  }
  IVector& operator=(const IVector& other) {
    if (this != &other) {
      IVector copy(other);
      swap(copy);
    }
    return *this;
  }
  IVector(IVector&& other) noexcept
      : data_(std::exchange(other.data_, nullptr)),
        size_(std::exchange(other.size_, 0)),
        capacity_(std::exchange(other.capacity_, 0)),
        increment_(other.increment_),
        doublingLimit_(other.doublingLimit_),
        store_(std::move(other.store_)) {}
  IVector& operator=(IVector&& other) noexcept {
    if (this != &other) {
      IVector taken(std::move(other));
      swap(taken);
    }
    return *this;
  }
  ~IVector() { freeBuffer(); }

  std::size_t size() const { return size_; }
  bool isEmpty() const { return size_ == 0; }
  std::size_t capacity() const { return capacity_; }

  T& operator[](std::size_t index) { return data_[checked(index)]; }
  const T& operator[](std::size_t index) const { return data_[checked(index)]; }
  T& elementAt(std::size_t index) { return data_[checked(index)]; }
  const T& elementAt(std::size_t index) const { return data_[checked(index)]; }

  // `value` may be an element of this vector (v.append(v[0])): growing would move it
  // away, so when the vector is full it is copied out before the vector grows.
  void append(const T& value) {
    if (isFull()) {
      append(T(value));
      return;
    }
    ::new (static_cast<void*>(data_ + size_)) T(value);
    ++size_;
  }
  void append(T&& value) {
    if (isFull()) {
      T kept(std::move(value));
      makeRoomForOne();
      ::new (static_cast<void*>(data_ + size_)) T(std::move(kept));
    } else {
      ::new (static_cast<void*>(data_ + size_)) T(std::move(value));
    }
    ++size_;
  }
  // Inserts before position `index` (0 inserts at the front, size() appends).
  void insertAt(std::size_t index, const T& value) {
    if (index > size_) throw IVectorException(IVectorException::kIndexOutOfBound);
    T kept(value);  // `value` may be an element that the shift below moves
    if (isFull()) makeRoomForOne();
    if (index == size_) {
      ::new (static_cast<void*>(data_ + size_)) T(std::move(kept));
    } else {
      ::new (static_cast<void*>(data_ + size_)) T(std::move(data_[size_ - 1]));
      std::move_backward(data_ + index, data_ + size_ - 1, data_ + size_);
      data_[index] = std::move(kept);
    }
    ++size_;
  }
  void insertFront(const T& value) { insertAt(0, value); }

  void removeAt(std::size_t index) {
    T* const removed = data_ + checked(index);
    std::move(removed + 1, data_ + size_, removed);
    --size_;
    std::destroy_at(data_ + size_);
  }
  // Removes the first element equal to `value`; false when there is none.
  bool removeElement(const T& value) {
    const long found = indexOf(value);
    if (found < 0) return false;
    removeAt(static_cast<std::size_t>(found));
    return true;
  }
  void clear() {
    std::destroy(data_, data_ + size_);
    size_ = 0;
  }

  // The index of the first element equal to `value`, or -1.
  long indexOf(const T& value) const {
    const T* found = std::find(begin(), end(), value);
    return found == end() ? -1 : static_cast<long>(found - begin());
  }
  bool contains(const T& value) const { return indexOf(value) >= 0; }

  // Raises the capacity to at least `minimum`; never shrinks.
  void ensureCapacity(std::size_t minimum) {
    if (minimum <= capacity_) return;
    relocate(checkedCapacity(minimum));
  }

  // For a vector of pointers to numbers or characters (IVector<std::int32_t*>, ...):
  // appends the address of a copy of `value` that the vector keeps in a block of its
  // own. The copy lives as long as the vector, until deleteValues(), and must never
  // be deleted by itself; removing its pointer does not free its slot.
  template <typename Element = T>
  Element appendValue(std::remove_pointer_t<Element> value) {
    static_assert(ivector_detail::kHasValueBlocks<T>, "only vectors of pointers to numbers keep values");
    if (data_ == nullptr && capacity_ > 0 && !store_.valueBlocks_.any()) return appendFirstValue(value);
    if (isFull()) makeRoomForOne();
    T slot = nullptr;
    try {
      slot = store_.valueBlocks_.take(value, capacity_);
    } catch (const std::bad_alloc&) {
      throw IVectorException(IVectorException::kFailedToGrow);
    }
    ::new (static_cast<void*>(data_ + size_)) T(slot);
    ++size_;
    return slot;
  }

  // For a vector of pointers whose owner owns what they point to: deletes every
  // element (the values of the vector's own blocks by releasing the blocks) and
  // empties the vector.
  void deleteValues() {
    static_assert(std::is_pointer_v<T>, "only a vector of pointers holds values to delete");
    for (T element : *this) {
      if (!store_.holdsValue(element)) delete element;
    }
    clear();
    // The buffer may go with the blocks; the next element then allocates a new one.
    if (store_.carriesBuffer(data_)) data_ = nullptr;
    store_.releaseValueBlocks();
  }

  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }

  void swap(IVector& other) noexcept {
    store_.swapValueBlocks(other.store_);
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    std::swap(increment_, other.increment_);
    std::swap(doublingLimit_, other.doublingLimit_);
  }

 private:
  static constexpr std::size_t kMaxCapacity =
      std::min<std::size_t>(std::numeric_limits<std::uint32_t>::max(), std::numeric_limits<std::size_t>::max() / sizeof(T));

  static std::uint32_t checkedCapacity(std::size_t capacity) {
    if (capacity > kMaxCapacity) throw IVectorException(IVectorException::kFailedToGrow);
    return static_cast<std::uint32_t>(capacity);
  }
  // A policy number beyond 32 bits acts exactly as the 32-bit maximum does: no
  // capacity can reach either.
  static std::uint32_t saturated(std::size_t number) {
    return static_cast<std::uint32_t>(std::min<std::size_t>(number, std::numeric_limits<std::uint32_t>::max()));
  }

  std::size_t checked(std::size_t index) const {
    if (index >= size_) throw IVectorException(IVectorException::kIndexOutOfBound);
    return index;
  }

  // True also for a vector whose first buffer is not allocated yet.
  bool isFull() const { return data_ == nullptr || size_ == capacity_; }

  void makeRoomForOne() {
    if (data_ == nullptr && capacity_ > 0) {
      relocate(capacity_);
      return;
    }
    const std::size_t current = capacity_;
    const std::size_t next = current < doublingLimit_ ? std::max<std::size_t>(current * 2, 1) : current + increment_;
    relocate(checkedCapacity(next));
  }

  // The first value of a vector without buffer or blocks: one allocation for the first
  // block and the buffer.
  template <typename Element = T>
  Element appendFirstValue(std::remove_pointer_t<Element> value) {
    void* buffer = nullptr;
    T slot = nullptr;
    try {
      slot = store_.valueBlocks_.takeWithBuffer(value, capacity_, std::size_t{capacity_} * sizeof(T), buffer);
    } catch (const std::bad_alloc&) {
      throw IVectorException(IVectorException::kFailedToGrow);
    }
    data_ = static_cast<T*>(buffer);
    ::new (static_cast<void*>(data_)) T(slot);
    size_ = 1;
    return slot;
  }

  // Frees a buffer unless it lives in the first value block, which frees it.
  void deallocate(T* buffer) noexcept {
    if (!store_.carriesBuffer(buffer)) ::operator delete(buffer);
  }

  static T* allocate(std::size_t capacity) {
    void* memory = ::operator new(capacity * sizeof(T), std::nothrow);
    if (memory == nullptr) throw IVectorException(IVectorException::kFailedToGrow);
    return static_cast<T*>(memory);
  }

  // Moves the elements to a buffer of exactly `capacity` elements.
  void relocate(std::uint32_t capacity) {
    T* buffer = allocate(capacity);
    if constexpr (std::is_nothrow_move_constructible_v<T>) {
      std::uninitialized_move(begin(), end(), buffer);
    } else {
      try {
        std::uninitialized_copy(begin(), end(), buffer);
      } catch (...) {
        ::operator delete(buffer);
        throw;
      }
    }
    std::destroy(begin(), end());
    deallocate(data_);
    data_ = buffer;
    capacity_ = capacity;
  }

  void freeBuffer() noexcept {
    std::destroy(begin(), end());
    deallocate(data_);
  }

  T* data_ = nullptr;
  std::uint32_t size_ = 0;
  // Until the first buffer exists: the capacity that it will have.
  std::uint32_t capacity_;
  std::uint32_t increment_;
  std::uint32_t doublingLimit_;
  [[no_unique_address]] Store store_;
};

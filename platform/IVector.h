// The growable array used for every list-valued result and multi-valued property.
// Its capacity follows three numbers given at construction: the initial capacity,
// then doubling while the capacity is below the doubling limit, then steps of the
// increment. Element access is bounds-checked and throws IVectorException
// ("Index is out of bound."); an allocation that fails throws "IVector failed to
// grow.". A vector of pointers never owns what they point to.
#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include "platform/IVectorException.h"

template <typename T>
class IVector {
  static_assert(!std::is_same_v<T, bool>, "use IBOOLEAN elements, not bool");

 public:
  using value_type = T;
  using iterator = T*;
  using const_iterator = const T*;

  explicit IVector(std::size_t initialCapacity = 10, std::size_t increment = 200, std::size_t doublingLimit = 1000)
      : increment_(increment == 0 ? 1 : increment), doublingLimit_(doublingLimit) {
    reserveOrThrow(initialCapacity);
  }

  // Copies keep the source's growth policy and reserve its capacity.
  IVector(const IVector& other) : increment_(other.increment_), doublingLimit_(other.doublingLimit_) {
    reserveOrThrow(other.items_.capacity());
    items_.insert(items_.end(), other.items_.begin(), other.items_.end());
  }
  IVector& operator=(const IVector& other) {
    if (this != &other) {
      IVector copy(other);
      swap(copy);
    }
    return *this;
  }
  IVector(IVector&&) noexcept = default;
  IVector& operator=(IVector&&) noexcept = default;

  std::size_t size() const { return items_.size(); }
  bool isEmpty() const { return items_.empty(); }
  std::size_t capacity() const { return items_.capacity(); }

  T& operator[](std::size_t index) { return items_[checked(index)]; }
  const T& operator[](std::size_t index) const { return items_[checked(index)]; }
  T& elementAt(std::size_t index) { return items_[checked(index)]; }
  const T& elementAt(std::size_t index) const { return items_[checked(index)]; }

  // `value` may be an element of this vector (v.append(v[0])): growing would move it
  // away, so when the vector is full it is copied out before the vector grows.
  void append(const T& value) {
    if (isFull()) {
      append(T(value));
      return;
    }
    items_.push_back(value);
  }
  void append(T&& value) {
    if (isFull()) {
      T kept(std::move(value));
      makeRoomForOne();
      items_.push_back(std::move(kept));
      return;
    }
    items_.push_back(std::move(value));
  }
  // Inserts before position `index` (0 inserts at the front, size() appends).
  void insertAt(std::size_t index, const T& value) {
    if (index > items_.size()) throw IVectorException(IVectorException::kIndexOutOfBound);
    const auto position = static_cast<std::ptrdiff_t>(index);
    if (!isFull()) {
      items_.insert(items_.begin() + position, value);
      return;
    }
    T kept(value);
    makeRoomForOne();
    items_.insert(items_.begin() + position, std::move(kept));
  }
  void insertFront(const T& value) { insertAt(0, value); }

  void removeAt(std::size_t index) { items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(checked(index))); }
  // Removes the first element equal to `value`; false when there is none.
  bool removeElement(const T& value) {
    const auto found = std::find(items_.begin(), items_.end(), value);
    if (found == items_.end()) return false;
    items_.erase(found);
    return true;
  }
  void clear() { items_.clear(); }

  // The index of the first element equal to `value`, or -1.
  long indexOf(const T& value) const {
    const auto found = std::find(items_.begin(), items_.end(), value);
    return found == items_.end() ? -1 : static_cast<long>(found - items_.begin());
  }
  bool contains(const T& value) const { return indexOf(value) >= 0; }

  // Raises the capacity to at least `minimum`; never shrinks.
  void ensureCapacity(std::size_t minimum) { reserveOrThrow(minimum); }

  T* begin() { return items_.data(); }
  T* end() { return items_.data() + items_.size(); }
  const T* begin() const { return items_.data(); }
  const T* end() const { return items_.data() + items_.size(); }

  void swap(IVector& other) noexcept {
    items_.swap(other.items_);
    std::swap(increment_, other.increment_);
    std::swap(doublingLimit_, other.doublingLimit_);
  }

 private:
  std::size_t checked(std::size_t index) const {
    if (index >= items_.size()) throw IVectorException(IVectorException::kIndexOutOfBound);
    return index;
  }

  bool isFull() const { return items_.size() == items_.capacity(); }

  void makeRoomForOne() {
    const std::size_t current = items_.capacity();
    if (items_.size() < current) return;
    std::size_t next = current < doublingLimit_ ? std::max<std::size_t>(current * 2, 1) : current + increment_;
    if (next <= current) throw IVectorException(IVectorException::kFailedToGrow);  // overflow
    reserveOrThrow(next);
  }

  void reserveOrThrow(std::size_t capacity) {
    if (capacity <= items_.capacity()) return;
    if (capacity > items_.max_size()) throw IVectorException(IVectorException::kFailedToGrow);
    try {
      items_.reserve(capacity);
    } catch (const std::bad_alloc&) {
      throw IVectorException(IVectorException::kFailedToGrow);
    } catch (const std::length_error&) {
      throw IVectorException(IVectorException::kFailedToGrow);
    }
  }

  std::vector<T> items_;
  std::size_t increment_;
  std::size_t doublingLimit_;
};

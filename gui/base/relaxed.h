#pragma once

#include <atomic>

/// A plain value that two threads touch: read and written whole, in no particular order to anything else.
template <typename T>
class Relaxed {
public:
  Relaxed(T value = T{}) : mValue(value) {}  // NOLINT(google-explicit-constructor): used as the plain value
  operator T() const { return mValue.load(std::memory_order_relaxed); }  // NOLINT(google-explicit-constructor)
  Relaxed& operator=(T value) {
    mValue.store(value, std::memory_order_relaxed);
    return *this;
  }
  Relaxed(const Relaxed&) = delete;
  Relaxed& operator=(const Relaxed&) = delete;

private:
  std::atomic<T> mValue;
};

#pragma once

#include <mutex>

/// A value that one thread sets and another reads, always the whole of it. Any thread.
template <typename T>
class Published {
public:
  Published() = default;
  explicit Published(const T& value) : mValue(value) {}

  T Load() const {
    const std::lock_guard lock(mMutex);
    return mValue;
  }
  void Store(const T& value) {
    const std::lock_guard lock(mMutex);
    mValue = value;
  }

private:
  mutable std::mutex mMutex;
  T mValue{};
};

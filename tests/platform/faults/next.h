#pragma once

#include <dlfcn.h>

/// The function of the substitute library that a faulty one stands in front of.
template <typename Function>
Function* Next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

#pragma once

// Windows alone: what its COM services need on each thread that calls them.

#include <objbase.h>

namespace port::platform {

// COM on this thread while it lives. A thread that has COM already keeps its kind.
class ComApartment {
  public:
    ComApartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_MULTITHREADED))) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (entered_) CoUninitialize();
    }

  private:
    bool entered_;
};

}  // namespace port::platform

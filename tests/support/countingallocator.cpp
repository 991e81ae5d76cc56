// SPDX-License-Identifier: Apache-2.0
#include "support/countingallocator.h"

#include "support/memoryexhaustion.h"

#include <algorithm>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t gCount = 0;
thread_local std::size_t gLargest = 0;
thread_local std::size_t gFailAt = 0;  // 0: never
thread_local bool gFired = false;
thread_local bool gLasts = false;  // failures follow the first

void* Allocate(std::size_t size) {
  ++gCount;
  gLargest = std::max(gLargest, size);
  if (gFailAt != 0 && --gFailAt == 0) {
    gFired = true;
    if (gLasts) gFailAt = 1;
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* p = Allocate(size);
  if (p == nullptr) throw std::bad_alloc();
  return p;
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size);
}
void operator delete(void* p) noexcept {
  std::free(p);
}
void operator delete[](void* p) noexcept {
  std::free(p);
}
void operator delete(void* p, std::size_t) noexcept {
  std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept {
  std::free(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
  std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
  std::free(p);
}

namespace mctest {

std::size_t AllocationCount() {
  return gCount;
}

std::size_t LargestAllocation() {
  return gLargest;
}

void ResetLargestAllocation() {
  gLargest = 0;
}

FailAllocation::FailAllocation(std::size_t k) {
  gFired = false;
  gFailAt = k;
}

FailAllocation::~FailAllocation() {
  gFailAt = 0;
}

bool FailAllocation::HasFired() const {
  return gFired;
}

MemoryExhaustion::MemoryExhaustion(std::size_t k) {
  gFired = false;
  gLasts = true;
  gFailAt = k;
}

MemoryExhaustion::~MemoryExhaustion() {
  gLasts = false;
  gFailAt = 0;
}

bool MemoryExhaustion::HasFired() const {
  return gFired;
}

}  // namespace mctest

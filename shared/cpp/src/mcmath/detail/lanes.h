// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Included by the sources that are compiled for one vector width each. What it and the kernel
// headers define has internal linkage: were an inline function shared between these sources,
// the linker might keep the copy made for a wider processor than the one at hand.
namespace {

/// A vector of W doubles, the same at any address of a double, and the integers of its size.
template <std::size_t W>
struct Lanes {
  typedef double Vec __attribute__((vector_size(W * sizeof(double))));
  typedef double Unaligned
      __attribute__((vector_size(W * sizeof(double)), aligned(sizeof(double)), may_alias));
  typedef std::uint64_t Bits __attribute__((vector_size(W * sizeof(double))));
};

/// One row at a time: what is written for lanes serves plain doubles too.
template <>
struct Lanes<1> {
  typedef double Vec;
  typedef double Unaligned;
  typedef std::uint64_t Bits;
};

template <std::size_t W>
inline void LoadLanes(typename Lanes<W>::Vec& to, const double* from) {
  to = *reinterpret_cast<const typename Lanes<W>::Unaligned*>(from);
}

template <std::size_t W>
inline void StoreLanes(double* to, const typename Lanes<W>::Vec& from) {
  *reinterpret_cast<typename Lanes<W>::Unaligned*>(to) = from;
}

/// All lanes become x.
template <std::size_t W>
inline void FillLanes(typename Lanes<W>::Vec& to, double x) {
  to = x - typename Lanes<W>::Vec{};
}

/// Keeps a loaded vector of 64 bytes in its register. The compiler would otherwise fold the load
/// into each multiplication that uses it, and the loads, two a cycle, would set the pace.
template <std::size_t W>
inline void PinLanes([[maybe_unused]] typename Lanes<W>::Vec& vec) {
#if defined(__AVX512F__)
  if constexpr (W == 8) __asm__("" : "+v"(vec));
#endif
}

}  // namespace

// SPDX-License-Identifier: Apache-2.0
#include "mcmath/mcsymmatrix.h"
#include "mcmath/random/random.h"
#include "support/exacttype.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <ostream>
#include <type_traits>
#include <vector>

// Every operation by its name and exact type: one that is missing or changed doesn't compile.

namespace {

using namespace MCCommonMath;
using MCCommon::MCRandom;
using mctest::Is;
using std::fstream;
using std::ifstream;
using std::ostream;
using Numbers = std::vector<double>;
using Words = std::array<std::uint32_t, 624>;

#define MC_HAS(Class, Name, ...) \
  static_assert(Is<__VA_ARGS__>(static_cast<__VA_ARGS__>(&Class::Name)))

MC_HAS(MCRandom, GetRandom, double (MCRandom::*)());
static_assert(std::is_abstract_v<MCRandom> && std::has_virtual_destructor_v<MCRandom>);

using Twister = MCRandomTwister;
MC_HAS(Twister, Initialize, void (Twister::*)(unsigned long));
MC_HAS(Twister, InitByArray, void (Twister::*)(const unsigned long*, unsigned long));
MC_HAS(Twister, GetInteger32, unsigned long (Twister::*)());
MC_HAS(Twister, GetInteger31, long (Twister::*)());
MC_HAS(Twister, GetRealClosed, double (Twister::*)());
MC_HAS(Twister, GetRealClosedOpen, double (Twister::*)());
MC_HAS(Twister, GetRealOpen, double (Twister::*)());
MC_HAS(Twister, GetRealRes53, double (Twister::*)());
MC_HAS(Twister, GetWords, const Words& (Twister::*)() const);
MC_HAS(Twister, GetPosition, std::size_t (Twister::*)() const);
MC_HAS(Twister, SetState, bool (Twister::*)(const Words&, std::size_t));
static_assert(Twister::kWords == 624 && Twister::kDefaultSeed == 5489);
static_assert(std::is_default_constructible_v<Twister> && std::is_copy_constructible_v<Twister>);

using Uniform = MCURandom;
MC_HAS(Uniform, GetRandom, double (Uniform::*)());
MC_HAS(Uniform, SetSeed, void (Uniform::*)(unsigned long));
MC_HAS(Uniform, GetSeed, unsigned long (Uniform::*)() const);
MC_HAS(Uniform, SetUsePortable, void (Uniform::*)(bool));
MC_HAS(Uniform, GetUsePortable, bool (Uniform::*)() const);
MC_HAS(Uniform, SetUseTwister, bool (Uniform::*)(bool));
MC_HAS(Uniform, GetUseTwister, bool (Uniform::*)() const);
MC_HAS(Uniform, SetUserRNG, void (Uniform::*)(MCRandom*));
MC_HAS(Uniform, GetUserRNG, MCRandom* (Uniform::*)() const);
MC_HAS(Uniform, WriteObject, bool (Uniform::*)(fstream&) const);
MC_HAS(Uniform, ReadObject, bool (Uniform::*)(fstream&));
MC_HAS(Uniform, WriteObjectXML, int (Uniform::*)(ostream&, int) const);
MC_HAS(Uniform, ReadObjectXML, int (Uniform::*)(ifstream&));
MC_HAS(Uniform, Display, void (Uniform::*)() const);
static_assert(std::is_default_constructible_v<Uniform> && std::is_copy_constructible_v<Uniform>);
static_assert(std::is_constructible_v<Uniform, unsigned long> &&
              std::is_copy_assignable_v<Uniform>);

using Base = MCRNGenerator;
MC_HAS(Base, SetSeed, bool (Base::*)(double));
MC_HAS(Base, GetNext, double (Base::*)());
static_assert(std::is_abstract_v<Base> && std::has_virtual_destructor_v<Base>);

template <class Generator>
constexpr bool IsUniform = std::is_base_of_v<Base, Generator>&&
    std::is_default_constructible_v<Generator>&& std::is_copy_constructible_v<Generator>;
static_assert(IsUniform<MCRNGUCongruential> && IsUniform<MCRNGUTwister>);
MC_HAS(MCRNGUCongruential, SetSeed, bool (MCRNGUCongruential::*)(double));
MC_HAS(MCRNGUCongruential, GetNext, double (MCRNGUCongruential::*)());
MC_HAS(MCRNGUTwister, SetSeed, bool (MCRNGUTwister::*)(double));
MC_HAS(MCRNGUTwister, GetNext, double (MCRNGUTwister::*)());

template <class Generator>
constexpr bool HasVariates() {
  MC_HAS(Generator, SetParameters, bool(Generator::*)(double, double));
  MC_HAS(Generator, SetURNGenerator, bool(Generator::*)(MCRNGenerator&));
  MC_HAS(Generator, SetSeed, bool(Generator::*)(double));
  MC_HAS(Generator, GetNext, double(Generator::*)());
  MC_HAS(Generator, GetNext, double(Generator::*)(double, double));
  return std::is_base_of_v<Base, Generator> && std::is_default_constructible_v<Generator> &&
         std::is_constructible_v<Generator, double, double> &&
         !std::is_copy_constructible_v<Generator>;
}
static_assert(HasVariates<MCRNGNormal>() && HasVariates<MCRNGBeta>() &&
              HasVariates<MCRNGBinomial>());

using Values = MCRandomValues;
MC_HAS(Values, SetParamUniform, bool (Values::*)(double, double));
MC_HAS(Values, SetParamNormal, bool (Values::*)(double, double));
MC_HAS(Values, SetParamNormal, bool (Values::*)(const Numbers&, const MCSymMatrix&));
MC_HAS(Values, SetParamChi, bool (Values::*)(double));
MC_HAS(Values, SetParamWishart, bool (Values::*)(double, const MCSymMatrix&));
MC_HAS(Values, SetTolerance, bool (Values::*)(double));
MC_HAS(Values, GetTolerance, double (Values::*)() const);
MC_HAS(Values, SetURNGPtr, void (Values::*)(MCURandom*));
MC_HAS(Values, SetSeed, void (Values::*)(unsigned long));
MC_HAS(Values, GetRandom, double (Values::*)());
MC_HAS(Values, GetRandom, bool (Values::*)(Numbers&));
MC_HAS(Values, GetRandom, bool (Values::*)(MCSymMatrix&));
MC_HAS(Values, RVUni, double (Values::*)(double, double));
MC_HAS(Values, RVExp, double (Values::*)(double));
MC_HAS(Values, RVGam, double (Values::*)(double, double));
MC_HAS(Values, RVChi, double (Values::*)(double));
MC_HAS(Values, RVAuxF, double (Values::*)(double, double));
MC_HAS(Values, RVSNor, double (Values::*)());
MC_HAS(Values, RVNor, double (Values::*)(double, double));
MC_HAS(Values, Display, void (Values::*)() const);
static_assert(std::is_default_constructible_v<Values> && std::is_copy_constructible_v<Values>);

}  // namespace

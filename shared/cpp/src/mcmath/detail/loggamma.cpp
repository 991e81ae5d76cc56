// SPDX-License-Identifier: Apache-2.0
// Gamma function and what is made of it. From 8 on Stirling's series (Abramowitz and Stegun
// 6.1.41), below it polynomials on intervals from tests/data/mcmath/distfunseries.py.
#include "mcmath/detail/loggamma.h"

#include "mcmath/detail/polynomial.h"

#include <cmath>
#include <limits>

namespace MCCommonMath {
namespace detail {

namespace {

constexpr double kStirling = 8.0;
constexpr double kHalfLog2Pi = 0.91893853320467274;
constexpr double kReciprocal2Pi = 0.15915494309189535;

// The remainder in seven equal pieces of 1/8 <= 1/x <= 1.
constexpr double kRemainder[7][10] = {
    {0.015606868750253074, 0.0051903186698996065, -5.909609742926329e-06, -6.156838633011998e-07,
     9.56962483902844e-09, 4.3491236279179595e-10, -2.7355432129851865e-11, -4.747045674324393e-14,
     8.904063326893225e-14, -4.69939344994099e-15},
    {0.025959107474897873, 0.005159627852212019, -9.345708651537405e-06, -5.260000612007404e-07,
     1.234449596375035e-08, 1.328933698324052e-10, -2.1237145599224388e-11, 7.112892470967402e-13,
     1.2532070628091293e-14, -2.8831761864327977e-15},
    {0.03623697284243161, 0.005116334920001792, -1.2199418197962274e-05, -4.2491924262705635e-07,
     1.2602465179565524e-08, -6.132133041988032e-11, -1.1344516648560363e-11, 6.321312552914999e-13,
     -1.4525623669354642e-14, -4.596497653641105e-16},
    {0.046417644683804306, 0.005062834678774022, -1.4453705776928098e-05, -3.2804133348238196e-07,
     1.1468085776180656e-08, -1.513947297565364e-10, -4.262647496326999e-12, 3.8047364847757235e-13,
     -1.4674114853368425e-14, 2.5272529267532767e-16},
    {0.05648305330458646, 0.005001437564436886, -1.6159623721403582e-05, -2.42846239224698e-07,
     9.789581350693219e-09, -1.7659959637062273e-10, -3.889241747315999e-13, 1.8739532726363982e-13,
     -9.368339105526646e-15, 2.881976182334074e-16},
    {0.06641949814761793, 0.004934184053654125, -1.7395862076282144e-05, -1.7156614557398204e-07,
     8.043343414481527e-09, -1.691721270488319e-10, 1.365245656968715e-12, 7.479149580628407e-14,
     -5.029683098842691e-15, 1.9063056223814393e-16},
    {0.07621703365319957, 0.004862785955729493, -1.8245382730246278e-05, -1.1373400306632876e-07,
     6.449562406976519e-09, -1.484087568500836e-10, 1.9626367652411444e-12, 1.751579094443027e-14,
     -2.40372344204285e-15, 1.0647779779672804e-16},
};

// ln gamma(x) / ((x - 1)(x - 2)) in five equal pieces of 0.5 <= x <= 3.
constexpr double kLogGamma[5][20] = {
    {0.6504990445801452,      -0.0880898503330035,     0.018380335451531792,
     -0.004514237527714814,   0.0012002398215286121,   -0.0003339638181799942,
     9.568996830239059e-05,   -2.7988594178878344e-05, 8.313438218799198e-06,
     -2.4992034528869023e-06, 7.586790027650691e-07,   -2.3214880754668516e-07,
     7.14130339888614e-08,    -2.2125265883828677e-08, 7.032955733587561e-09,
     -2.2002320660296334e-09, 5.686073449261228e-10,   -1.7869030107637862e-10,
     1.1390653835134632e-10,  -3.617441329836984e-11},
    {0.5241164609163369,     -0.04613959610920403,   0.005910358627063184,  -0.0008792719886529057,
     0.000141245304591401,   -2.373906742380821e-05, 4.108320088495042e-06, -7.256004701626638e-07,
     1.3008296735953044e-07, -2.35899680301728e-08,  4.317171275577442e-09, -7.960026977923821e-10,
     1.4768451691024547e-10, -2.754685585050802e-11, 5.165432924547481e-12, -9.718186708111144e-13,
     1.8041739878423584e-13, -3.416505452476334e-14, 7.93154669427979e-15,  -1.511517708585709e-15},
    {0.4501393121092563,      -0.029870396656310687,  0.0027825279499068553,
     -0.00029771809109761826, 3.4282696973632686e-05, -4.127142701086807e-06,
     5.11604951250843e-07,    -6.473181613421259e-08, 8.314468087874137e-09,
     -1.0802864744739844e-09, 1.41636757570199e-10,   -1.8706755495621126e-11,
     2.485763766402008e-12,   -3.320094464687036e-13, 4.4544112394622704e-14,
     -5.9986840804503015e-15, 8.073150930625237e-16,  -1.0940835253489048e-16,
     1.6392105343830948e-17,  -2.233745853276701e-18},
    {0.3995894876556691,      -0.021470211887815248,   0.0015792721849555518,
     -0.00013225039052461532, 1.1879369757384271e-05,  -1.1142447167957051e-06,
     1.0758221007995181e-07,  -1.0602375357201156e-08, 1.0608335677772999e-09,
     -1.0738100765719572e-10, 1.096916810332763e-11,   -1.128808696616538e-12,
     1.1687037024049399e-13,  -1.216191488589613e-14,  1.2711432439045244e-15,
     -1.3335520651393268e-16, 1.4016375407227737e-17,  -1.4795570309123221e-18,
     1.6594603047632446e-19,  -1.7607554027976935e-20},
    {0.3620683176494759,      -0.016432336980620414,   0.0010019371895806488,
     -6.905450594398206e-05,  5.089477866491985e-06,   -3.911753960092712e-07,
     3.093238754618349e-08,   -2.4962581293466526e-09, 2.0452654048694105e-10,
     -1.6954152001460665e-11, 1.4184176243517634e-12,  -1.195538930918295e-13,
     1.0138725737231884e-14,  -8.642305690125856e-16,  7.398943173516615e-17,
     -6.358216431719517e-18,  5.4783074574785425e-19,  -4.7366763896770503e-20,
     4.267330856905395e-21,   -3.7080689595704815e-22},
};

// 1 / gamma(1 + x) in two equal pieces of 0 <= x <= 1.
constexpr double kReciprocalGamma[2][13] = {
    {1.1032626513208372, 0.06273524707124775, -0.03949659759534056, 0.0015011756753699939,
     0.00042335848484715774, -4.712117987107849e-05, 1.9175181736452222e-07, 2.8185540784855525e-07,
     -2.048296514657406e-08, 1.3022288559456413e-10, 6.84825571764951e-11, -4.621121739337854e-12,
     7.766180498228975e-14},
    {1.0880652521310172, -0.06731654439098674, -0.02389864787815237, 0.0031565767774526556,
     2.0891927704833828e-05, -2.963328714209639e-05, 2.098483237120742e-06, 1.6685643024342092e-08,
     -1.1112344488075632e-08, 6.690880523207278e-10, -3.822007273873399e-12,
     -1.8111892675649685e-12, 1.158878843159599e-13},
};

double RemainderSeries(double x) {
  // B(2k) / (2k (2k-1)); the first is 3e-15 of itself off 1/12, which from 8 on is nothing.
  constexpr double kSeries[] = {
      0.08333333333333309, -1.0 / 360.0, 1.0 / 1260.0,     -1.0 / 1680.0,    1.0 / 1188.0,
      -691.0 / 360360,     1.0 / 156.0,  -3617.0 / 122400, 43867.0 / 244188, -174611.0 / 125400};
  return Polynomial(kSeries, 1.0 / (x * x)) / x;
}

double LogGammaStirling(double x) {
  constexpr double kOverflow = 2.5e305;
  if (x > kOverflow) return x * (std::log(x) - 1.0);
  const DoubleDouble main = (Log(x) - 1.0) * (x - 0.5);
  return main.fHigh + (main.fLow + (kHalfLog2Pi - 0.5 + RemainderSeries(x)));
}

}  // namespace

double StirlingRemainder(double x) {
  if (x >= kStirling) return RemainderSeries(x);
  if (x < 1.0) return LogGamma(x) + ((0.5 - x) * std::log(x) + (x - kHalfLog2Pi));
  const double position = kStirling / x - 1.0;
  const int piece = position < 7.0 ? static_cast<int>(position) : 6;
  return Polynomial(kRemainder[piece], 2.0 * (position - piece) - 1.0);
}

double LogGamma1p(double x) {
  const int piece = static_cast<int>(2.0 * x + 1.0);
  const double middle = 0.5 * piece - 0.25;
  return x * (x - 1.0) * Polynomial(kLogGamma[piece < 5 ? piece : 4], 4.0 * (x - middle));
}

double LogGamma(double x) {
  if (x >= kStirling) return LogGammaStirling(x);
  if (x < 0.5) return LogGamma1p(x) - std::log(x);
  double product = 1.0;
  while (x >= 3.0) {
    x -= 1.0;
    product *= x;
  }
  const double rest = LogGamma1p(x - 1.0);
  return product == 1.0 ? rest : rest + std::log(product);
}

double ReciprocalGamma1p(double x) {
  const int piece = x < 0.5 ? 0 : 1;
  return Polynomial(kReciprocalGamma[piece], 4.0 * x - (2 * piece + 1));
}

double ScaledExp::Value() const {
  // Near the lower end of doubles the factor may lift the exponential above it or below.
  constexpr double kNearEnd = -600.0;
  constexpr double kLift = 256.0;
  constexpr DoubleDouble kLiftLog(177.445678223346, 5.936759843446527e-15);
  constexpr double kLeast = 3.307553003638408e-308;  // exp(-708)
  if (fExponent.fHigh >= kNearEnd) return fFactor * Exp(fExponent);
  const double value = std::ldexp(fFactor * Exp(fExponent + kLiftLog), -static_cast<int>(kLift));
  return value < kLeast ? 0.0 : value;
}

DoubleDouble Deviance(double a, const DoubleDouble& m) {
  constexpr double kNear = 0x1p-5;
  constexpr double kNothing = -1e6;  // far below what exp reaches, as a > 1
  const DoubleDouble difference = m - a;
  if (difference.fHigh == 0.0) return 0.0;
  if (std::fabs(difference.fHigh) <= kNear * a) return Log1pMinus(difference / a) * a;
  const DoubleDouble ratio = m / a;
  if (ratio.fHigh == 0.0) return kNothing;
  return Log(ratio) * a - difference;
}

ScaledExp GammaDensity(double a, const DoubleDouble& m) {
  if (a < 1.0) return {a * ReciprocalGamma1p(a), Log(m) * a - m};
  return {std::sqrt(a * kReciprocal2Pi), Deviance(a, m) - StirlingRemainder(a)};
}

}  // namespace detail
}  // namespace MCCommonMath

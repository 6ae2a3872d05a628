// The filter that both rate converters share: a polyphase low-pass, a sinc in a Kaiser window.
// Law      M / L is sourceRate / targetRate. Exact: the smallest L that gives a whole M. Approximate: the best L up to
//          255. Tap j of phase p lies at t = (j - taps / 2) - p / L input frames: 65536 * c * sinc(c * t) * I0(beta *
//          sqrt(1 - (t / (taps / 2 + 1))^2)) / I0(beta). Up: c 0.975, beta 2.12. Down: c the ratio less 3/64 (wide:
//          6/64), beta 4.538.
// Units    rates in Hz, coefficients with 16 fraction bits (17 bits with the sign), time in input frames.
// Threads  [main, worker]: built with its converter.
// Failure  none; callers repair rates below 1.
#pragma once
#include <cstddef>
#include <vector>

inline constexpr int kRateBesselTerms = 6;  // beyond the 1

struct LRateWindow {
  long double cutoff, angular, gain, beta;  // angular is pi * cutoff; gain is 65536 * cutoff / I0(beta)
};

class LConvertRateBase {
 public:
  enum class Rows { AllNow, OnRequest };  // OnRequest: there is no table, only Coefficient

  LConvertRateBase(int sourceRate, int targetRate, int taps, bool wideTransition, bool approximate,
                   Rows rows = Rows::AllNow);

  int Phases() const { return phases_; }  // L
  int Step() const { return step_; }      // M: advance of one output frame in phases
  const LRateWindow& Window() const { return window_; }
  int Coefficient(int phase, int tap) const;  // in extended precision: what every faster way must give
  const int* Row(int phase) const { return table_.data() + std::size_t(phase) * std::size_t(taps_); }
  const std::vector<int>& Table() const { return table_; }

 protected:
  ~LConvertRateBase() = default;

 private:
  void FindExact(int sourceRate, int targetRate);
  void FindApproximate(int sourceRate, int targetRate);

  int phases_ = 1;
  int step_ = 1;
  int taps_;
  LRateWindow window_;
  std::vector<int> table_;  // phases_ rows of taps_
};

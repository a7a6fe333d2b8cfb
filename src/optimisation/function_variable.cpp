// SPDX-License-Identifier: MIT
// FunctionVariable: construction, deep copies, checked setters and value-set access.
#include "structmath/optimisation/function_variable.hpp"

#include <stdexcept>

namespace structmath {

namespace {

constexpr char const* kSetStartingVector =
    "FunctionVariable::set_starting(const vector_double& vstart): Input vector has incorrect "
    "dimension.";
constexpr char const* kSetStartingDouble =
    "FunctionVariable::set_starting(double start): Dimension ofFunctionVariable object not "
    "equal to 1.";
constexpr char const* kSetStartingPoint =
    "FunctionVariable::set_starting(const Point& pstart): Dimension of FunctionVariable object "
    "not equal to 3.";
constexpr char const* kFixIndex =
    "FunctionVariable::fix_to_starting(int i): Invalid input dimension.";
constexpr char const* kUnfixIndex = "FunctionVariable::unfix(int i): Invalid input dimension.";
constexpr char const* kPerturbationSetIndex =
    "FunctionVariable::set_perturbation(int i, double devn):Invalid input dimension.";
constexpr char const* kPerturbationIndex =
    "FunctionVariable::perturbation(int i): Invalid input dimension.";
constexpr char const* kFixedIndex = "FunctionVariable::fixed(int i): Invalid input dimension.";
constexpr char const* kNoOptimised =
    "FunctionVariable::optimised(): No optimised parameters available: minimisation probably "
    "did not converge";
constexpr char const* kValueSelector =
    "FunctionVariable::value(VariableValue vtype): VariableValue value not recognised";
constexpr char const* kDoubleDimension =
    "FunctionVariable::double_value(): Dimension ofFunctionVariable object not equal to 1";
constexpr char const* kDoubleSelector =
    "FunctionVariable::double_value(VariableValue vtype): VariableValue value not recognised";
constexpr char const* kPointDimension =
    "FunctionVariable::point_value(): Dimension ofFunctionVariable object not equal to 3";
constexpr char const* kPointSelector =
    "FunctionVariable::point_value(VariableValue ptype): VariableValue value not recognised";
// Only the trial set can be empty once the dimension is known (an empty optimised set
// is reported as such above).
constexpr char const* kNoTrial = "FunctionVariable: no trial values have been written";
constexpr char const* kUpdateLength =
    "FunctionVariable::update(VariableValue vv, const vector_double& v): Input vector has "
    "incorrect dimension.";
constexpr char const* kUpdateSelector =
    "FunctionVariable::update(VariableValue vv, const vector_double& v)): VariableValue value "
    "not recognised";

template <class T>
THandle<std::vector<T>> copy_of(THandle<std::vector<T>> const& source) {
  return make_handle<std::vector<T>>(*source);
}

}  // namespace

FunctionVariable::FunctionVariable()
    : starting_(make_handle<std::vector<double>>()),
      latest_(make_handle<std::vector<double>>()),
      fixed_(make_handle<std::vector<bool>>()),
      perturbations_(make_handle<std::vector<double>>()),
      optimised_(make_handle<std::vector<double>>()),
      trial_(make_handle<std::vector<double>>()) {}

FunctionVariable::FunctionVariable(std::vector<double> const& v) : FunctionVariable() {
  set_starting(v);
}

FunctionVariable::FunctionVariable(double x) : FunctionVariable() { set_starting(x); }

FunctionVariable::FunctionVariable(Point const& p) : FunctionVariable() { set_starting(p); }

FunctionVariable::FunctionVariable(FunctionVariable const& other)
    : ndimensions_(other.ndimensions_),
      starting_(copy_of(other.starting_)),
      latest_(copy_of(other.latest_)),
      fixed_(copy_of(other.fixed_)),
      perturbations_(copy_of(other.perturbations_)),
      optimised_(copy_of(other.optimised_)),
      trial_(copy_of(other.trial_)) {}

FunctionVariable& FunctionVariable::operator=(FunctionVariable const& other) {
  if (this == &other) return *this;
  FunctionVariable copy(other);
  ndimensions_ = copy.ndimensions_;
  starting_ = copy.starting_;
  latest_ = copy.latest_;
  fixed_ = copy.fixed_;
  perturbations_ = copy.perturbations_;
  optimised_ = copy.optimised_;
  trial_ = copy.trial_;
  return *this;
}

void FunctionVariable::adopt_dimension(int n) {
  ndimensions_ = n;
  fixed_->assign(static_cast<std::size_t>(n), false);
  perturbations_->assign(static_cast<std::size_t>(n), 1.0);
}

void FunctionVariable::set_starting(std::vector<double> const& v) {
  if (v.empty()) return;
  auto const n = static_cast<int>(v.size());
  if (ndimensions_ > 0 && ndimensions_ != n) throw std::invalid_argument(kSetStartingVector);
  *starting_ = v;
  *latest_ = v;
  if (ndimensions_ == 0) adopt_dimension(n);
}

void FunctionVariable::set_starting(double start) {
  if (ndimensions_ > 1) throw std::invalid_argument(kSetStartingDouble);
  starting_->assign(1, start);
  *latest_ = *starting_;
  if (ndimensions_ == 0) adopt_dimension(1);
}

void FunctionVariable::set_starting(Point const& pstart) {
  if (ndimensions_ > 0 && ndimensions_ != 3) throw std::invalid_argument(kSetStartingPoint);
  starting_->assign({pstart.x(), pstart.y(), pstart.z()});
  *latest_ = *starting_;
  if (ndimensions_ == 0) adopt_dimension(3);
}

void FunctionVariable::check_dimension_index(int i, char const* message) const {
  if (i < 0 || i >= ndimensions_) throw std::invalid_argument(message);
}

void FunctionVariable::fix_to_starting() { fixed_->assign(fixed_->size(), true); }

void FunctionVariable::fix_to_starting(int i) {
  check_dimension_index(i, kFixIndex);
  (*fixed_)[static_cast<std::size_t>(i)] = true;
}

void FunctionVariable::unfix() { fixed_->assign(fixed_->size(), false); }

void FunctionVariable::unfix(int i) {
  check_dimension_index(i, kUnfixIndex);
  (*fixed_)[static_cast<std::size_t>(i)] = false;
}

void FunctionVariable::set_perturbation(double devn) {
  perturbations_->assign(perturbations_->size(), devn);
}

void FunctionVariable::set_perturbation(int i, double devn) {
  check_dimension_index(i, kPerturbationSetIndex);
  (*perturbations_)[static_cast<std::size_t>(i)] = devn;
}

double FunctionVariable::perturbation(int i) const {
  check_dimension_index(i, kPerturbationIndex);
  return (*perturbations_)[static_cast<std::size_t>(i)];
}

bool FunctionVariable::fixed(int i) const {
  check_dimension_index(i, kFixedIndex);
  return (*fixed_)[static_cast<std::size_t>(i)];
}

void FunctionVariable::clear_optimised() noexcept { optimised_->clear(); }

std::vector<double> const& FunctionVariable::value_set(VariableValue vtype,
                                                       char const* unrecognised) const {
  switch (vtype) {
    case STARTING:
      return *starting_;
    case LATEST:
      return *latest_;
    case OPTIMISED:
      if (optimised_->empty()) throw std::runtime_error(kNoOptimised);
      return *optimised_;
    case TRIAL:
      return *trial_;
  }
  throw std::invalid_argument(unrecognised);
}

std::vector<double> const& FunctionVariable::value(VariableValue vtype) const {
  return value_set(vtype, kValueSelector);
}

double FunctionVariable::double_value(VariableValue vtype) const {
  if (ndimensions_ != 1) throw std::runtime_error(kDoubleDimension);
  auto const& v = value_set(vtype, kDoubleSelector);
  if (v.empty()) throw std::runtime_error(kNoTrial);
  return v[0];
}

Point FunctionVariable::point_value(VariableValue ptype) const {
  if (ndimensions_ != 3) throw std::runtime_error(kPointDimension);
  auto const& v = value_set(ptype, kPointSelector);
  if (v.empty()) throw std::runtime_error(kNoTrial);
  return Point(v[0], v[1], v[2]);
}

void FunctionVariable::update(VariableValue vv, std::vector<double> const& v) {
  update(vv, v.data(), v.size());
}

void FunctionVariable::update(VariableValue vv, double const* first, std::size_t count) {
  if (count != static_cast<std::size_t>(ndimensions_)) throw std::invalid_argument(kUpdateLength);
  if (vv != LATEST && vv != OPTIMISED && vv != TRIAL) throw std::invalid_argument(kUpdateSelector);
  auto& target = vv == LATEST ? *latest_ : vv == OPTIMISED ? *optimised_ : *trial_;
  target.assign(first, first + count);
}

}  // namespace structmath

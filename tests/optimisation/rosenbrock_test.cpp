// SPDX-License-Identifier: MIT
// Tests of the Rosenbrock terms: values, constants, layouts and analytic gradients.
#include "structmath/optimisation/rosenbrock.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <stdexcept>
#include <vector>

#include "structmath/optimisation/penalty_function.hpp"

namespace structmath {
namespace {

using Values = std::vector<double>;
using VariableHandle = THandle<FunctionVariable>;

struct Valley {
  PenaltyFunction pf;
  THandle<Rosenbrock1> steep;
  THandle<Rosenbrock2> shallow;
};

// R (x - y^2)^2 + (1 - y)^2 on one two-dimensional variable (x, y).
Valley shared_layout(double x, double y, double r = 100.0) {
  auto xy = make_handle<FunctionVariable>(Values{x, y});
  Valley valley{PenaltyFunction(), make_handle<Rosenbrock1>(), make_handle<Rosenbrock2>(xy)};
  valley.steep->add_variable(xy);
  valley.steep->set_constants(r);
  valley.pf.set_components({valley.steep, valley.shallow});
  return valley;
}

// The same valley on two one-dimensional variables x and y.
Valley split_layout(double x, double y, double r = 100.0) {
  auto vx = make_handle<FunctionVariable>(x);
  auto vy = make_handle<FunctionVariable>(y);
  Valley valley{PenaltyFunction(), make_handle<Rosenbrock1>(vx, vy), make_handle<Rosenbrock2>(vy)};
  valley.steep->set_constants(Values{r}, "Rcoeff");
  valley.pf.set_components({valley.steep, valley.shallow});
  return valley;
}

double valley_value(double x, double y, double r) {
  return r * (x - y * y) * (x - y * y) + (1.0 - y) * (1.0 - y);
}

TEST(Rosenbrock, ValueAtTheClassicalStartIsTheSameInBothLayouts) {
  for (auto* make : {&shared_layout, &split_layout}) {
    auto valley = make(-1.2, 1.0, 100.0);
    EXPECT_TRUE(valley.pf.derivatives_available());
    EXPECT_DOUBLE_EQ(valley.pf.function_value(STARTING), 484.0);
    EXPECT_DOUBLE_EQ(valley.pf.function_value(Values{1.0, 1.0}), 0.0);
    EXPECT_DOUBLE_EQ(valley.pf.function_value(Values{0.5, -2.0}), valley_value(0.5, -2.0, 100.0));
  }
  auto split = split_layout(0.0, 0.0);
  EXPECT_EQ(split.pf.nvariables(), 2);
  EXPECT_EQ(*split.pf.variables(), *split.steep->variables());
}

TEST(Rosenbrock, ConstantsReachOnlyTheCoefficientByItsName) {
  auto x = make_handle<FunctionVariable>(Values{3.0, 1.0});
  Rosenbrock1 term;
  term.add_variable(x);
  EXPECT_EQ(term.rcoeff(), 0.0);
  EXPECT_EQ(term.component_value(LATEST), 0.0);
  EXPECT_TRUE(term.derivatives_available());
  EXPECT_TRUE(Rosenbrock2().derivatives_available());

  term.set_constants(Values{5.0}, "Rcoeff");
  EXPECT_EQ(term.component_value(LATEST), 20.0);
  // Overloads the term does not understand are ignored.
  term.set_constants(7);
  term.set_constants(7.0, "Rcoeff");
  term.set_constants(Values{7.0});
  EXPECT_EQ(term.rcoeff(), 5.0);
  term.set_constants(2.0);
  EXPECT_EQ(term.component_value(LATEST), 8.0);
  // Any other name clears the coefficient.
  term.set_constants(Values{5.0}, "rcoeff");
  EXPECT_EQ(term.rcoeff(), 0.0);
  EXPECT_EQ(term.component_value(LATEST), 0.0);
  EXPECT_THROW(term.set_constants(Values{}, "Rcoeff"), std::invalid_argument);
}

TEST(Rosenbrock, GradientMatchesCentralDifferencesInBothLayouts) {
  Values const points[] = {{-1.2, 1.0}, {0.3, -0.7}, {2.0, 1.5}, {1.0, 1.0}};
  for (auto* make : {&shared_layout, &split_layout}) {
    auto valley = make(0.0, 0.0, 100.0);
    for (auto const& p : points) {
      Values const gradient = *valley.pf.derivatives(p);
      ASSERT_EQ(gradient.size(), 2U);
      for (std::size_t i = 0; i < 2; ++i) {
        double const h = 1e-6;
        Values up = p;
        Values down = p;
        up[i] += h;
        down[i] -= h;
        double const numeric =
            (valley.pf.function_value(up) - valley.pf.function_value(down)) / (2.0 * h);
        EXPECT_NEAR(gradient[i], numeric, 1e-5 * (1.0 + std::fabs(numeric)))
            << "at (" << p[0] << ", " << p[1] << "), dimension " << i;
      }
    }
  }
  // The closed form in the split layout, weights included.
  auto valley = split_layout(-1.2, 1.0, 100.0);
  valley.shallow->set_weight(3.0);
  double const x = -1.2;
  double const y = 1.0;
  Values const expected = {200.0 * (x - y * y), -400.0 * y * (x - y * y) - 3.0 * 2.0 * (1.0 - y)};
  auto const& gradient = *valley.pf.derivatives(LATEST);
  EXPECT_DOUBLE_EQ(gradient[0], expected[0]);
  EXPECT_DOUBLE_EQ(gradient[1], expected[1]);
}

TEST(Rosenbrock, ShallowTermReadsTheSecondElementOfALongerVariable) {
  auto p = make_handle<FunctionVariable>(Point(5.0, 3.0, 9.0));
  auto term = make_handle<Rosenbrock2>(p);
  EXPECT_EQ(term->component_value(STARTING), 4.0);
  auto const derivatives = term->derivatives(STARTING);
  EXPECT_EQ(derivatives->at(p), (Values{0.0, 4.0}));
  // The penalty function treats the missing third partial as zero.
  PenaltyFunction pf({term});
  EXPECT_EQ(*pf.derivatives(STARTING), (Values{0.0, 4.0, 0.0}));
}

TEST(Rosenbrock, TermsRejectVariablesThatFitNeitherLayout) {
  auto scalar = make_handle<FunctionVariable>(1.0);
  auto pair = make_handle<FunctionVariable>(Values{1.0, 2.0});
  Rosenbrock1 no_variables;
  Rosenbrock1 one_scalar;
  one_scalar.add_variable(scalar);
  Rosenbrock1 pair_and_scalar(pair, scalar);
  for (auto* term : {&no_variables, &one_scalar}) {
    EXPECT_THROW(term->component_value(LATEST), std::invalid_argument);
    EXPECT_THROW(term->derivatives(LATEST), std::invalid_argument);
  }
  // Two variables must each have one dimension.
  EXPECT_THROW(pair_and_scalar.component_value(LATEST), std::runtime_error);
  Rosenbrock2 empty;
  EXPECT_THROW(empty.component_value(LATEST), std::invalid_argument);
  EXPECT_THROW(Rosenbrock2(make_handle<FunctionVariable>()).derivatives(LATEST),
               std::invalid_argument);
}

}  // namespace
}  // namespace structmath

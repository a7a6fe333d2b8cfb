// SPDX-License-Identifier: MIT
// Tests of the Rosenbrock terms: values, constants, layouts and analytic gradients.
#include "structmath/optimisation/rosenbrock.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <stdexcept>
#include <vector>

#include "structmath/optimisation/penalty_function.hpp"
#include "support/optimisation_support.hpp"

namespace structmath {
namespace {

using namespace testing;
using Values = std::vector<double>;

TEST(Rosenbrock, BothLayoutsGiveTheSameValuesAndGradientsAsCentralDifferences) {
  Values const points[] = {{-1.2, 1.0}, {0.3, -0.7}, {2.0, 1.5}, {1.0, 1.0}};
  for (auto* make : {&shared_valley, &split_valley}) {
    auto valley = make(-1.2, 1.0, 100.0);
    EXPECT_TRUE(valley.pf.derivatives_available());
    EXPECT_DOUBLE_EQ(valley.pf.function_value(STARTING), 484.0);
    EXPECT_DOUBLE_EQ(valley.pf.function_value(Values{1.0, 1.0}), 0.0);
    EXPECT_DOUBLE_EQ(valley.pf.function_value(Values{0.5, -2.0}), 1234.0);  // 100 * 3.5^2 + 3^2
    for (auto const& p : points) {
      Values const gradient = *valley.pf.derivatives(p);
      ASSERT_EQ(gradient.size(), 2U);
      for (std::size_t i = 0; i < 2; ++i) {
        Values up = p;
        Values down = p;
        up[i] += 1e-6;
        down[i] -= 1e-6;
        double const numeric =
            (valley.pf.function_value(up) - valley.pf.function_value(down)) / 2e-6;
        EXPECT_NEAR(gradient[i], numeric, 1e-5 * (1.0 + std::fabs(numeric)))
            << "at (" << p[0] << ", " << p[1] << "), dimension " << i;
      }
    }
  }
  // The split layout gathers x then y. At (-1.2, 1) with the shallow term weighted 3 the
  // gradient is (2R (x - y^2), -4R y (x - y^2) - 3 * 2 (1 - y)).
  auto split = split_valley(-1.2, 1.0, 100.0);
  EXPECT_EQ(*split.pf.variables(), *split.steep->variables());
  split.shallow->set_weight(3.0);
  EXPECT_DOUBLE_EQ((*split.pf.derivatives(LATEST))[0], -440.0);
  EXPECT_DOUBLE_EQ((*split.pf.derivatives(LATEST))[1], 880.0);
}

TEST(Rosenbrock, ConstantsReachOnlyTheCoefficientByItsName) {
  Rosenbrock1 term;
  term.add_variable(make_handle<FunctionVariable>(Values{3.0, 1.0}));
  EXPECT_EQ(term.component_value(LATEST), 0.0);  // R starts at 0
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
  EXPECT_EQ(term.component_value(LATEST), 0.0);
  EXPECT_THROW(term.set_constants(Values{}, "Rcoeff"), std::invalid_argument);
}

TEST(Rosenbrock, ShallowTermReadsTheSecondElementOfALongerVariable) {
  auto p = make_handle<FunctionVariable>(Point(5.0, 3.0, 9.0));
  auto term = make_handle<Rosenbrock2>(p);
  EXPECT_EQ(term->component_value(STARTING), 4.0);
  EXPECT_EQ(term->derivatives(STARTING)->at(p), (Values{0.0, 4.0}));
  // The penalty function treats the missing third partial as zero.
  EXPECT_EQ(*PenaltyFunction({term}).derivatives(STARTING), (Values{0.0, 4.0, 0.0}));
}

TEST(Rosenbrock, TermsRejectVariablesThatFitNeitherLayout) {
  Rosenbrock1 no_variables;
  Rosenbrock1 one_scalar;
  one_scalar.add_variable(make_handle<FunctionVariable>(1.0));
  for (auto* term : {&no_variables, &one_scalar}) {
    EXPECT_THROW(term->component_value(LATEST), std::invalid_argument);
    EXPECT_THROW(term->derivatives(LATEST), std::invalid_argument);
  }
  // Two variables must each have one dimension.
  Rosenbrock1 pair_and_scalar(make_handle<FunctionVariable>(Values{1.0, 2.0}),
                              make_handle<FunctionVariable>(1.0));
  EXPECT_THROW(pair_and_scalar.component_value(LATEST), std::runtime_error);
  EXPECT_THROW(Rosenbrock2().component_value(LATEST), std::invalid_argument);
  EXPECT_THROW(Rosenbrock2(make_handle<FunctionVariable>()).derivatives(LATEST),
               std::invalid_argument);
}

}  // namespace
}  // namespace structmath

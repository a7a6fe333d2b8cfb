// SPDX-License-Identifier: MIT
// Python bindings: exact fractions and measured values with standard uncertainties.
#include <pybind11/operators.h>

#include <sstream>
#include <string>

#include "convert.hpp"
#include "structmath/numeric/fraction.hpp"
#include "structmath/statistics/uncertain_value.hpp"

namespace structmath::python {

namespace {

std::string fraction_text(Fraction const& f) {
  std::ostringstream out;
  out << f;
  return out.str();
}

std::string fraction_repr(Fraction const& f) {
  if (f.numerator() == 0) return "Fraction(" + std::to_string(f.whole()) + ")";
  return "Fraction(" + std::to_string(f.whole()) + ", " + std::to_string(f.numerator()) + ", " +
         std::to_string(f.denominator()) + ")";
}

std::string float_repr(double x) { return py::repr(py::float_(x)).cast<std::string>(); }

}  // namespace

void bind_values(py::module_& m) {
  py::class_<Fraction>(m, "Fraction", R"doc(
An exact rational number, kept as a mixed number whole + numerator / denominator.

Every result is simplified to one canonical form (denominator > 0, |numerator| <
denominator, coprime, whole and numerator never of opposite signs), so -5/2 is whole -2,
numerator -1, denominator 2. The parts are C ints: a result with a part beyond their
range raises OverflowError("Fraction: integer overflow.") and a zero denominator raises
ValueError("Fraction: Denominator cannot be zero.").

str() gives "5", "1/2", "-1/2", "3+1/2" or "-3-1/2".)doc")
      .def(py::init<int>(), py::arg("whole"), "The whole number `whole`.")
      .def(py::init<int, int>(), py::arg("numerator"), py::arg("denominator"),
           "numerator / denominator, simplified.")
      .def(py::init<int, int, int>(), py::arg("whole"), py::arg("numerator"),
           py::arg("denominator"), "whole + numerator / denominator, simplified.")
      .def_property_readonly("whole", &Fraction::whole)
      .def_property_readonly("numerator", &Fraction::numerator,
                             "Numerator of the fractional part, with the sign of the value.")
      .def_property_readonly("denominator", &Fraction::denominator)
      .def(
          "as_integer_ratio",
          [](Fraction const& f) {
            long long const d = f.denominator();
            return py::make_tuple(static_cast<long long>(f.whole()) * d + f.numerator(), d);
          },
          "(numerator, denominator) of the value as one improper fraction.")
      .def(
          "reciprocal",
          [](Fraction f) {
            f.reciprocal();
            return f;
          },
          "1 / value; ValueError(\"Fraction: division by zero.\") for zero.")
      .def("__float__", &Fraction::to_double)
      .def("__floor__", &Fraction::floor)
      .def("__ceil__", &Fraction::ceiling)
      .def(
          "__round__", [](Fraction const& f) { return f.round_to_int(); },
          "The nearest int, halves to even (as Python rounds).")
      .def("__str__", &fraction_text)
      .def("__repr__", &fraction_repr)
      .def("__hash__",
           [](Fraction const& f) {
             // Equal to hash(n) for a whole number n, as Fraction(n) == n.
             if (f.numerator() == 0) return py::hash(py::int_(f.whole()));
             return py::hash(py::make_tuple(f.whole(), f.numerator(), f.denominator()));
           })
      .def(py::self == py::self)
      .def(py::self != py::self)
      .def(py::self < py::self)
      .def(py::self <= py::self)
      .def(py::self > py::self)
      .def(py::self >= py::self)
      .def(py::self == int())
      .def(py::self != int())
      .def(py::self < int())
      .def(py::self <= int())
      .def(py::self > int())
      .def(py::self >= int())
      .def(-py::self)
      .def(+py::self)
      .def("__abs__", &Fraction::absolute)
      .def(py::self + py::self)
      .def(py::self - py::self)
      .def(py::self * py::self)
      .def(py::self / py::self)
      .def(py::self + int())
      .def(int() + py::self)
      .def(py::self - int())
      .def(int() - py::self)
      .def(py::self * int())
      .def(int() * py::self)
      .def(py::self / int())
      .def(int() / py::self)
      .def(py::self * double())
      .def(double() * py::self)
      .def(py::self / double())
      .def(double() / py::self)
      .def(
          "__pow__", [](Fraction const& f, int n) { return pow(f, n); }, py::is_operator())
      .def(py::pickle(
          [](Fraction const& f) {
            return py::make_tuple(f.whole(), f.numerator(), f.denominator());
          },
          [](py::tuple const& t) {
            return Fraction(t[0].cast<int>(), t[1].cast<int>(), t[2].cast<int>());
          }));

  py::class_<UncertainValue>(m, "UncertainValue", R"doc(
A measured value with its standard uncertainty, written as in 1.234(5).

UncertainValue("1.234(5)") reads the text form (the digits in parentheses are the
uncertainty in units of the last digit); UncertainValue(1.234, 0.005) takes the numbers.
str() gives the standard notation, the uncertainty rounded to 2 to 19 units of its last
digit and the value to the same digit: "1.235(12)", "12340(30)", "-2.5e-7(3)".

Arithmetic treats the operands as independent and propagates the uncertainties to first
order, so a - a has uncertainty sqrt(2) u. A result out of range raises
OverflowError("UncertainValue: result out of range"), a zero divisor
ValueError("UncertainValue: division by zero").)doc")
      .def(py::init<double, double>(), py::arg("value"), py::arg("standard_uncertainty") = 0.0,
           "ValueError for a value that is not finite or an uncertainty that is negative or "
           "not finite.")
      .def(py::init(&UncertainValue::parse), py::arg("text"),
           "Reads \"1.234(5)\", \"12(3)\", \"0.5\".")
      .def_static("parse", &UncertainValue::parse, py::arg("text"),
                  "Reads the text form; ValueError(\"UncertainValue::parse(): cannot convert "
                  "'text' to a value with uncertainty\") for anything else.")
      .def_property_readonly("value", &UncertainValue::value)
      .def_property_readonly("standard_uncertainty", &UncertainValue::standard_uncertainty)
      .def_property_readonly("has_uncertainty", &UncertainValue::has_uncertainty)
      .def("__float__", &UncertainValue::value)
      .def("__str__", &UncertainValue::to_string)
      .def("__repr__",
           [](UncertainValue const& v) {
             return "UncertainValue(" + float_repr(v.value()) + ", " +
                    float_repr(v.standard_uncertainty()) + ")";
           })
      .def(-py::self)
      .def(+py::self)
      .def(py::self + py::self)
      .def(py::self - py::self)
      .def(py::self * py::self)
      .def(py::self / py::self)
      .def(
          "__add__", [](UncertainValue const& a, double b) { return a + UncertainValue(b); },
          py::is_operator())
      .def(
          "__radd__", [](UncertainValue const& a, double b) { return UncertainValue(b) + a; },
          py::is_operator())
      .def(
          "__sub__", [](UncertainValue const& a, double b) { return a - UncertainValue(b); },
          py::is_operator())
      .def(
          "__rsub__", [](UncertainValue const& a, double b) { return UncertainValue(b) - a; },
          py::is_operator())
      .def(py::self * double())
      .def(double() * py::self)
      .def(py::self / double())
      .def(
          "__rtruediv__", [](UncertainValue const& a, double b) { return UncertainValue(b) / a; },
          py::is_operator())
      .def(py::pickle(
          [](UncertainValue const& v) {
            return py::make_tuple(v.value(), v.standard_uncertainty());
          },
          [](py::tuple const& t) {
            return UncertainValue(t[0].cast<double>(), t[1].cast<double>());
          }));
}

}  // namespace structmath::python

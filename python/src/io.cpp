// SPDX-License-Identifier: MIT
// Python bindings: molecules and grids from XYZ, SD/molfile and cube files; SD files in chunks.
#include <pybind11/stl.h>

#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "contouring.hpp"
#include "convert.hpp"
#include "structmath/io/cube.hpp"
#include "structmath/io/elements.hpp"
#include "structmath/io/molfile.hpp"
#include "structmath/io/parse_error.hpp"
#include "structmath/io/sdf_reader.hpp"
#include "structmath/io/xyz.hpp"

namespace structmath::python {

using namespace pybind11::literals;

namespace {

// --- molecules -----------------------------------------------------------------------------

io::Molecule make_molecule(std::vector<std::string> const& elements, py::handle coordinates,
                           py::handle bonds, py::handle bond_orders, std::string title,
                           py::handle charges) {
  std::vector<Point> const positions = to_points(coordinates, "coordinates");
  if (positions.size() != elements.size()) {
    throw py::value_error(
        "coordinates must have one row per element: " + std::to_string(elements.size()) +
        " elements, " + std::to_string(positions.size()) + " rows");
  }
  io::Molecule m;
  m.title = std::move(title);
  for (std::size_t a = 0; a < elements.size(); ++a) {
    int const z = io::atomic_number_of_label(elements[a]);
    if (z == 0) throw py::value_error("unknown element '" + elements[a] + "'");
    m.atoms.emplace_back(io::element_symbol(z), positions[a], 0, elements[a]);
  }
  if (!charges.is_none()) {
    std::vector<double> const q =
        to_doubles(charges, "charges", static_cast<py::ssize_t>(elements.size()));
    for (std::size_t a = 0; a < q.size(); ++a) m.atoms[a].charge = static_cast<int>(q[a]);
  }
  if (!bonds.is_none()) {
    std::vector<int> const ends =
        index_rows(bonds, 2, static_cast<py::ssize_t>(elements.size()), "bonds");
    std::vector<double> orders;
    if (!bond_orders.is_none()) {
      orders = to_doubles(bond_orders, "bond_orders", static_cast<py::ssize_t>(ends.size() / 2));
    }
    for (std::size_t b = 0; b < ends.size() / 2; ++b) {
      io::Bond bond;
      bond.first = ends[2 * b];
      bond.second = ends[2 * b + 1];
      bond.order = orders.empty() ? 1 : static_cast<int>(orders[b]);
      m.bonds.push_back(bond);
    }
  }
  return m;
}

py::array elements_of(io::Molecule const& m) {
  py::list symbols;
  for (io::Atom const& a : m.atoms) symbols.append(a.element);
  return py::module_::import("numpy").attr("array")(symbols, "dtype"_a = "U3");
}

py::array_t<int> atomic_numbers_of(io::Molecule const& m) {
  py::array_t<int> out(static_cast<py::ssize_t>(m.atoms.size()));
  int* z = out.mutable_data();
  for (io::Atom const& a : m.atoms) *z++ = io::atomic_number(a.element);
  return out;
}

py::array_t<int> charges_of(io::Molecule const& m) {
  py::array_t<int> out(static_cast<py::ssize_t>(m.atoms.size()));
  int* q = out.mutable_data();
  for (io::Atom const& a : m.atoms) *q++ = a.charge;
  return out;
}

py::array_t<int> bonds_of(io::Molecule const& m) {
  py::array_t<int> out({static_cast<py::ssize_t>(m.bonds.size()), py::ssize_t{2}});
  int* d = out.mutable_data();
  for (io::Bond const& b : m.bonds) {
    *d++ = b.first;
    *d++ = b.second;
  }
  return out;
}

py::array_t<int> bond_orders_of(io::Molecule const& m) {
  py::array_t<int> out(static_cast<py::ssize_t>(m.bonds.size()));
  int* d = out.mutable_data();
  for (io::Bond const& b : m.bonds) *d++ = b.order;
  return out;
}

std::vector<std::string> labels_of(io::Molecule const& m) {
  std::vector<std::string> out;
  for (io::Atom const& a : m.atoms) out.push_back(a.label.empty() ? a.element : a.label);
  return out;
}

py::array_t<double> radii_of(std::vector<std::string> const& elements) {
  py::array_t<double> out(static_cast<py::ssize_t>(elements.size()));
  double* r = out.mutable_data();
  for (std::string const& e : elements) {
    auto const radius = io::van_der_waals_radius(io::atomic_number_of_label(e));
    if (!radius) throw py::value_error("no van der Waals radius for element '" + e + "'");
    *r++ = *radius;
  }
  return out;
}

// --- SD files in chunks ------------------------------------------------------------------------

std::ifstream open_binary(std::string const& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw io::ParseError(path, 0, "cannot open the file");
  return in;
}

bool is_separator(std::string const& line) {
  return line.compare(0, 4, "$$$$") == 0 && line.find_first_not_of(" \t\r", 4) == std::string::npos;
}

/// (start, end) byte ranges covering the file, each starting at a record: the first at 0,
/// the others just after a "$$$$" line found at or after each multiple of chunk_bytes.
std::vector<std::pair<long long, long long>> sdf_chunks(std::string const& path,
                                                        long long chunk_bytes) {
  if (chunk_bytes < 1) throw py::value_error("chunk_bytes must be at least 1");
  std::ifstream in = open_binary(path);
  in.seekg(0, std::ios::end);
  long long const size = in.tellg();
  std::vector<long long> starts{0};
  std::string line;
  for (long long target = chunk_bytes; target < size;) {
    in.clear();
    in.seekg(target);
    // The line the target falls in is passed over: a separator must start a line.
    if (target > 0) std::getline(in, line);
    long long boundary = -1;
    while (std::getline(in, line)) {
      if (is_separator(line)) {
        boundary = in.tellg();
        if (boundary < 0) boundary = size;
        break;
      }
    }
    if (boundary < 0 || boundary >= size) break;
    starts.push_back(boundary);
    target = std::max(boundary, target) + chunk_bytes;
  }
  std::vector<std::pair<long long, long long>> ranges;
  for (std::size_t i = 0; i < starts.size(); ++i) {
    ranges.emplace_back(starts[i], i + 1 < starts.size() ? starts[i + 1] : size);
  }
  // A file of nothing but blank space after its last separator ends with an empty range.
  return ranges;
}

/// The records of an SD file, or of a byte range of one, read one at a time.
class SdfIterator {
 public:
  SdfIterator(std::string const& path, long long start, long long end) {
    if (start == 0 && end < 0) {
      auto file = std::make_unique<std::ifstream>(open_binary(path));
      stream_ = std::move(file);
      name_ = path;
    } else {
      std::ifstream in = open_binary(path);
      in.seekg(0, std::ios::end);
      long long const size = in.tellg();
      if (end < 0 || end > size) end = size;
      if (start < 0 || start > end) {
        throw py::value_error("byte range " + std::to_string(start) + " to " + std::to_string(end) +
                              " is not within the file");
      }
      std::string bytes(static_cast<std::size_t>(end - start), '\0');
      in.seekg(start);
      in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      stream_ = std::make_unique<std::istringstream>(std::move(bytes));
      name_ = path + " [bytes " + std::to_string(start) + "-" + std::to_string(end) + "]";
    }
    reader_ = std::make_unique<io::SdfReader>(*stream_, name_);
  }

  io::SdfRecord next() {
    io::SdfRecord record;
    bool more = false;
    {
      py::gil_scoped_release unlocked;
      more = reader_->next(record);
    }
    if (!more) throw py::stop_iteration();
    return record;
  }
  int records() const noexcept { return reader_->records(); }

 private:
  std::unique_ptr<std::istream> stream_;
  std::string name_;
  std::unique_ptr<io::SdfReader> reader_;
};

// --- cube files ----------------------------------------------------------------------------

py::array cube_values(py::object self) {
  auto const& cube = self.cast<io::CubeFile const&>();
  if (!cube.grid) throw py::value_error("the cube has no grid");
  auto const& v = cube.grid->values();
  auto const nx = static_cast<py::ssize_t>(v.nx());
  auto const ny = static_cast<py::ssize_t>(v.ny());
  auto const nz = static_cast<py::ssize_t>(v.nz());
  auto const s = static_cast<py::ssize_t>(sizeof(double));
  // A view of the grid's own block, kept alive by the cube object.
  return py::array_t<double>({nx, ny, nz}, {ny * nz * s, nz * s, s}, v.data(), self);
}

py::array_t<double> cube_axes(io::CubeFile const& cube) {
  py::array_t<double> out({py::ssize_t{3}, py::ssize_t{3}});
  double* d = out.mutable_data();
  for (Vector3D const& step : {cube.grid->step_x(), cube.grid->step_y(), cube.grid->step_z()}) {
    *d++ = step.x();
    *d++ = step.y();
    *d++ = step.z();
  }
  return out;
}

io::CubeFile make_cube(py::handle values, py::handle origin, py::handle axes, std::string comment1,
                       std::string comment2) {
  DoubleArray const v = double_array(values, 3, "values");
  DoubleArray const a = double_array(axes.is_none() ? py::module_::import("numpy").attr("eye")(3)
                                                    : py::reinterpret_borrow<py::object>(axes),
                                     2, "axes");
  if (a.shape[0] != 3 || a.shape[1] != 3) throw py::value_error("axes must be a (3, 3) array");
  Vector3D const o = to_vector(origin, "origin");
  auto const nx = static_cast<int>(v.shape[0]);
  auto const ny = static_cast<int>(v.shape[1]);
  auto const nz = static_cast<int>(v.shape[2]);
  auto edge = [&a](int axis, int n) {
    double const steps = n > 1 ? n - 1 : 0;
    return Vector3D(a.at(axis, 0) * steps, a.at(axis, 1) * steps, a.at(axis, 2) * steps);
  };
  io::CubeFile cube;
  cube.comment1 = std::move(comment1);
  cube.comment2 = std::move(comment2);
  cube.grid = make_handle<NormalGrid>(nx, ny, nz, Point(o.x(), o.y(), o.z()), edge(0, nx),
                                      edge(1, ny), edge(2, nz));
  double* block = cube.grid->values().data();
  for (py::ssize_t i = 0; i < nx; ++i) {
    for (py::ssize_t j = 0; j < ny; ++j) {
      for (py::ssize_t k = 0; k < nz; ++k) {
        *block++ = v.data[i * v.strides[0] + j * v.strides[1] + k * v.strides[2]];
      }
    }
  }
  return cube;
}

template <typename F>
auto unlocked(F f) {
  py::gil_scoped_release released;
  return f();
}

}  // namespace

void bind_io(py::module_& m) {
  py::class_<io::Molecule>(m, "Molecule", R"doc(
A molecule as files hold it: a title, atoms (element, position in angstrom, formal
charge, label as written) and bonds (atom pairs counted from 0, with orders 1 single,
2 double, 3 triple, 4 aromatic). The array properties are new arrays on every access.)doc")
      .def(py::init(&make_molecule), py::arg("elements"), py::arg("coordinates"),
           py::arg("bonds") = py::none(), py::arg("bond_orders") = py::none(),
           py::arg("title") = "", py::arg("charges") = py::none(),
           R"doc(From element symbols or labels ("C", "cl", "D"), an (N, 3) array of
coordinates, optionally an (M, 2) array of bonded atom indices with their orders (default
1), a title and formal charges.)doc")
      .def_readwrite("title", &io::Molecule::title)
      .def_property_readonly("elements", &elements_of, "Element symbols, (N,) str array.")
      .def_property_readonly("atomic_numbers", &atomic_numbers_of)
      .def_property_readonly("labels", &labels_of, "Atom labels as the file wrote them.")
      .def_property_readonly(
          "coordinates", [](io::Molecule const& mol) { return to_array(mol.positions()); },
          "(N, 3) float64 array, angstrom.")
      .def_property_readonly("charges", &charges_of, "Formal charges, (N,) int array.")
      .def_property_readonly("bonds", &bonds_of, "(M, 2) int32 array of atom indices.")
      .def_property_readonly("bond_orders", &bond_orders_of, "(M,) int32 array.")
      .def("__len__", [](io::Molecule const& mol) { return mol.atoms.size(); })
      .def("__repr__",
           [](io::Molecule const& mol) {
             return "Molecule(" + py::repr(py::str(mol.title)).cast<std::string>() + ", " +
                    std::to_string(mol.atoms.size()) + " atoms, " +
                    std::to_string(mol.bonds.size()) + " bonds)";
           })
      .def(py::pickle(
          [](io::Molecule const& mol) {
            return py::make_tuple(labels_of(mol), to_array(mol.positions()), bonds_of(mol),
                                  bond_orders_of(mol), mol.title, charges_of(mol));
          },
          [](py::tuple const& t) {
            return make_molecule(t[0].cast<std::vector<std::string>>(), t[1], t[2], t[3],
                                 t[4].cast<std::string>(), t[5]);
          }));

  py::class_<io::SdfRecord>(m, "SdfRecord", R"doc(
One record of an SD file: the molecule, its data items ("> <NAME>" blocks, a dict in file
order), its number (from 1, within the file or byte range read) and the line of its title.)doc")
      .def_readonly("molecule", &io::SdfRecord::molecule)
      .def_property_readonly("data",
                             [](io::SdfRecord const& r) {
                               py::dict d;
                               for (auto const& [name, value] : r.data) d[py::str(name)] = value;
                               return d;
                             })
      .def_readonly("number", &io::SdfRecord::number)
      .def_readonly("first_line", &io::SdfRecord::first_line)
      .def("__repr__",
           [](io::SdfRecord const& r) {
             return "SdfRecord(" + std::to_string(r.number) + ", " +
                    py::repr(py::str(r.molecule.title)).cast<std::string>() + ")";
           })
      .def(py::pickle(
          [](io::SdfRecord const& r) {
            return py::make_tuple(py::cast(r.molecule), r.data, r.number, r.first_line);
          },
          [](py::tuple const& t) {
            io::SdfRecord r;
            r.molecule = t[0].cast<io::Molecule>();
            r.data = t[1].cast<std::vector<std::pair<std::string, std::string>>>();
            r.number = t[2].cast<int>();
            r.first_line = t[3].cast<int>();
            return r;
          }));

  py::class_<SdfIterator>(m, "SdfIterator", R"doc(
The records of an SD file read one at a time, as SdfRecord objects; memory does not grow
with the file. A malformed record raises ParseError and leaves the iterator after it:
calling next() again reads the next record. Each thread needs its own iterator.)doc")
      .def("__iter__", [](SdfIterator& it) -> SdfIterator& { return it; })
      .def("__next__", &SdfIterator::next)
      .def_property_readonly("records", &SdfIterator::records,
                             "Records read so far, a malformed one included.");

  m.def(
      "iter_sdf",
      [](std::string const& path, long long start, py::object end) {
        return std::make_unique<SdfIterator>(path, start,
                                             end.is_none() ? -1 : end.cast<long long>());
      },
      py::arg("path"), py::arg("start") = 0, py::arg("end") = py::none(),
      R"doc(Iterates over the records of an SD file (V2000 and V3000), or over those in the
byte range start to end of it, a range from sdf_chunks(). In a range, record numbers and
the lines in messages count from its start, and the file is named with the range.)doc");
  m.def("sdf_chunks", &sdf_chunks, py::arg("path"), py::arg("chunk_bytes"),
        R"doc((start, end) byte ranges that cover an SD file and each begin at a record, about
chunk_bytes long (a chunk ends after the first "$$$$" line from its nominal size on), for
splitting a large file over workers with iter_sdf(path, start, end).)doc");
  m.def(
      "read_sdf",
      [](std::string const& path) { return unlocked([&] { return io::read_sdf(path); }); },
      py::arg("path"),
      "Every record of an SD file as a list of Molecule; ParseError at the first bad one.");
  m.def(
      "read_molfile",
      [](std::string const& path) { return unlocked([&] { return io::read_molfile(path); }); },
      py::arg("path"), "The molecule of a molfile.");
  m.def(
      "read_xyz",
      [](std::string const& path) { return unlocked([&] { return io::read_xyz(path); }); },
      py::arg("path"), "Every frame of an XYZ file as a list of Molecule.");
  m.def(
      "write_sdf",
      [](std::string const& path, std::vector<io::Molecule> const& molecules) {
        unlocked([&] {
          io::write_sdf(path, molecules);
          return 0;
        });
      },
      py::arg("path"), py::arg("molecules"), "Writes the molecules as SD records.");
  m.def(
      "write_xyz",
      [](std::string const& path, std::vector<io::Molecule> const& molecules) {
        unlocked([&] {
          io::write_xyz(path, molecules);
          return 0;
        });
      },
      py::arg("path"), py::arg("molecules"), "Writes the molecules as XYZ frames.");
  m.def("van_der_waals_radii", &radii_of, py::arg("elements"),
        R"doc(Van der Waals radii in angstrom of element symbols or labels (Bondi 1964, and
Mantina et al. 2009 for the other main-group elements); ValueError for an element that
neither covers.)doc");

  py::class_<io::CubeFile>(m, "Cube", R"doc(
A Gaussian cube file's grid in angstrom: values[i, j, k] at origin + i axes[0] + j axes[1]
+ k axes[2]; values is a view of the grid itself (writable: changes affect contour()).
atoms: atomic_numbers, charges and positions of the atoms listed with it.)doc")
      .def(py::init(&make_cube), py::arg("values"),
           py::arg("origin") = std::make_tuple(0.0, 0.0, 0.0), py::arg("axes") = py::none(),
           py::arg("comment1") = "", py::arg("comment2") = "")
      .def_readonly("comment1", &io::CubeFile::comment1)
      .def_readonly("comment2", &io::CubeFile::comment2)
      .def_property_readonly(
          "values", [](py::object self) { return cube_values(self); },
          "(nx, ny, nz) float64 view of the grid's values.")
      .def_property_readonly("origin",
                             [](io::CubeFile const& c) { return to_array(c.grid->origin()); })
      .def_property_readonly("axes", &cube_axes, "(3, 3): row d is the step along axis d.")
      .def_property_readonly("atomic_numbers",
                             [](io::CubeFile const& c) {
                               std::vector<int> z;
                               for (auto const& a : c.atoms) z.push_back(a.atomic_number);
                               return to_array(z);
                             })
      .def_property_readonly("charges",
                             [](io::CubeFile const& c) {
                               std::vector<double> q;
                               for (auto const& a : c.atoms) q.push_back(a.charge);
                               return to_array(q);
                             })
      .def_property_readonly("positions",
                             [](io::CubeFile const& c) {
                               std::vector<Point> p;
                               for (auto const& a : c.atoms) p.push_back(a.position);
                               return to_array(p);
                             })
      .def(
          "contour",
          [](io::CubeFile const& c, double level, std::string const& method) {
            return contour_grid(c.grid, level, method);
          },
          py::arg("level"), py::arg("method") = "cubes",
          R"doc(The iso-surface of the grid in place (no copy), as marching_cubes returns it,
in angstrom and along the cube's own axes.)doc")
      .def(py::pickle(
          [](io::CubeFile const& c) {
            std::vector<int> z;
            std::vector<double> q;
            std::vector<Point> p;
            for (auto const& a : c.atoms) {
              z.push_back(a.atomic_number);
              q.push_back(a.charge);
              p.push_back(a.position);
            }
            auto const& v = c.grid->values();
            py::array_t<double> values({v.nx(), v.ny(), v.nz()});
            std::memcpy(values.mutable_data(), v.data(), v.size() * sizeof(double));
            return py::make_tuple(values, to_array(c.grid->origin()), cube_axes(c), c.comment1,
                                  c.comment2, z, q, to_array(p));
          },
          [](py::tuple const& t) {
            io::CubeFile c =
                make_cube(t[0], t[1], t[2], t[3].cast<std::string>(), t[4].cast<std::string>());
            auto const z = t[5].cast<std::vector<int>>();
            auto const q = t[6].cast<std::vector<double>>();
            std::vector<Point> const p = to_points(t[7], "positions");
            for (std::size_t a = 0; a < z.size(); ++a) c.atoms.push_back({z[a], q[a], p[a]});
            return c;
          }));
  m.def(
      "read_cube",
      [](std::string const& path) { return unlocked([&] { return io::read_cube(path); }); },
      py::arg("path"), "A Gaussian cube file, lengths converted to angstrom.");
}

}  // namespace structmath::python

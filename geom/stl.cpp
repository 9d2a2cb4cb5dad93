#include "geom/stl.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "geom/stl_binary.h"
#include "geom/stl_text_reader.h"

namespace tooldb {
namespace {

void append_shortest(std::string& out, double value) {
  std::array<char, 32> buffer;  // NOLINT(*-member-init): filled by to_chars
  // Adding 0 leaves no negative zero.
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value + 0.0);
  out.append(buffer.data(), end.ptr);
}

void append_vector(std::string& out, std::string_view before, const Vec3& v) {
  out += before;
  for (double x : {v.x, v.y, v.z}) {
    out += ' ';
    append_shortest(out, x);
  }
  out += '\n';
}

std::string in_one_line(std::string_view name) {
  std::string line(name);
  std::ranges::replace_if(
      line, [](char c) { return c == '\n' || c == '\r'; }, ' ');
  return line;
}

}  // namespace

std::optional<std::vector<Facet>> read_stl(ByteSource& source, std::string& error) {
  if (source.Size() == 0) {
    error = "the file is empty";
    return std::nullopt;
  }
  const StlLayout layout = stl_layout(source);
  if (layout.Fits()) return read_stl_binary(source, error);
  if (looks_like_stl_text(source)) return read_stl_text(source, error);
  if (layout.has_count) return read_stl_binary(source, error);
  error = "it does not begin with 'solid', and is too short for a binary STL file";
  return std::nullopt;
}

std::string stl_text(std::span<const Facet> mesh, std::string_view name) {
  const std::string solid = in_one_line(name);
  std::string out = "solid " + solid + "\n";
  for (const Facet& f : mesh) {
    append_vector(out, "facet normal", f.n);
    out += "  outer loop\n";
    for (const Vec3* corner : {&f.a, &f.b, &f.c}) append_vector(out, "    vertex", *corner);
    out += "  endloop\nendfacet\n";
  }
  out += "endsolid " + solid + "\n";
  return out;
}

}  // namespace tooldb

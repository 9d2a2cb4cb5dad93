#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

class tdbCompositeItem;

/// @file
/// Which texts files can hold. Texts are written as they stand, so some would make a file that
/// nobody can read.

namespace tooldb {

/// One text of a tool or component.
struct HeldText {
  std::string where;  ///< "description", "parameter MAKER of cutter 'Cutter'"
  std::string value;
  bool one_line;  ///< it is an attribute, where line ends would be lost
  std::function<void(const std::string& value)> set;
};

/// Every text that the file of `root`, a tool or a component, holds. The texts refer to the tree.
std::vector<HeldText> held_texts(tdbCompositeItem& root);

/// Why a file cannot hold a text; empty when it can.
std::string text_problem(std::string_view text, bool one_line);

/// Why an item cannot have a parameter of that name, which becomes the name of an element; empty
/// when it can.
std::string parameter_name_problem(std::string_view name);

/// Why a tool or component cannot have a code; empty when it can.
std::string code_problem(const std::string& code);

/// What is wrong with the names of parameters in `root` and below; one line each.
std::vector<std::string> parameter_name_problems(tdbCompositeItem& root);

/// Raises `Failure` with what is wrong first: with the code, a text or a parameter's name.
void require_storable(tdbCompositeItem& root);

/// Puts the full-width forms of the three marks that files cannot hold in their place, and blanks
/// in that of control characters.
/// @return what was changed, one line each
std::vector<std::string> make_storable(tdbCompositeItem& root);

}  // namespace tooldb

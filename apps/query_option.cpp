#include "apps/query_option.h"

#include "apps/command.h"
#include "apps/display_text.h"
#include "apps/fields.h"

namespace tooldb {
namespace {

std::string nearest_field(const std::string& name) {
  std::vector<std::string_view> names;
  for (const Field& field : fields()) names.push_back(field.name);
  const auto meant = nearest(lower_text(name), names);
  return meant.empty() ? std::string() : "; did you mean '" + std::string(meant) + "'?";
}

// The message, the expression, and a mark below the fault.
std::string pointed_out(const QueryError& error, const std::string& expression) {
  const std::string shown = printable(expression);
  const int column = display_width(printable(expression.substr(0, error.position)));
  return "--where: " + std::string(error.what()) + "\n  " + shown + "\n  " +
         std::string(static_cast<std::size_t>(column), ' ') + '^';
}

}  // namespace

void add_where_option(CLI::App& app, std::string& expression) {
  app.add_option("--where", expression, "Only tools for which the expression is true")
      ->type_name("EXPR");
}

std::function<bool(tdbTool&)> tool_filter(const std::string& expression) {
  if (expression.empty()) {
    return [](tdbTool&) { return true; };
  }
  try {
    const Query query = Query::Parse(expression, field_kind);
    return [query](tdbTool& tool) {
      return query.Matches([&](std::string_view field) { return field_value(tool, field); });
    };
  } catch (const QueryError& error) {
    throw UsageError(pointed_out(error, expression));
  }
}

void require_field(const std::string& option, const std::string& name) {
  if (field_kind(name)) return;
  throw UsageError(option + ": no field is called '" + name + "'" + nearest_field(name));
}

}  // namespace tooldb

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "apps/display_text.h"
#include "apps/program.h"

namespace tooldb {
namespace {

struct Named {
  std::string path;
  const Command* command;
};

std::vector<Named> all_commands() {
  std::vector<Named> all;
  for (const Command* command : commands()) {
    all.push_back({std::string(command->name) + ' ', command});
    for (const Command* member : command->subcommands) {
      all.push_back({std::string(command->name) + ' ' + std::string(member->name) + ' ', member});
    }
  }
  return all;
}

class Help : public testing::TestWithParam<Named> {};

TEST_P(Help, FitsATerminalAndSaysWhatEveryOptionIs) {
  const auto& [path, command] = GetParam();
  std::istringstream lines(command_help(*command, path));
  for (std::string line; std::getline(lines, line);) {
    const bool is_example = line.starts_with("  tooldb ") || line.starts_with("  source ");
    EXPECT_TRUE(is_example || display_width(line) <= 80) << line;
  }
  EXPECT_FALSE(command->help.ends_with('.'));
  const auto parser = described(*command);
  for (const CLI::Option* option : parser->get_options()) {
    EXPECT_FALSE(option->get_description().empty()) << option->get_name();
  }
}

// Examples are what people copy: each must be a call of its command that the parser accepts.
TEST_P(Help, HasExamplesThatAreCalls) {
  const auto& [path, command] = GetParam();
  for (const auto& [line, meaning] : command->examples) {
    const std::string call = "tooldb " + path;
    ASSERT_NE(line.find(call), std::string_view::npos) << line;
    const std::string_view words = line.substr(line.find(call) + call.size());
    CLI::App parser;
    const Action action = command->declare(parser);
    EXPECT_NO_THROW(parser.parse(std::string(words.substr(0, words.find_first_of("|>)"))))) << line;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, Help, testing::ValuesIn(all_commands()), [](const auto& row) {
  std::string name = row.param.path;
  std::ranges::replace(name, ' ', '_');
  return name;
});

}  // namespace
}  // namespace tooldb

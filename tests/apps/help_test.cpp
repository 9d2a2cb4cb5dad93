#include <gtest/gtest.h>

#include <set>
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
  const std::string help = command_help(*command, path);
  std::istringstream lines(help);
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
  for (const Example& example : command->examples) {
    EXPECT_NE(example.line.find("tooldb " + path.substr(0, path.size() - 1)), std::string::npos)
        << example.line;
  }
}

INSTANTIATE_TEST_SUITE_P(Commands, Help, testing::ValuesIn(all_commands()), [](const auto& row) {
  std::string name = row.param.path;
  for (char& c : name) c = c == ' ' ? '_' : c;
  return name;
});

}  // namespace
}  // namespace tooldb

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/geom/row_name.h"
#include "tests/storage/faulty_file_system.h"
#include "tests/storage/stored_world.h"

namespace tooldb {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;

class Faults : public Disturbed {
 protected:
  /// Runs the operation with the calls from the n-th to the last failing; false once there are
  /// fewer than n.
  bool RunFailing(int n, int last) {
    SCOPED_TRACE("call " + std::to_string(n));
    World world;
    FaultyFileSystem disk;
    const ScopedFileSystem use(disk);
    disk.Let([=](const FileCall& call) { return call.number >= n && call.number <= last; });
    const bool done = GetParam().Run(world);
    const bool reached = disk.Calls() >= n;
    disk.Let(nullptr);
    EXPECT_TRUE(world.HasReported() || Left(world) == aim_) << "nothing reported, yet not done";
    if (world.failed_with_error) world.db.Note(world.error);
    for (const std::string& event : world.db.events) {
      EXPECT_THAT(event, AnyOf(StartsWith("log"), HasSubstr(world.scratch.Path())));
    }
    ExpectNothingLost(world, done);
    return reached;
  }
};

TEST_P(Faults, LoseNothingForOneCallOrForEverAfter) {
  for (int n = 1; RunFailing(n, n) && RunFailing(n, std::numeric_limits<int>::max()); ++n) {
  }
}

TEST(FaultsOfAdding, NoFailingCallLetsAStoredToolBeOverwritten) {
  for (int n = 1;; ++n) {
    World world;
    const Files before = world.scratch.Files();
    FaultyFileSystem disk;
    const ScopedFileSystem use(disk);
    disk.Let([=](const FileCall& call) { return call.number == n; });
    EXPECT_FALSE(world.db.AddTool(make_tool("T2", "another").get(), false)) << "call " << n;
    EXPECT_EQ(world.scratch.Files(), before) << "call " << n;
    if (disk.Calls() < n) return;
  }
}

// Otherwise no fault above would meet what is done for many files at once.
TEST(FaultsOfImporting, MeetTheFlushOfTheWholeDisk) {
  World world;
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  int files_flushed = 0;
  disk.Let([&](const FileCall& call) {
    files_flushed += call.kind == FileCall::Kind::kFlush && call.path != world.lib ? 1 : 0;
    return false;
  });
  EXPECT_TRUE(std::ranges::find(kOperations, "ImportMany", &Operation::name)->Run(world));
  EXPECT_EQ(files_flushed, 0);
}

INSTANTIATE_TEST_SUITE_P(Operations, Faults, testing::ValuesIn(kOperations), row_name<Operation>);

struct Damage {
  std::string_view name;
  void (*harm)(World& world);
  bool (*fails)(const FileCall& call);
  /// Whether an operation of that need can still succeed.
  bool (*allows)(Need need);
};

bool none(const FileCall& /*call*/) { return false; }

bool changes(const FileCall& call) {
  using Kind = FileCall::Kind;
  return call.kind == Kind::kCreate || call.kind == Kind::kRename || call.kind == Kind::kRemove ||
         call.kind == Kind::kMakeFolder;
}

constexpr Damage kDamages[] = {
    {"Missing", [](World& world) { std::filesystem::remove_all(world.lib); }, none,
     [](Need) { return false; }},
    {"ReplacedByAFile",
     [](World& world) {
       std::filesystem::remove_all(world.lib);
       world.scratch.MakeFile("lib", "a file");
     },
     none, [](Need) { return false; }},
    {"ReadOnly", nothing, changes, [](Need need) { return need == Need::kRead; }},
    {"Full", nothing, [](const FileCall& call) { return call.kind == FileCall::Kind::kWrite; },
     [](Need need) { return need != Need::kWrite; }},
};

class DamagedFolder : public testing::TestWithParam<std::tuple<Damage, Operation>> {};

TEST_P(DamagedFolder, IsReportedAndMadeNoWorse) {
  const auto& [damage, operation] = GetParam();
  World world;
  damage.harm(world);
  FaultyFileSystem disk;
  const ScopedFileSystem use(disk);
  disk.Let(damage.fails);
  const auto codes = listed_codes(world.db);
  const Files before = world.scratch.Files();
  EXPECT_EQ(operation.Run(world), damage.allows(operation.need));
  EXPECT_EQ(world.HasReported(), !damage.allows(operation.need));
  if (damage.allows(operation.need)) return;
  world.TakeBackRename();
  EXPECT_EQ(listed_codes(world.db), codes);
  EXPECT_EQ(world.scratch.Files(), before);
}

INSTANTIATE_TEST_SUITE_P(Folders, DamagedFolder,
                         testing::Combine(testing::ValuesIn(kDamages),
                                          testing::ValuesIn(kOperations)),
                         [](const auto& row) {
                           return std::string(std::get<0>(row.param).name) +
                                  std::string(std::get<1>(row.param).name);
                         });

}  // namespace
}  // namespace tooldb

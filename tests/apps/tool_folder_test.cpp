#include "apps/tool_folder.h"

#include <gtest/gtest.h>

#include "apps/console.h"
#include "tests/storage/scratch_folder.h"

namespace tooldb {
namespace {

class ToolFolderTest : public testing::Test {
 protected:
  ToolFolderTest() {
    console_.Mute();
    ToolFolder folder({path_, ""}, Use::kWrite, console_);
    folder.AddNew(std::make_unique<tdbTool>("T1"));
  }

  const ScratchFolder scratch_;
  const std::string path_ = scratch_.Path();
  Console console_;
};

TEST_F(ToolFolderTest, NoticesAFileThatChangedSinceItWasRead) {
  ToolFolder folder({path_, ""}, Use::kWrite, console_);
  const ToolToEdit edited = folder.ReadToEdit("T1");
  EXPECT_NO_THROW(folder.CheckUnchanged(edited));

  const auto other = folder.ReadTool("T1");
  other->SetDescr("someone else's");
  folder.Update(*other);
  EXPECT_THROW(folder.CheckUnchanged(edited), Failure);

  tdbFileUtil::remove_file(folder.FilePath("T1"));
  EXPECT_THROW(folder.CheckUnchanged(edited), Failure);
}

TEST_F(ToolFolderTest, NoticesAComponentThatChangedSinceItWasRead) {
  ComponentFolder folder(path_, Use::kWrite, console_);
  ComponentFolder other(path_, Use::kWrite, console_);
  const auto write = [&](const char* name) {
    other.Write(std::make_unique<tdbToolComponent>(0, name, "C1"));
  };
  write("first");
  EXPECT_EQ(folder.Find("C1"), nullptr) << "it was not there when the folder was opened";
  const ComponentToEdit edited = folder.ReadToEdit("C1");
  EXPECT_EQ(edited.component->GetName(), "first");
  EXPECT_NO_THROW(folder.CheckUnchanged(edited));
  write("second");
  EXPECT_THROW(folder.CheckUnchanged(edited), Failure);
  EXPECT_EQ(folder.ReadToEdit("C1").component->GetName(), "second");
}

}  // namespace
}  // namespace tooldb

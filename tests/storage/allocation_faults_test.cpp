#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/geom/row_name.h"
#include "tests/storage/faulty_file_system.h"
#include "tests/storage/stored_world.h"

// Every allocation of a call fails once, and then for ever after: the call must answer as it does
// for any failure, and leave its surroundings whole.

namespace {

/// Which allocation of the library fails.
struct Shortage {
  bool inside = false;   ///< a call of the library is on its way
  bool lasting = false;  ///< every later one fails as well
  long passed = 0;       ///< allocations so far
  long fails = -1;       ///< the one that fails, the first being 0; negative for none
};
Shortage shortage;
std::atomic<long> blocks_in_use = 0;

bool allocation_fails() {
  if (!shortage.inside || shortage.fails < 0) return false;
  const long number = shortage.passed++;
  return number == shortage.fails || (shortage.lasting && number > shortage.fails);
}

void* allocate_or_null(std::size_t size) {
  void* const memory = allocation_fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) ++blocks_in_use;
  return memory;
}

void* allocate(std::size_t size) {
  void* const memory = allocate_or_null(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void release(void* memory) {
  if (memory == nullptr) return;
  --blocks_in_use;
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return allocate_or_null(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return allocate_or_null(size);
}
void operator delete(void* memory) noexcept { release(memory); }
void operator delete[](void* memory) noexcept { release(memory); }
void operator delete(void* memory, std::size_t) noexcept { release(memory); }
void operator delete[](void* memory, std::size_t) noexcept { release(memory); }

/// Tells a leak checker of the one that is known, see `kOffset`.
extern "C" const char* __lsan_default_suppressions() {  // NOLINT(*-reserved-identifier)
  return "leak:ClipperLib\n";
}

namespace tooldb {
namespace {

template <class Item>
void delete_all(std::vector<Item*>& items) {
  for (Item* item : items) delete item;
}

std::string document_of(World& world) {
  std::string text;
  static_cast<const tdbToolDB&>(world.db).WriteXml(text, {});
  return text;
}

/// A tool with a body, so that there is something to draw.
std::unique_ptr<tdbTool> make_mill() {
  auto tool = std::make_unique<tdbTool>("MILL", "a tool with a name that is allocated");
  auto* const cutter = new tdbToolCutter(0);
  tool->AddCutter(cutter);
  tool->AddParam("VENDOR", "a vendor with a name of some length");
  return tool;
}

/// A call that finds memory, or fails with an answer.
bool answered(World& world, void (*draw)(tdbTool& mill, tdbToolCutter& cutter)) {
  const auto mill = make_mill();
  tdbToolCutter& cutter = *mill->GetCutter(0);
  world.Call([&] { draw(*mill, cutter); });
  return true;
}

/// Clipper, which makes offsets, loses a block when it finds no memory for the next.
constexpr std::string_view kOffset = "Offset";

/// Calls besides those of the databases on the disk; none of them changes a file.
constexpr Operation kMoreCalls[] = {
    {"ImportFromXml", Need::kWrite,
     [](World& world) {
       const std::string document = document_of(world);
       return world.Call([&] { return world.db.ImportFromXml(document.c_str(), {}); });
     }},
    {"Sort", Need::kRead,
     [](World& world) {
       world.Call([&] { world.db.Sort(0, true); });
       return true;
     }},
    {"WriteDocument", Need::kRead,
     [](World& world) {
       world.Call([&] {
         std::string out;
         static_cast<const tdbToolDB&>(world.db).WriteXml(out, {});
       });
       return true;
     }},
    {"ReaderImport", Need::kRead,
     [](World& world) {
       std::vector<tdbTool*> tools;
       tdbError error;
       const std::string document = document_of(world);
       const bool read = world.Call([&] {
         return tdbXmlReader::ImportFromXml(document.c_str(), {}, tools, error, nullptr);
       });
       delete_all(tools);
       return world.db.Noted(read, error);
     }},
    {"ReadToolFile", Need::kRead,
     [](World& world) {
       tdbError error;
       const std::string path = world.scratch.Path("lib/T1.ktf");
       const std::unique_ptr<tdbTool> tool(
           world.Call([&] { return tdbXmlReader::ReadTool(path.c_str(), {}, error, nullptr); }));
       return world.db.Noted(tool != nullptr, error);
     }},
    {"IsToolFile", Need::kRead,
     [](World& world) {
       const std::string path = world.scratch.Path("lib/T1.ktf");
       world.Call([&] { tdbXmlReader::IsTalvikToolFile(path.c_str()); });
       return true;
     }},
    {"TemporaryTool", Need::kWrite,
     [](World& world) {
       return world.Call([&] { return tdbAddTempMillTool(&world.db, "T4") != nullptr; });
     }},
    {"Components", Need::kRead,
     [](World& world) {
       WatchedComponents components;
       std::string folder = world.scratch.Path("out");
       const bool added = world.Call([&] {
         if (!components.Create(std::move(folder))) return false;
         return components.ImportFromXml("<TOOLDB/>", {}) && components.Reload({});
       });
       return world.db.Noted(added, tdbError());
     }},
    {"Outline", Need::kRead,
     [](World& world) {
       return answered(world, [](tdbTool&, tdbToolCutter& cutter) {
         cutter.BuildProfile();
         std::vector<std::vector<Point2d<double>>> contours;
         cutter.GetProfile(nullptr, contours, 0.1, 0);
         tdbProfile::HilightCuttingProfile(cutter, 0.1, contours);
       });
     }},
    {"Mesh", Need::kRead,
     [](World& world) {
       return answered(world, [](tdbTool& mill, tdbToolCutter& cutter) {
         std::vector<Triangle<double>> triangles;
         cutter.GetShape(nullptr, triangles, 0.1);
         tdbProfile::GetAssemblyShape(mill, nullptr, triangles, 0.1);
         tdbProfile::GetSectionShape(mill, nullptr, triangles, 0.1);
         std::vector<Point2d<double>> points;
         tdbProfile::ExtractProfile(triangles, points, 0.1F);
         tdbStlText(triangles, "mill");
         tdbStlBinary(triangles);
       });
     }},
    {"Shape", Need::kRead,
     [](World& world) {
       return answered(world, [](tdbTool&, tdbToolCutter& cutter) {
         bool empty = false;
         kinShape* const shape =
             cutter.CreateShape(tdbDefaultSceneManager(), 0.1, false, 0, &empty, 0);
         if (shape != nullptr) shape->Release();
       });
     }},
    {"Questions", Need::kRead,
     [](World& world) {
       return answered(world, [](tdbTool&, tdbToolCutter& cutter) {
         tdbProfile::OutlineError(cutter);
         tdbProfile::GetDimensions(cutter);
         tdbGetTypeName(cutter);
         tdbGetTypeNames(cutter);
         tdbGetTypeByName(cutter, "no such type");
       });
     }},
    {"Makers", Need::kRead,
     [](World& world) {
       static tdbToolShank shank(0);
       return answered(world, [](tdbTool&, tdbToolCutter& cutter) {
         tdbMakeAptMillCutter(&cutter, 10, 1, 4, 1, 0, 0, 20);
         tdbMakeAptMillShank(&shank, 10, 20);
       });
     }},
    {"Insert", Need::kRead,
     [](World& world) {
       return answered(world, [](tdbTool&, tdbToolCutter&) {
         std::string contour;
         tdbProfile::CreateInsertProfile({.inscribedCircle = 12.7, .cornerRadius = 0.8}, contour);
       });
     }},
    {kOffset, Need::kRead,
     [](World& world) {
       static const std::vector<Point2d<double>> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
       return answered(world,
                       [](tdbTool&, tdbToolCutter&) { tdbProfile::OffsetProfile2(square, 1); });
     }},
};

class ShortOfMemory : public testing::TestWithParam<Operation> {
 protected:
  ShortOfMemory() {
    World world;
    before_ = world.scratch.Files();
    EXPECT_TRUE(GetParam().run(world));
    aim_ = world.scratch.Files();
  }

  /// Runs the operation with the n-th allocation failing; false once there are fewer.
  bool RunFailing(long n, bool lasting) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    FaultyFileSystem disk;  // of which nothing fails: it spares the flushes
    const ScopedFileSystem use(disk);
    World world;
    world.enter = [] { shortage.inside = true; };
    world.leave = [] { shortage.inside = false; };
    shortage = {.inside = false, .lasting = lasting, .passed = 0, .fails = n};
    const std::ptrdiff_t descriptors = open_descriptors();
    bool done = false;
    EXPECT_NO_THROW(done = GetParam().run(world));
    const bool reached = shortage.passed > n;
    shortage = {};

    EXPECT_EQ(open_descriptors(), descriptors);
    world.TakeBackRename();
    expect_whole(before_, aim_, without_litter(world.scratch.Files()));
    expect_list_and_disk_agree(world);
    EXPECT_TRUE(done || world.db.HasReported()) << "failed without a word";
    EXPECT_TRUE(world.db.Init(world.lib) && world.db.UpdateTool(&world.Tool("T3")))
        << "the next call works";
    return reached;
  }

  /// The same twice, of which the second may not leave a block behind: what the first one keeps may
  /// be there for good.
  bool RunWithoutLeak(long n, bool lasting) {
    const long before = blocks_in_use;
    const bool reached = RunFailing(n, lasting);
    if (blocks_in_use == before || GetParam().name == kOffset) return reached;
    const long again = blocks_in_use;
    RunFailing(n, lasting);
    EXPECT_EQ(blocks_in_use, again) << "allocation " << n << " leaks";
    return reached;
  }

  Files before_;
  Files aim_;
};

TEST_P(ShortOfMemory, OnceLosesNothing) {
  for (long n = 0; RunWithoutLeak(n, false) && !HasFailure(); ++n) {
  }
}

TEST_P(ShortOfMemory, ForEverAfterLosesNothing) {
  for (long n = 0; RunWithoutLeak(n, true) && !HasFailure(); ++n) {
  }
}

INSTANTIATE_TEST_SUITE_P(OnDisk, ShortOfMemory, testing::ValuesIn(kOperations),
                         row_name<Operation>);
INSTANTIATE_TEST_SUITE_P(Elsewhere, ShortOfMemory, testing::ValuesIn(kMoreCalls),
                         row_name<Operation>);

}  // namespace
}  // namespace tooldb

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
  const long number = std::atomic_ref(shortage.passed)++;  // readers share the work
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

void write_document(World& world) {
  static_cast<const tdbToolDB&>(world.db).WriteXml(world.text, {});
}

void take_tool_file(World& world) { world.TakePath("lib/T1.ktf"); }

/// A tool with a body, so that there is something to draw.
void make_mill(World& world) {
  world.made = std::make_unique<tdbTool>("MILL", "a tool with a name that is allocated");
  world.cutter = new tdbToolCutter(0);
  world.made->AddCutter(world.cutter);
  world.made->AddParam("VENDOR", "a vendor with a name of some length");
}

/// Clipper, which makes offsets, loses a block when it finds no memory for the next.
constexpr std::string_view kOffset = "Offset";

/// A call that has an answer for want of memory too.
template <auto kCall>
bool always(World& world) {
  kCall(world);
  return true;
}

/// Calls besides those of the databases on the disk; none of them changes a file.
constexpr Operation kMoreCalls[] = {
    {"ImportFromXml", Need::kWrite, write_document,
     [](World& w) { return w.db.ImportFromXml(w.text.c_str(), {}); }},
    {"Sort", Need::kRead, nothing, always<[](World& w) { w.db.Sort(0, true); }>},
    {"WriteDocument", Need::kRead, nothing, always<[](World& w) { write_document(w); }>},
    {"ReaderImport", Need::kRead, write_document,
     [](World& w) {
       std::vector<tdbTool*> tools;
       const bool read = tdbXmlReader::ImportFromXml(w.text.c_str(), {}, tools, w.error, nullptr);
       for (const tdbTool* tool : tools) delete tool;
       return w.FilledError(read);
     }},
    {"ReadToolFile", Need::kRead, take_tool_file,
     [](World& w) {
       return w.FilledError(owned(tdbXmlReader::ReadTool(w.path.c_str(), {}, w.error, nullptr)));
     }},
    {"IsToolFile", Need::kRead, take_tool_file,
     always<[](World& w) { tdbXmlReader::IsTalvikToolFile(w.path.c_str()); }>},
    {"TemporaryTool", Need::kWrite, nothing,
     [](World& w) { return tdbAddTempMillTool(&w.db, "T4") != nullptr; }},
    {"Components", Need::kRead, [](World& w) { w.TakePath("out"); },
     [](World& w) {
       return w.components.Create(std::move(w.path)) &&
              w.components.ImportFromXml("<TOOLDB/>", {}) && w.components.Reload({});
     }},
    {"Outline", Need::kRead, make_mill, always<[](World& w) {
       w.cutter->BuildProfile();
       std::vector<std::vector<Point2d<double>>> contours;
       w.cutter->GetProfile(nullptr, contours, 0.1, 0);
       tdbProfile::HilightCuttingProfile(*w.cutter, 0.1, contours);
     }>},
    {"Mesh", Need::kRead, make_mill, always<[](World& w) {
       std::vector<Triangle<double>> triangles;
       w.cutter->GetShape(nullptr, triangles, 0.1);
       tdbProfile::GetAssemblyShape(*w.made, nullptr, triangles, 0.1);
       tdbProfile::GetSectionShape(*w.made, nullptr, triangles, 0.1);
       std::vector<Point2d<double>> points;
       tdbProfile::ExtractProfile(triangles, points, 0.1F);
       tdbStlText(triangles, "mill");
       tdbStlBinary(triangles);
     }>},
    {"Shape", Need::kRead, make_mill, always<[](World& w) {
       bool empty = false;
       kinShape* const shape =
           w.cutter->CreateShape(tdbDefaultSceneManager(), 0.1, false, 0, &empty, 0);
       if (shape != nullptr) shape->Release();
     }>},
    {"Questions", Need::kRead, make_mill, always<[](World& w) {
       tdbProfile::OutlineError(*w.cutter);
       tdbProfile::GetDimensions(*w.cutter);
       tdbGetTypeName(*w.cutter);
       tdbGetTypeNames(*w.cutter);
       tdbGetTypeByName(*w.cutter, "no such type");
     }>},
    {"Makers", Need::kRead, make_mill, always<[](World& w) {
       static tdbToolShank shank(0);
       tdbMakeAptMillCutter(w.cutter, 10, 1, 4, 1, 0, 0, 20);
       tdbMakeAptMillShank(&shank, 10, 20);
     }>},
    {"Insert", Need::kRead, nothing, always<[](World& w) {
       tdbProfile::CreateInsertProfile({.inscribedCircle = 12.7, .cornerRadius = 0.8}, w.text);
     }>},
    {kOffset, Need::kRead, nothing, always<[](World&) {
       static const std::vector<Point2d<double>> square{{0, 0}, {10, 0}, {10, 10}, {0, 10}};
       tdbProfile::OffsetProfile2(square, 1);
     }>},
};

class ShortOfMemory : public Disturbed {
 protected:
  /// Runs the operation with the n-th allocation failing; false once there are fewer.
  bool RunFailing(long n, bool lasting) {
    SCOPED_TRACE("allocation " + std::to_string(n));
    FaultyFileSystem disk;  // of which nothing fails: it spares the flushes
    const ScopedFileSystem use(disk);
    World world;
    GetParam().prepare(world);
    shortage = {.inside = true, .lasting = lasting, .passed = 0, .fails = n};
    bool done = false;
    bool raised = true;
    try {
      done = GetParam().call(world);
      raised = false;
    } catch (...) {
    }
    const bool reached = shortage.passed > n;
    shortage = {};
    EXPECT_FALSE(raised);
    ExpectNothingLost(world, done);
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
};

TEST_P(ShortOfMemory, LosesNothing) {
  for (const bool lasting : {false, true}) {
    for (long n = 0; RunWithoutLeak(n, lasting) && !HasFailure(); ++n) {
    }
  }
}

INSTANTIATE_TEST_SUITE_P(OnDisk, ShortOfMemory, testing::ValuesIn(kOperations),
                         row_name<Operation>);
INSTANTIATE_TEST_SUITE_P(Elsewhere, ShortOfMemory, testing::ValuesIn(kMoreCalls),
                         row_name<Operation>);

}  // namespace
}  // namespace tooldb

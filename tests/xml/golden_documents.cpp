#include "tests/xml/golden_documents.h"

#include <limits>

#include "geom/euler_angles.h"
#include "tooldb/model/type_tables.h"
#include "tooldb/xml/document.h"
#include "tooldb/xml_reader.h"

namespace tooldb {
namespace {

constexpr char kContour[] =
    " <LINE><START>0 0</START><END>5 0</END></LINE>"
    "<ARC DIR=\"CW\" ><START>5 0</START><END>0 5</END><CENTER>0 0</CENTER></ARC>\n";

// Numbers that tax the formats, one after the other.
double number_of(int i) {
  using Limits = std::numeric_limits<double>;
  constexpr double kNumbers[] = {0.1,    -0.0,  1e21,          123456.5, 1234567,
                                 5e-324, -1e-7, Limits::max(), 1.0 / 3,  99999.95};
  return kNumbers[i % 10];
}

// The i-th part of a document, with something of everything that its element can say.
template <class Part>
std::unique_ptr<Part> part(int i, int type, const std::string& name) {
  auto p = std::make_unique<Part>(type);
  p->SetName(name);
  p->SetPos(join_zyx({i * 30.0, i * 15.0, i * 7.5}, {number_of(i), i * 0.5, -i * 1.0}));
  p->SetShapePos(join_zyx({i * -90.0, 0, i * 90.0}, {0, number_of(i + 1), 0}));
  p->RemoveParams();
  p->SetParam("HEIGHT", std::to_string(i).c_str());
  p->SetParam("EMPTY", "");
  p->SetProfileXml(kContour);
  p->SetShapeFilePath(i % 2 != 0 ? " /lib/shapes/sub/a b.stl " : "C:\\elsewhere\\b.stl");
  p->SetFileOptions(" tolerance 0.1 ");
  p->SetFileUnits(i % 2);
  p->SetMaterial({0.1F * static_cast<float>(i), 1, 0, 0.5F, "map " + name + ".jpg"});
  p->SetInterferenceSettings({i % 3 == 0, i % 2, number_of(i)});
  return p;
}

// Hangs a new part on `parent`; borrowed.
template <class Part>
Part* hang(tdbCompositeItem& parent, int i, int type, const std::string& name) {
  Part* p = part<Part>(i, type, name).release();
  parent.AddItem(p);
  return p;
}

template <class Part, const auto& types>
std::string every_type() {
  tdbTool tool("T", "One of each");
  int i = 0;
  for (const TypeName& type : types) hang<Part>(tool, i++, type.code, std::string(type.name));
  // Types that say one or the other, or both, and codes that no type has.
  for (const int type : {-1, 2, 3, 5, 15, 99}) {
    hang<Part>(tool, i++, type, "without a profile")->SetProfileXml(" ");
    hang<Part>(tool, i++, type, "without a model file")->SetShapeFilePath(" ");
  }
  return xml_of(tool, kGoldenPaths);
}

std::string every_cutting_tool() {
  tdbTool tool("T", "One of each");
  for (int type = 0; type <= 27; ++type) {
    auto* group = hang<tdbCuttingTool>(tool, type, type, "group " + std::to_string(type));
    if (type % 9 != 0) continue;
    hang<tdbToolCutter>(*group, type, 14, "cutter")
        ->SetProfileCSys(join_zyx({0, 90, 0}, {0, 0, 1}));
    hang<tdbToolHolder>(*hang<tdbToolShank>(*group, type, 4, "shank"), type, 0, "on the shank");
  }
  return xml_of(tool, kGoldenPaths);
}

std::string tools() {
  std::string text;
  append_document_header(text, 7);
  int i = 0;
  for (const int type : {0, 3, 4, 8, 9}) {
    const bool odd = ++i % 2 != 0;
    tdbTool tool("T", type);
    tool.SetName("type " + std::to_string(type));
    tool.SetFlags(1);  // temporary, which is not written
    tool.SetSubType(type);
    tool.SetUnitOfMeasurement(i % 3);
    tool.SetOffset(number_of(i), number_of(i + 1), number_of(i + 2));
    tool.SetDiameter(number_of(i + 3));
    tool.SetToolModelTolerance(number_of(i + 4));
    tool.SetTraceColor(type);
    tool.SetAutoColor(odd);
    tool.SetAutoTcp(odd);
    tool.EnableSection(odd);
    tool.SetSectionStartAngle(12.5);
    tool.SetSectionSpanAngle(0.1);
    tool.SetCutterExtensionEnabled(odd);
    tool.SetCutterExtensionValue(0.3);
    tool.SetCutterExtensionStep(0.25);
    tool.SetCutterExtensionMax(2);
    tool.SetPos(join_zyx({0, 90, i * 10.0}, {1, 2, 3}));
    tool.SetParam("Z", "of the item");
    for (const char* value : {"of the item", "of the list", ""}) tool.AddParam("Z", value);
    tool.AddOffsetParam({type, number_of(2), number_of(5), number_of(8), -0.5, -2, true});
    tool.AddOffsetParam({8});
    tool.WriteXml(text, kGoldenPaths);
  }
  append_document_footer(text);
  return text;
}

std::string texts() {
  tdbTool tool("T", "Fräser 3° – ½");
  tool.SetDescr(" one blank before, CRLF\r\nand 'quotes'; 100 % > 99 % ");
  tool.SetComment("\n\t ");
  tool.AddParam("a b", " ");
  tool.AddParam("a b", "second of the name");
  tool.AddParam("", "nameless");
  auto* holder = hang<tdbToolHolder>(tool, 1, 2, "半径");
  holder->SetParam("NOTE", "two\nlines\r\n");
  holder->SetParam("BLANK", "  ");
  return xml_of(tool, kGoldenPaths);
}

// Names that come twice, parts below members of a used component, an angle head that vanishes.
std::string assembly() {
  tdbTool tool("T", "Assembly");
  auto* link = hang<tdbFixedLink>(tool, 1, 7, "same");
  auto* holder = hang<tdbToolHolder>(*link, 2, 1, "same");
  auto* cutting = hang<tdbCuttingTool>(*holder, 3, 4, "cutting");
  hang<tdbToolCutter>(*cutting, 4, 3, "same");
  hang<tdbToolShank>(*cutting, 5, 1, "same");
  hang<tdbToolHolder>(*link, 6, 0, "back on the first");
  auto* use = golden_use().release();
  holder->AddItem(use);
  use->SetName("used");
  use->SetVersion(3);
  use->SetPos(join_zyx({0, 90, 30}, {1, 2, 3}));
  auto* member = dynamic_cast<tdbCompositeItem*>(use->GetItem(0));
  hang<tdbToolHolder>(*member, 7, 0, "on a member");
  hang<tdbToolHolder>(*use, 8, 0, "on the use");
  hang<tdbToolAngleHead>(tool, 9, 2, "head");
  return xml_of(tool, kGoldenPaths);
}

std::unique_ptr<tdbToolComponent> definition(const std::string& name) {
  auto component = std::make_unique<tdbToolComponent>(0, name, name);
  component->SetVersion(2);
  auto* inner = new tdbToolComponent(0, "inner", "");
  hang<tdbToolHolder>(*component, 1, 2, "nose")->AddItem(inner);
  auto* cutting = hang<tdbCuttingTool>(*inner, 2, 10, "drill");
  hang<tdbToolCutter>(*cutting, 3, 4, "point");
  hang<tdbFixedLink>(*inner, 4, 0, "end");
  component->Visit([](void*, tdbItem* item) { item->SetItemComponent(true); }, nullptr);
  hang<tdbToolHolder>(*component, 5, 0, "no member");
  return component;
}

std::string component() { return xml_of(*definition("K"), kGoldenPaths); }

std::string components() {
  std::string text;
  append_document_header(text, 0);
  for (const char* name : {"first", "second"}) definition(name)->WriteXml(text, kGoldenPaths);
  append_document_footer(text);
  return text;
}

template <class Conditions>
void set_shared(Conditions& c) {
  c.SetVersion(-1);
  c.SetApproachAngle(45.5);
  c.SetAp(number_of(8));
  c.SetStepSizeOfSampling(0.01);
  c.SetEnableDataRecording(true);
  c.SetNumberOfSamplesToCalcAvg(17);
  c.SetOptimizationCriteria(2);
  c.SetVerifyAp(true);
  c.GetVerifyFeed().Ini(true, 1.5, 2.5);
  c.GetVerifySpindle().Ini(true, -3, number_of(7));
  c.GetVerifyVolumeRate().Ini(true, 5, 6);
  c.GetVerifyChipThickness().Ini(true, 7, 8);
  c.GetVerifyPower().Ini(true, 9, 10);
  c.GetOptimVolumeRate().Ini(true, 11, false, 12);
  c.GetOptimChipThickness().Ini(false, 13, true, 14);
  c.GetOptimPower().Ini(true, 15, true, 1e-7);
  c.SetAirCutFeed(17);
  c.SetInCutFeedLimit(18);
  c.SetMaxProgrammedFeed(19);
  c.SetMinProgrammedFeed(20);
}

std::string milling_conditions() {
  tdbTool tool("T", 0);
  tdbCutCond& c = tool.GetCutCond();
  set_shared(c);
  c.SetNumberOfInsert(6);
  c.SetRakeAngle(-7);
  c.SetDc(21);
  c.SetDi(22);
  c.SetSectorHeigth(0.01);
  c.SetSectorAngle(45);
  c.SetSamplesOffset(0.5);
  c.GetVerifyTorque().Ini(true, 23, 24);
  c.SetVerifyPenetrationAngle(true);
  c.SetMaxPenetrationAngle(25);
  c.GetOptimTorque().Ini(false, 26, true, 27);
  return xml_of(tool);
}

std::string turning_conditions() {
  tdbTool tool("T", 3);
  tdbTurningCutCond& c = tool.GetTurningCutCond();
  set_shared(c);
  c.SetCornerRadius(0.4);
  c.GetVerifyChipSection().Ini(true, 28, 29);
  c.GetVerifyChipWidth().Ini(true, 30, 31);
  c.GetVerifyRoughnessDepth().Ini(true, 32, 33);
  c.GetOptimChipSection().Ini(true, 34, false, 35);
  c.GetOptimChipWidth().Ini(false, 36, true, 37);
  c.GetOptimRoughnessDepth().Ini(true, 38, true, 39);
  return xml_of(tool);
}

template <int type>
std::string new_tool() {
  return xml_of(tdbTool("T", type));
}

template <class Part>
std::string rewritten(const std::string& text) {
  std::vector<Part*> read;
  tdbError error;
  const bool all_read =
      tdbXmlReader::ImportFromXml(text.c_str(), kGoldenPaths, read, error, &golden_components());
  const std::vector<std::unique_ptr<Part>> parts(read.begin(), read.end());
  if (!all_read) throw error;
  const bool whole = text.starts_with("<?xml");
  std::string out;
  if (whole) append_document_header(out, std::is_same_v<Part, tdbTool> ? 7 : 0);
  for (const auto& part : parts) part->WriteXml(out, kGoldenPaths);
  if (whole) append_document_footer(out);
  return out;
}

}  // namespace

const std::vector<std::string> kGoldenPaths = {"/lib/shapes"};

const std::vector<GoldenDocument> kGoldenDocuments = {
    {"new_milling_tool", new_tool<0>, rewritten<tdbTool>},
    {"new_turning_tool", new_tool<3>, rewritten<tdbTool>},
    {"milling_conditions", milling_conditions, rewritten<tdbTool>},
    {"turning_conditions", turning_conditions, rewritten<tdbTool>},
    {"tools", tools, rewritten<tdbTool>},
    {"every_cutter", every_type<tdbToolCutter, kCutterTypes>, rewritten<tdbTool>},
    {"every_shank", every_type<tdbToolShank, kShankTypes>, rewritten<tdbTool>},
    {"every_holder", every_type<tdbToolHolder, kHolderTypes>, rewritten<tdbTool>},
    {"every_cutting_tool", every_cutting_tool, rewritten<tdbTool>},
    {"texts", texts, rewritten<tdbTool>},
    {"assembly", assembly, rewritten<tdbTool>},
    {"component", component, rewritten<tdbToolComponent>},
    {"components", components, rewritten<tdbToolComponent>},
};

tdbToolComponentsDB& golden_components() {
  static const std::unique_ptr<tdbToolComponentsDB> kComponents = [] {
    auto db = std::make_unique<tdbToolComponentsDB>("golden", 1);
    auto component = std::make_unique<tdbToolComponent>(0, "library", "K-1");
    hang<tdbToolHolder>(*hang<tdbFixedLink>(*component, 1, 0, "link"), 2, 1, "holder");
    db->AddTool(component.release(), false);
    return db;
  }();
  return *kComponents;
}

std::unique_ptr<tdbToolComponent> golden_use() {
  auto use = std::make_unique<tdbToolComponent>(0, "", "K-1");
  use->AddItem(golden_components().GetToolComponent(0, 1)->GetItem(0)->Clone());
  return use;
}

}  // namespace tooldb

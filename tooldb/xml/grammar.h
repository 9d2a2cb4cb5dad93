#pragma once

#include <string_view>

/// @file
/// Names of the elements and attributes of tool documents, for writer and reader alike. Odd
/// spellings are the format's own.

namespace tooldb {

namespace tag {
inline constexpr std::string_view kRoot = "TOOLDB";
inline constexpr std::string_view kTool = "TOOL";
inline constexpr std::string_view kToolComponent = "TOOLCOMPONENT";
inline constexpr std::string_view kCuttingTool = "CUTTINGTOOL";
inline constexpr std::string_view kCutter = "CUTTER";
inline constexpr std::string_view kShank = "SHANK";
inline constexpr std::string_view kHolder = "HOLDER";
inline constexpr std::string_view kFixedLink = "FIXEDLINK";
inline constexpr std::string_view kAngleHead = "ANGLEHEAD";  // read only

inline constexpr std::string_view kDescription = "DESCR";
inline constexpr std::string_view kComment = "COMMENT";
inline constexpr std::string_view kParameter = "PARAM";
inline constexpr std::string_view kOffset = "OFFSET_PARAM";
inline constexpr std::string_view kLengthOption = "TOOL_LENGHT_OPT";

inline constexpr std::string_view kFile = "FILE";
inline constexpr std::string_view kFileOptions = "FILE_OPTIONS";
inline constexpr std::string_view kProfile = "PROFILE";
inline constexpr std::string_view kColor = "COLOR";
inline constexpr std::string_view kProfilePose = "T_PROFILE";
inline constexpr std::string_view kShapePose = "SHAPE_POSE";
inline constexpr std::string_view kTranslation = "TRANS";
inline constexpr std::string_view kRotation = "ROT";

// Older layouts, read only.
inline constexpr std::string_view kTransformation = "TRANSFORMATION";
inline constexpr std::string_view kQuaternion = "QUAT";
inline constexpr std::string_view kAlpha = "ALPHA";
inline constexpr std::string_view kBeta = "BETA";
inline constexpr std::string_view kComponentCode = "COMPONENT_CODE";

inline constexpr std::string_view kConditions = "CUTCOND";
inline constexpr std::string_view kConditionParameters = "CUTCOND_PARAMS";
inline constexpr std::string_view kVerification = "VERIFY_CUTCOND";
inline constexpr std::string_view kOptimization = "OPTIMIZE_CUTCOND";
}  // namespace tag

namespace att {
inline constexpr std::string_view kVersion = "VER";
inline constexpr std::string_view kName = "NAME";
inline constexpr std::string_view kCode = "CODE";
inline constexpr std::string_view kId = "ID";  // CODE before version 4
inline constexpr std::string_view kParent = "PARENT";
inline constexpr std::string_view kType = "TYPE";
inline constexpr std::string_view kPosX = "POSX";
inline constexpr std::string_view kPosY = "POSY";
inline constexpr std::string_view kPosZ = "POSZ";
inline constexpr std::string_view kRotZ = "RZ";
inline constexpr std::string_view kRotY = "RY";
inline constexpr std::string_view kRotX = "RX";
inline constexpr std::string_view kSpinning = "ENSPIN";
inline constexpr std::string_view kUnit = "UNIT";
inline constexpr std::string_view kEnvironmentMap = "ENVMAP";
inline constexpr std::string_view kTransparency = "TRANSPARENCY";
inline constexpr std::string_view kInterferenceInherit = "INTERF_INH";
inline constexpr std::string_view kInterferenceType = "INTERF_TYPE";
inline constexpr std::string_view kInterferenceValue = "INTERF_VAL";

inline constexpr std::string_view kLength = "LENGTH";  // older files, read only
inline constexpr std::string_view kTemporary = "TEMP";
inline constexpr std::string_view kExtensionValue = "OPT_OFFSET";
inline constexpr std::string_view kOffsetX = "OFFSETX";
inline constexpr std::string_view kOffsetY = "OFFSETY";
inline constexpr std::string_view kOffsetZ = "OFFSETZ";
inline constexpr std::string_view kDiameter = "DIAMETER";
inline constexpr std::string_view kTolerance = "TOLERANCE";
inline constexpr std::string_view kTraceColor = "TRACECOLOR";
inline constexpr std::string_view kAutoTraceColor = "AUTOTRACECOLOR";
inline constexpr std::string_view kUnits = "UNITS";
inline constexpr std::string_view kCutterType = "CUTTER_TYPE";
inline constexpr std::string_view kAutoTcp = "AUTO_TCP";
inline constexpr std::string_view kSection = "SEC";
inline constexpr std::string_view kSectionStart = "SEC_START";
inline constexpr std::string_view kSectionSpan = "SEC_SPAN";

inline constexpr std::string_view kStep = "STEP";
inline constexpr std::string_view kNumber = "NUM";
inline constexpr std::string_view kDx = "DX";
inline constexpr std::string_view kDy = "DY";
inline constexpr std::string_view kDz = "DZ";
inline constexpr std::string_view kRadius = "RAD";
inline constexpr std::string_view kPosition = "POS";
inline constexpr std::string_view kAbsolute = "ABS";

inline constexpr std::string_view kEnable = "ENABLE";
inline constexpr std::string_view kMin = "MIN";
inline constexpr std::string_view kMax = "MAX";
inline constexpr std::string_view kAverage = "AVERAGE";
inline constexpr std::string_view kEnableOptimization = "ENABLE_OPT";
inline constexpr std::string_view kOptimal = "OPTIMAL";
inline constexpr std::string_view kLimit = "LIMIT";
inline constexpr std::string_view kSampleCount = "NUMBER_OF_SAMPLES";
}  // namespace att

/// Cutting data of the conditions.
namespace data {
inline constexpr std::string_view kNumberOfInserts = "NUMBER_OF_INSERT";
inline constexpr std::string_view kRakeAngle = "RAKE_ANGLE";
inline constexpr std::string_view kApproachAngle = "APPROACH_ANGLE";
inline constexpr std::string_view kCornerRadius = "CORNER_RADIUS";
inline constexpr std::string_view kDc = "DC";
inline constexpr std::string_view kDi = "DI";
inline constexpr std::string_view kAp = "AP";
inline constexpr std::string_view kLinearTolerance = "TOOL_MODEL_ACCURACY_LINEAR_TOL";
inline constexpr std::string_view kAngularTolerance = "TOOL_MODEL_ACCURACY_ANGULAR_TOL";
inline constexpr std::string_view kAccuracyLevel = "TOOL_MODEL_ACCURACY";  // read only
inline constexpr std::string_view kSamplesOffset = "SAMPLES_OFFSET";
inline constexpr std::string_view kSamplingStep = "STEP_SIZE_OF_SAMPLING";
inline constexpr std::string_view kRecording = "DATA_REC";
}  // namespace data

namespace verify {
inline constexpr std::string_view kAp = "VERIFY_AP";
inline constexpr std::string_view kChipThickness = "VERIFY_CHIP_THICKNESS";
inline constexpr std::string_view kChipWidth = "VERIFY_CHIP_WIDTH";
inline constexpr std::string_view kChipSection = "VERIFY_CHIP_SECTION";
inline constexpr std::string_view kFeed = "VERIFY_FEED";
inline constexpr std::string_view kSpindle = "VERIFY_SPINDLE";
inline constexpr std::string_view kPower = "VERIFY_POWER";
inline constexpr std::string_view kTorque = "VERIFY_TORQUE";
inline constexpr std::string_view kRoughnessDepth = "VERIFY_ROUGHNESS_DEPTH";
inline constexpr std::string_view kVolumeRate = "VERIFY_VOLUME_RATE";
inline constexpr std::string_view kPenetrationAngle = "VERIFY_PENETRATION_ANGLE";
}  // namespace verify

namespace optimize {
inline constexpr std::string_view kCriterion = "OPTIMIZATION_CRITERION";
inline constexpr std::string_view kChipThickness = "OPTIMIZE_CHIP_THICKNESS";
inline constexpr std::string_view kChipWidth = "OPTIMIZE_CHIP_WIDTH";
inline constexpr std::string_view kChipSection = "OPTIMIZE_CHIP_SECTION";
inline constexpr std::string_view kAirCutFeed = "OPTIMIZE_FEED_AIRCUT";
inline constexpr std::string_view kInCutFeed = "OPTIMIZE_FEED_INCUT";
inline constexpr std::string_view kMaxProgrammedFeed = "OPTIMIZE_FEED_MAX_FEED_PROGRAMMED";
inline constexpr std::string_view kMinProgrammedFeed = "OPTIMIZE_FEED_MIN_FEED_PROGRAMMED";
inline constexpr std::string_view kSafeDistance = "OPTIMIZE_SAFE_DISTANCE_FEED_AIRCUT";
inline constexpr std::string_view kPower = "OPTIMIZE_POWER";
inline constexpr std::string_view kTorque = "OPTIMIZE_TORQUE";
inline constexpr std::string_view kRoughnessDepth = "OPTIMIZE_ROUGHNESS_DEPTH";
inline constexpr std::string_view kVolumeRate = "OPTIMIZE_VOLUME_RATE";
}  // namespace optimize

/// Values of attributes and texts.
namespace word {
inline constexpr std::string_view kTrue = "TRUE";
inline constexpr std::string_view kFalse = "FALSE";
inline constexpr std::string_view kMillimetres = "MM";
inline constexpr std::string_view kInches = "INCHES";
inline constexpr std::string_view kNearMiss = "NEAR_MISS";
inline constexpr std::string_view kAllowedInterference = "ALLOWED_INTERF";
inline constexpr std::string_view kAngleOrder = "ZYX";

constexpr std::string_view flag(bool value) { return value ? kTrue : kFalse; }
constexpr std::string_view unit(int value) { return value == 0 ? kMillimetres : kInches; }
}  // namespace word

}  // namespace tooldb

#pragma once

#include <string>

#include "tooldb/export.h"

class tdbTool;
class tdbToolCutter;
class tdbToolDB;
class tdbToolShank;

/// @file
/// Ready-made tools, cutters and shanks from APT parameters, and the import filter of a host.

/// Adds a placeholder milling tool: flag 1, a cutter of type 5, a shank of type 2. Borrowed from
/// the database; null when it refuses the tool.
TDB_EXPORT tdbTool* tdbAddTempMillTool(tdbToolDB* db, std::string code);
/// Adds a placeholder turning tool: flag 1, a cutter of type 8, a shank of type 5, a holder of
/// type 4. Borrowed from the database; null when it refuses the tool.
TDB_EXPORT tdbTool* tdbAddTempTurnTool(tdbToolDB* db, std::string code);

/// Stores the outline of the seven-parameter APT cutter (ISO 4343) as the cutter's contour XML.
/// @param d      diameter: twice the distance from the axis to where lower and upper line meet
/// @param r      corner radius
/// @param e      distance of the corner's centre from the axis
/// @param f      height of the corner's centre above the tip
/// @param alpha  degrees of the lower line against the tip plane, 0..<90
/// @param beta   degrees of the upper line against the axis, positive when the tool widens upwards
/// @param h      height
/// @return false, and nothing changed, when a value is 1e8 (not given) or they make no outline
TDB_EXPORT bool tdbMakeAptMillCutter(tdbToolCutter* cutter, float d, float r, float e, float f,
                                     float alpha, float beta, float h);
/// Stores a cylinder as the shank's contour XML. False when a value is 1e8 (not given); true, and
/// nothing changed, when one is below 0.00001.
TDB_EXPORT bool tdbMakeAptMillShank(tdbToolShank* shank, float diameter, float height);
/// Stores the outline of a turning edge as the cutter's contour XML.
/// @param d      diameter of the nose circle
/// @param l      length of each cutting edge from the theoretical sharp point
/// @param angle  included angle, degrees
/// @param h      height of the body above the tip; 0: the ends of the edges are joined
TDB_EXPORT bool tdbMakeAptTurnCutter(tdbToolCutter* cutter, float d, float l, float angle, float h);
/// Does nothing and answers false.
TDB_EXPORT bool tdbMakeAptTurnShank(tdbToolShank* shank, float diameter, float height);

/// Passes `input` through the import filter, the first "*.tlf" library beside the host
/// executable. That folder becomes the process's current directory and stays it.
/// @param output  the filter's answer; emptied when it gives none; untouched without a filter
TDB_EXPORT bool tdbFilter(const char* input, std::string& output);
/// The filter's file-dialog text; empty without a filter. The current directory changes as above.
TDB_EXPORT std::string tdbGetFilterString();

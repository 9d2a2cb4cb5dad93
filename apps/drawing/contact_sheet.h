#pragma once

#include <string>
#include <vector>

namespace tooldb {

/// A drawing on the contact sheet.
struct ContactPicture {
  std::string file;  ///< of the drawing, relative to the sheet, with "/" between folders
  std::string code;
  std::string description;
};

/// A page that shows drawings side by side; each leads to its file.
std::string contact_sheet(const std::string& title, const std::vector<ContactPicture>& pictures);

}  // namespace tooldb

#include "apps/drawing/contact_sheet.h"

#include <fmt/format.h>

#include "apps/display_text.h"
#include "apps/drawing/svg_sheet.h"

namespace tooldb {
namespace {

constexpr std::string_view kHead = R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<title>{0}</title>
<style>
:root {{ color-scheme: light dark; }}
body {{ font: 15px sans-serif; margin: 1.5em; background: Canvas; color: CanvasText; }}
main {{ display: grid; grid-template-columns: repeat(auto-fill, minmax(15em, 1fr)); gap: 1em; }}
a {{ color: inherit; text-decoration: none; }}
figure {{ margin: 0; }}
img {{ width: 100%; aspect-ratio: 1 / 1.2; object-fit: contain; border: 1px solid #8888; }}
figcaption {{ margin-top: 0.3em; overflow-wrap: anywhere; }}
</style>
</head>
<body>
<h1>{0}</h1>
<p>{1}</p>
<main>
)html";

// A path as an address: what means something there is written by its number.
std::string address(std::string_view path) {
  std::string out;
  for (const char c : path) {
    const bool is_plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                          (c >= '0' && c <= '9') ||
                          std::string_view("-._~/").find(c) != std::string_view::npos;
    out += is_plain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
  }
  return out;
}

}  // namespace

std::string contact_sheet(const std::string& title, const std::vector<ContactPicture>& pictures) {
  std::string page = fmt::format(kHead, xml_escaped(title), counted(pictures.size(), "drawing"));
  for (const ContactPicture& picture : pictures) {
    page += fmt::format(
        "<a href=\"{0}\"><figure><img src=\"{0}\" alt=\"\" loading=\"lazy\">"
        "<figcaption><b>{1}</b> {2}</figcaption></figure></a>\n",
        address(picture.file), xml_escaped(picture.code), xml_escaped(picture.description));
  }
  return page + "</main>\n</body>\n</html>\n";
}

}  // namespace tooldb

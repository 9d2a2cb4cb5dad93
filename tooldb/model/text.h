#pragma once

#include <string>
#include <string_view>

/// @file
/// Text rules of names and codes: ASCII only, the same in every locale.

class tdbItem;

namespace tooldb {

inline constexpr std::string_view kBlanks = " \t\n\v\f\r";
inline constexpr std::string_view kToolFileExtension = ".ktf";
inline constexpr std::string_view kComponentFileExtension = ".ktcf";

constexpr bool is_blank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
constexpr char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; }
constexpr char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }
std::string upper_text(std::string_view text);
std::string_view trimmed(std::string_view text, std::string_view blanks = kBlanks);

/// The characters that file names cannot have.
inline constexpr std::string_view kForbiddenInFileNames = "\\/:*?\"<>|";
/// The code with each forbidden character as "{{", its number, "}}".
std::string encoded_code(std::string_view code);
/// The inverse: each "{{", one to three digits, "}}" becomes the character of that number.
std::string decoded_code(const std::string& file_name);
/// The code as lists of tools compare it: trimmed of blanks, in upper case.
std::string comparable_code(std::string_view code);

/// The names from the root down to `item`, each after a backslash.
std::string parent_chain(const tdbItem& item);

}  // namespace tooldb

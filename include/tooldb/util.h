#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tooldb/error.h"
#include "tooldb/export.h"

class tdbItem;

/// Texts, codes and visitors of item trees.
class TDB_EXPORT tdbUtil {
 public:
  /// File-name-safe form of a code: each of \ / : * ? " < > | becomes "{{", its number, "}}".
  /// Braces are not escaped: "A/B" and "A{{47}}B" share one file name.
  static std::string encoding_code(std::string code);
  /// The inverse: "{{", one to three digits, "}}" becomes the character of that number.
  static std::string decoding_code(std::string name);
  static std::string replace_not_windows_char_code(std::string text);
  static std::string replace_not_windows_char_with_str(std::string text, const std::string& with);
  /// False when the text holds one of the nine characters above.
  static bool is_valid_windows_string(std::string text);
  static std::string generate_random_string(int length, std::string alphabet);
  static std::string trim_left(const std::string& text, const std::string& chars);
  static std::string trim_right(const std::string& text, const std::string& chars);
  /// In place; ASCII letters only, whatever the locale.
  static void to_upper(std::string& text);
  /// Appends the names of the item and its parents, the nearest last, each after a backslash.
  static void build_parent_string(tdbItem* item, std::string& out);
  /// True when the item or one of its parents is a `tdbToolComponent`.
  static bool component_is_nested_to_component(tdbItem* item);

  /// Visitors for `tdbItem::Visit`; `flag` points to a bool.
  static void set_item_component(void* flag, tdbItem* item);
  static void set_item_modified(void* flag, tdbItem* item);
  static void get_subtree_modifies(void* flag, tdbItem* item);
};

/// Files and folders. Paths are narrow texts. These are the only exported functions that raise:
/// those that say so throw `tdbError` with the path and the system's reason.
class TDB_EXPORT tdbFileUtil {
 public:
  static bool file_exists(const std::string& path);
  static bool directory_exists(const std::string& path);
  /// Raises.
  static void create_directory(const std::string& path);
  /// As `write_file` with the bytes of `from`; false on failure.
  static bool copy_file(const std::string& from, const std::string& to);
  /// Raises.
  static void remove_file(const std::string& path);
  /// Replaces a file `to`. Raises.
  static void rename_file(std::string from, std::string to);
  /// Replaces `text` by the file's bytes. Raises.
  static void read_file(const std::string& path, std::string& text);
  /// Writes `text` so that the path holds either the old file or the new one, whole. Raises.
  static void write_file(const std::string& path, const std::string& text);
  /// Replaces `out` by the names, without folder, of the folder's files with that extension, in
  /// byte order. Raises.
  static void get_files(const std::string& folder, std::vector<std::string>& out,
                        std::string extension);
  /// Raises.
  static int get_file_count(const std::string& folder, std::string extension);
  /// Seconds since 1970. Raises.
  static std::int64_t get_last_write_time(const std::string& path);
  /// The last part of a path, without its extension.
  static void get_file_name(const std::string& path, std::string& name);
  /// The extension of a path, with its dot; empty without one.
  static void get_file_extension(const std::string& path, std::string& extension);
  /// True when the path `file` leads into the folder `path` or below it; the disk is not asked.
  static bool path_contains_file(std::string& path, std::string& file);
  /// Tries to create a file in the folder; on failure the error's text is the folder.
  static bool is_directory_writable(std::string folder, tdbError& error);
  /// Deletes every file of the folder, but no folder. Raises after trying all.
  static void remove_all_file_into_directory(const std::string& folder);
  /// Moves every file of folder `from` into folder `to`, where its extension is `extension`. A file
  /// whose new name is taken there stays; the rest are moved, and the answer is false.
  static bool change_extension_file_to_folder(std::string from, std::string to,
                                              std::string extension, tdbError& error);
};

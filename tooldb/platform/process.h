#pragma once

#include <cstdint>
#include <string>

/// @file
/// The running program and its surroundings.

namespace tooldb {

/// Full path of the host's executable; raises `FileError` when the system does not tell.
std::string executable_path();

/// Makes `folder` the process's current directory; raises `FileError`.
void set_current_folder(const std::string& folder);

std::uint32_t process_id();
/// True when a process of that number runs on this machine.
bool is_process_running(std::uint32_t id);
/// Name of this machine; empty when it has none.
std::string host_name();

/// Seconds since 1970.
std::int64_t current_time();

}  // namespace tooldb

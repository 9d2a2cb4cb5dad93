#pragma once

/// @file
/// The numbers in error records.

namespace tooldb {

inline constexpr int kGeneralError = 1;
inline constexpr int kUnknownTypeError = 3;         ///< a document has a type name of no table
inline constexpr int kCodeExistsError = 19;         ///< a file of the code exists
inline constexpr int kComponentNotFoundError = 21;  ///< the components library has no such code
inline constexpr int kEmptyCodeError = 22;

}  // namespace tooldb

// Numbers of the messages about MIF files, in the string table, and the details that follow their texts.
#pragma once

#include <cstdint>
#include <string>

#include "platform/failure.h"

namespace kavo {

enum MifMessage : std::int32_t {
  kCannotWriteIndex = 3020,
  kNoIndexName = 3021,
  kCannotWriteXrefs = 3022,
  kNoXrefName = 3023,
  kCannotWriteVariables = 3024,
  kNoVariableName = 3025,
  kNoMifFile = 3026,
  kMifFileNotFound = 3027,
  kCannotReadMifFile = 3028,
  kCannotReadObjects = 3029,
  kCannotWriteObjects = 3030,
  kNoTemporaryFile = 3031,
  kCannotReplaceObjects = 3032,
  kIndexFull = 3033,
  kXrefsFull = 3034,
  kVariablesFull = 3035,
  kCannotReadIndex = 3036,
  kCannotReadXrefs = 3037,
  kCannotReadVariables = 3038,
  kEndsInObject = 3039,
  kHoldsPlaceholders = 3040,
  kCannotProcess = 3041,
  kStatementLeftOut = 3042,
  kSideFileIsSource = 3043,
  kTranslationDoesNotFit = 3044,
  kTwoOfOneTag = 3045,
  kObjectsMissing = 3046,
};

inline std::u16string described(std::u16string_view path, const failure& reason) {
  return std::u16string(path) + u" (" + reason.description() + u")";
}

}  // namespace kavo

#include "platform/failure.h"

#include <utility>

#include "platform/unicode.h"

namespace kavo {

failure::failure(FailureNumber number, std::u16string description, std::u16string source)
    : failure(static_cast<std::int32_t>(number), std::move(description), std::move(source)) {}

failure::failure(std::int32_t number, std::u16string description, std::u16string source)
    : number_(number), description_(std::move(description)), source_(std::move(source)), utf8_(to_utf8(description_)) {}

}  // namespace kavo

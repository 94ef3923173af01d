#pragma once

// The registry values that belong to the product.

#include <string>

namespace nhupdate_test {

[[nodiscard]] bool IsUnderWine();

// Deletes the product's keys.
void DeleteProductKeys();

// Everything below the product's keys: "key|name|type|byte count|data" lines, keys and names
// sorted; empty when there is none of the keys. Texts end at their terminator, if they have one.
[[nodiscard]] std::string DescribeProductKeys();

// How many bytes are stored for a text of so many UTF-16 units. Windows stores what it is given,
// which for this program is a text without its terminator; Wine adds one when a NUL follows.
[[nodiscard]] std::string StoredBytes(std::size_t units);

}  // namespace nhupdate_test

#pragma once

// The registry values that belong to the product.

#include <string>

namespace nhupdate_test {

[[nodiscard]] bool IsUnderWine();

// Deletes the product's keys.
void DeleteProductKeys();

// Everything below the product's keys: "key|name = data" lines, keys and names sorted, numbers
// without quotation marks and today's date as {today}; empty when there is none of the keys. Behind
// it stands what is unusual: another type, or another count of bytes than a text without its
// terminator has. (Wine adds a terminator when a NUL follows what it is given.)
[[nodiscard]] std::string DescribeProductKeys();

}  // namespace nhupdate_test

#pragma once

// The registry values that belong to the product.

#include <string>

namespace nhupdate_test {

// Deletes the product's keys.
void DeleteProductKeys();

// Everything below the product's keys: "key|name = data" lines, keys and names sorted, numbers
// without quotation marks and today's date as {today}; empty when there is none of the keys. Behind
// it stands what is unusual: another type, or another count of bytes than a text without its
// terminator has. (A terminator that follows what is counted is stored with it.)
[[nodiscard]] std::string DescribeProductKeys();

}  // namespace nhupdate_test

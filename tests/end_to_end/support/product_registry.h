#pragma once

// The registry values that belong to the product.

#include <string>

namespace nhupdate_test {

// Deletes the product's keys.
void DeleteProductKeys();

// Everything below the product's keys: "key|name = data" lines, keys and names sorted, numbers
// without quotation marks and the day of this run as {today}; empty when there is none of the keys.
// Behind the data stands what is unusual: another type, or another count of bytes than Windows
// stores for a text whose terminator isn't counted.
[[nodiscard]] std::string DescribeProductKeys();

}  // namespace nhupdate_test

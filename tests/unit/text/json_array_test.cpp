#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseArray;
using namespace std::string_view_literals;

TEST(ParseArrayTest, KeepsTheOrderOfTheText) {
  ExpectReadings(ParseArray,
                 {{LR"([])", 2, "[]"},
                  {LR"([3,1,2])", 7, "[3,1,2]"},
                  {LR"([1,1,1])", 7, "[1,1,1]"},
                  {LR"([True, FALSE, Null])", 19, "[true,false,null]"},
                  {LR"([1,2.5,"x",[],{},null])", 22, R"([1,real 2.5,"x",[],{},null])"}});
}

TEST(ParseArrayTest, NeedsNoCommas) {
  ExpectReadings(ParseArray, {{LR"([1 2 3])", 7, "[1,2,3]"},
                              {LR"(["a""b"])", 8, R"(["a","b"])"},
                              {LR"([[][]{}])", 8, "[[],[],{}]"},
                              {LR"([nulltrue])", 10, "[null,true]"},
                              {LR"([1-2+3])", 7, "[1,-2,3]"}});
}

TEST(ParseArrayTest, AcceptsOneCommaBehindAnElement) {
  ExpectReadings(ParseArray, {{LR"([1,2,])", 6, "[1,2]"},
                              {LR"([1,])", 4, "[1]"},
                              {LR"([,])", -2},
                              {LR"([,1])", -2},
                              {LR"([1,,2])", -4},
                              {LR"([1, ,2])", -5}});
}

TEST(ParseArrayTest, SkipsWhitespaceAroundElements) {
  ExpectReadings(ParseArray, {{L"[ ]", 3, "[]"},
                              {L"[ 1 , 2 ]", 9, "[1,2]"},
                              {L"[\r\n\t1\x01,\x1F]", 9, "[1]"},
                              {L"[1 ]x", 4, "[1]"}});
}

TEST(ParseArrayTest, ReadsALoneSignAsZero) {
  ExpectReadings(ParseArray,
                 {{LR"([-,1])", 5, "[0,1]"}, {LR"([+])", 3, "[0]"}, {LR"([--])", 4, "[0,0]"}});
}

TEST(ParseArrayTest, AddsTheMagnitudeOfAnElementsFailure) {
  ExpectReadings(ParseArray, {{LR"([x])", -2},
                              {LR"([  x])", -4},
                              {LR"([1.2.3])", -2},
                              {LR"([1e5])", -3},
                              {LR"([nullx])", -6},
                              {LR"([tru])", -2},
                              {LR"([1}])", -3},
                              {LR"([1,2,:])", -6},
                              {LR"(["]\)", -5},
                              {LR"([[1,x]])", -5},
                              {LR"([[[x]]])", -4},
                              {LR"([{"a":x}])", -6},
                              {LR"([{1}])", -2}});
}

TEST(ParseArrayTest, FailsAtTheEndOfTheText) {
  ExpectReadings(ParseArray, {{LR"([[])", -4},
                              {LR"(["]")", -5},
                              {LR"(["]" )", -6},
                              {LR"(["\])", -5},
                              {LR"([[],)", -5},
                              {LR"([[1])", -5}});
}

TEST(ParseArrayTest, NeedsSomeClosingBracketAhead) {
  ExpectReadingsWithin(ParseArray, {{LR"([)", 1, -1},
                                    {LR"([1,2)", 4, -1},
                                    {LR"([1,2])", 4, -1},
                                    {LR"([1,2}})", 6, -1},
                                    {LR"([[]])", 3, -4},
                                    {LR"(["]"])", 3, -4},
                                    {L"[1\0]"sv, 4, -1}});
}

TEST(ParseArrayTest, GivesNestedArraysTheSameRule) {
  ExpectReadings(ParseArray, {{LR"(["]"[)", -5},  // one ahead of the outer, none of the inner
                              {LR"([[]{)", -4},   // and no "}" for an object
                              {LR"(["]"{"a":1)", -5}});
}

TEST(ParseArrayTest, BeginsBehindItsFirstUnitWhateverThatIsAndEndsAtItsOwnBracket) {
  ExpectReadings(ParseArray, {{LR"(x1])", 3, "[1]"},
                              {LR"(]])", 2, "[]"},
                              {LR"(])", -2},
                              {LR"(x1)", -1},
                              {LR"([1]])", 3, "[1]"},
                              {LR"([[1],[2]]])", 9, "[[1],[2]]"}});
}

}  // namespace
}  // namespace nhupdate_test

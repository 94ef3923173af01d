#include "tests/unit/text/json_table.h"

namespace nhupdate_test {
namespace {

using nhupdate::ParseObject;
using namespace std::string_view_literals;

TEST(ParseObjectTest, ReadsMembersOfEveryKind) {
  ExpectReadings(ParseObject,
                 {{LR"({})", 2, "{}"},
                  {LR"({"a":1})", 7, R"({"a":1})"},
                  {LR"({"a":"x","b":null,"c":[{}]})", 27, R"({"a":"x","b":null,"c":[{}]})"},
                  {LR"({"a":{"b":{"c":-.5}}})", 21, R"({"a":{"b":{"c":real -0.5}}})"}});
}

TEST(ParseObjectTest, OrdersKeysUnitByUnit) {
  ExpectReadings(ParseObject,
                 {{LR"({"b":1,"a":2})", 13, R"({"a":2,"b":1})"},
                  {LR"({"aa":1,"a":2,"B":3,"":4})", 25, R"({"":4,"B":3,"a":2,"aa":1})"},
                  {L"{\"\xFFFD\":1,\"\xD83D\":2,\"\xE9\":3,\"z\":4}", 25,
                   R"({"z":4,"\u00E9":3,"\uD83D":2,"\uFFFD":1})"}});
}

TEST(ParseObjectTest, KeepsTheLaterOfTwoMembersWithTheSameKey) {
  ExpectReadings(ParseObject, {{LR"({"a":1,"a":2})", 13, R"({"a":2})"},
                               {LR"({"a":[1],"b":2,"a":{}})", 22, R"({"a":{},"b":2})"},
                               {LR"({"a":1,"\u0061":2,"A":3})", 24, R"({"A":3,"a":2})"}});
}

TEST(ParseObjectTest, NeedsNoCommas) {
  ExpectReadings(ParseObject, {{LR"({"a":1 "b":2})", 13, R"({"a":1,"b":2})"},
                               {LR"({"a":"x""b":"y"})", 16, R"({"a":"x","b":"y"})"},
                               {LR"({"a":[]"b":{}})", 14, R"({"a":[],"b":{}})"}});
}

TEST(ParseObjectTest, AcceptsOneCommaBehindAMember) {
  ExpectReadings(ParseObject, {
                                  {LR"({"a":1,})", 8, R"({"a":1})"},
                                  {LR"({,})", -1},
                                  {LR"({"a":1,,})", -7},
                                  {LR"({"a":1,,"b":2})", -9},  // the key "" and then no colon
                              });
}

TEST(ParseObjectTest, SkipsWhitespaceAroundKeysColonsAndMembers) {
  ExpectReadings(ParseObject, {{L"{ }", 3, "{}"},
                               {L"{ \"a\" : 1 , \"b\"\t:\n2 }", 21, R"({"a":1,"b":2})"},
                               {L"{\"a\"\x01:\x1F"
                                L"1\r\n}",
                                11, R"({"a":1})"}});
}

TEST(ParseObjectTest, NeverLooksAtTheFirstUnitOfAKey) {
  ExpectReadings(ParseObject, {{LR"({xa":1})", 7, R"({"a":1})"},
                               {LR"({'a":1})", 7, R"({"a":1})"},
                               {LR"({a":1})", 6, R"({"":1})"},
                               {LR"({,a":1})", 7, R"({"a":1})"},
                               {LR"({"a":1,xb:c":2})", 15, R"({"a":1,"b:c":2})"},
                               {LR"({,"a":1})", -3}});
}

TEST(ParseObjectTest, DecodesKeysLikeStrings) {
  ExpectReadings(ParseObject, {{LR"({"\u0041\n\\\"":1})", 18, R"({"A\u000A\\\"":1})"},
                               {LR"({"":1})", 6, R"({"":1})"},
                               {LR"({"a}:":1})", 9, R"({"a}:":1})"}});
}

TEST(ParseObjectTest, FailsWithWhatItReadBeforeABrokenKey) {
  ExpectReadings(ParseObject, {{LR"({1:2})", -1},  // no quote ahead
                               {LR"({  1:2})", -3},
                               {LR"({"a":1 b:2})", -7},
                               {LR"({"a":1]})", -6},
                               {LR"({"}\)", -1},  // cut off behind its backslash
                               {LR"({"a":1,"}\)", -7}});
}

TEST(ParseObjectTest, FailsWithTheKeyReadWhereNoColonFollows) {
  ExpectReadings(ParseObject, {{LR"({"a"})", -4},
                               {LR"({"a" 1})", -5},
                               {LR"({"a"  =1})", -6},
                               {LR"({"a}:1)", -6},  // the key runs to the end
                               {LR"({"a":1,"b"})", -10}});
}

TEST(ParseObjectTest, AddsNothingForAMembersFailure) {
  ExpectReadings(ParseObject, {{LR"({"a":})", -5},
                               {LR"({"a":  })", -7},
                               {LR"({"a":x})", -5},
                               {LR"({"a":1.2.3})", -5},
                               {LR"({"a":[1,x]})", -5},
                               {LR"({"a":[1,2})", -5},
                               {LR"({"a":{"b":x}})", -5},
                               {LR"({"a":{"b"}})", -5},
                               {LR"({"a":1,"b":"}\)", -11}});
}

TEST(ParseObjectTest, FailsAtTheEndOfTheText) {
  ExpectReadings(ParseObject, {{LR"({"}":1)", -5},
                               {LR"({"}":1,)", -7},
                               {LR"({"}":1 )", -7},
                               {LR"({"}")", -4},
                               {LR"({"}":)", -5},
                               {LR"({"a":{})", -7}});
}

TEST(ParseObjectTest, NeedsSomeClosingBracketAhead) {
  ExpectReadingsWithin(ParseObject, {{LR"({)", 1, -1},
                                     {LR"({"a":1)", 6, -1},
                                     {LR"({"a":1})", 6, -1},
                                     {LR"({"a":1]])", 8, -1},
                                     {LR"({"}":{"a":1)", 11, -5},  // one ahead of the outer only
                                     {L"{\"a\":1\0}"sv, 8, -1},
                                     {L"{}\0}"sv, 4, 2, "{}"}});
}

TEST(ParseObjectTest, NeverLooksAtTheFirstUnit) {
  ExpectReadings(
      ParseObject,
      {{LR"(x"a":1})", 7, R"({"a":1})"}, {LR"(}})", 2, "{}"}, {LR"(})", -1}, {LR"(x"a":1)", -1}});
}

}  // namespace
}  // namespace nhupdate_test

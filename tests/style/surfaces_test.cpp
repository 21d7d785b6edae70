#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "style/surfaces.h"
#include "stylewriter/stylewriter.h"

namespace {

using namespace ombrevale::stylewriter;
using ombrevale::surfaces::ReadSurfaces;

// Nine lists closed by 0 from the given tile numbers, one list a type from 2.
Bytes Lists(const std::vector<std::vector<int>>& lists) {
    Bytes out;
    for (const auto& l : lists) {
        for (int t : l) out = Cat({out, LE16(t)});
        out = Cat({out, LE16(0)});
    }
    return out;
}

struct SurfaceCase {
    std::string name;
    Bytes spec;
    std::vector<int> types;  // of tiles 0 to 5
    std::string problemHas;  // empty: sound
};

class ReadSurfacesTest : public ::testing::TestWithParam<SurfaceCase> {};

TEST_P(ReadSurfacesTest, TypesAsFarAsSound) {
    const auto& c = GetParam();
    const auto map = ReadSurfaces(c.spec, 6);
    EXPECT_EQ(std::vector<int>(map.type.begin(), map.type.end()), c.types);
    if (c.problemHas.empty())
        EXPECT_EQ(map.problem, "");
    else
        EXPECT_NE(map.problem.find(c.problemHas), std::string::npos) << map.problem;
}

const Bytes kNine = Lists({{1}, {2, 3}, {}, {}, {}, {}, {}, {4}, {5}});

INSTANTIATE_TEST_SUITE_P(
    Spec, ReadSurfacesTest,
    ::testing::Values(
        SurfaceCase{"Sound", kNine, {1, 2, 3, 3, 9, 10}, ""},
        SurfaceCase{"OddLength", Cat({kNine, Bytes{7}}), {1, 2, 3, 3, 9, 10}, "odd"},
        SurfaceCase{"ListWithoutItsZero",
                    Cat({LE16(1), LE16(0), LE16(2), LE16(3)}),
                    {1, 2, 3, 3, 1, 1},
                    "road has no closing 0"},
        SurfaceCase{"FewerLists", Lists({{1}, {2}}), {1, 2, 3, 1, 1, 1}, "after 2 of its 9"},
        SurfaceCase{"BeyondTheTiles",
                    Lists({{1, 6, 999}, {}, {}, {}, {}, {}, {}, {}, {5}}),
                    {1, 2, 1, 1, 1, 10},
                    "2 of its tile numbers are beyond the style's 6 tiles"},
        SurfaceCase{"BytesAfterTheNinth", Cat({kNine, LE16(4)}), {1, 2, 3, 3, 9, 10}, "2 bytes after its ninth"},
        SurfaceCase{"LaterListWins", Lists({{1}, {1}, {}, {}, {}, {}, {}, {}, {}}), {1, 3, 1, 1, 1, 1}, ""}),
    [](const auto& p) { return p.param.name; });

}  // namespace

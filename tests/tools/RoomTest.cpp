#include "scene/Room.h"

#include "ToolTestSupport.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace lumofe {
namespace {

constexpr Vec3 kEye{0, 0, 1.6};
constexpr double kWallDistance = Room::kHalfWidth;

struct WallCase {
    const char* name;
    Vec3 facing;
};
constexpr WallCase kWalls[] = {
    {"north", {0, 1, 0}}, {"east", {1, 0, 0}}, {"south", {0, -1, 0}}, {"west", {-1, 0, 0}}};

// What a person in the middle of the room sees on the wall: metres to the right of the wall's
// middle, and height above the floor.
Colour onWall(const WallCase& wall, double right, double z)
{
    const Vec3 rightHand = test::cross(wall.facing, {0, 0, 1});
    return Room().trace(kEye,
                        wall.facing * kWallDistance + rightHand * right + Vec3{0, 0, z - kEye.z});
}

bool isWhite(Colour c)
{
    return std::min({c.r, c.g, c.b}) > 0.7;
}

// A letter as rows of dots, seen upright by a person in the room.
std::string letterOn(const WallCase& wall)
{
    constexpr int kColumns = 9, kRows = 7;
    std::string text;
    for (int row = 0; row < kRows; ++row) {
        for (int column = 0; column < kColumns; ++column) {
            const double right = (column - (kColumns - 1) / 2) * 0.18;
            const double up = ((kRows - 1) / 2 - row) * 0.21;
            text += isWhite(onWall(wall, right, Room::kLetterZ + up)) ? '#' : '.';
        }
        text += '\n';
    }
    return text;
}

TEST(Room, LettersAreUprightAndNotMirrored)
{
    EXPECT_EQ(letterOn(kWalls[0]), ".#.....#.\n"
                                   ".##....#.\n"
                                   ".#.#...#.\n"
                                   ".#..#..#.\n"
                                   ".#...#.#.\n"
                                   ".#....##.\n"
                                   ".#.....#.\n");
    EXPECT_EQ(letterOn(kWalls[1]), "..#####..\n"
                                   "..#......\n"
                                   "..#......\n"
                                   "..#####..\n"
                                   "..#......\n"
                                   "..#......\n"
                                   "..#####..\n");
    EXPECT_EQ(letterOn(kWalls[2]), "...###...\n"
                                   "..#...#..\n"
                                   "..#......\n"
                                   "..#####..\n"
                                   "......#..\n"
                                   "..#...#..\n"
                                   "...###...\n");
    EXPECT_EQ(letterOn(kWalls[3]), "#.......#\n"
                                   "#...#...#\n"
                                   ".#.###.#.\n"
                                   ".#.#.#.#.\n"
                                   ".#.#.#.#.\n"
                                   "..##.##..\n"
                                   "..#...#..\n");
}

TEST(Room, WallsHaveTheirColours)
{
    const Colour north = onWall(kWalls[0], -1.2, 2), east = onWall(kWalls[1], -1.2, 2);
    const Colour south = onWall(kWalls[2], -1.2, 2), west = onWall(kWalls[3], -1.1, 2);
    EXPECT_GT(north.b, 2 * std::max(north.r, north.g));
    EXPECT_GT(east.r, 4 * std::max(east.g, east.b));
    EXPECT_GT(south.g, 2 * std::max(south.r, south.b));
    EXPECT_GT(west.r, west.g);
    EXPECT_GT(west.g, 4 * west.b);
}

TEST(Room, NeedlePointsNorth)
{
    const Colour north = Room().trace(kEye, {0, 0.3, -kEye.z});
    const Colour south = Room().trace(kEye, {0, -0.3, -kEye.z});
    EXPECT_GT(north.r, 4 * north.b);
    EXPECT_GT(south.b, 4 * south.r);
}

TEST(Room, FloorIsChecked)
{
    // Neighbouring tiles of half a metre differ, diagonal ones agree.
    const auto tile = [](int i, int j) {
        return Room().trace(kEye, Vec3{1.25 + 0.5 * i, 1.25 + 0.5 * j, -kEye.z}).g;
    };
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            EXPECT_GT(std::abs(tile(i, j) - tile(i + 1, j)), 0.2);
            EXPECT_GT(std::abs(tile(i, j) - tile(i, j + 1)), 0.2);
            EXPECT_NEAR(tile(i, j), tile(i + 1, j + 1), 0.1);
        }
    }
}

TEST(Room, DirectionLengthDoesNotMatter)
{
    const Vec3 direction{0.3, 0.7, -0.2};
    EXPECT_DOUBLE_EQ(Room().trace(kEye, direction).r, Room().trace(kEye, direction * 8).r);
}

} // namespace
} // namespace lumofe

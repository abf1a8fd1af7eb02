#include "simcam/picture/Street.h"

#include "simcam/picture/FixedPoint.h"

#include <algorithm>
#include <iterator>

namespace simcam::picture {
namespace {

// Around the picture there is as much street as shifts and a trembling camera may show.
constexpr int kAround = 160;
constexpr int kLeft = -kAround;
constexpr int kTop = -kAround;
constexpr int kRight = 640 + kAround;
constexpr int kBottom = 360 + kAround;
constexpr int kHorizon = 146;
constexpr int kKerb = 206;  // where the far pavement begins
constexpr int kRoad = 218;
constexpr int kNearPavement = 336;

constexpr int kMetre = 1000;  // millimetres

constexpr int plane(int p_nPixels) {
    return p_nPixels * kPlaneUnit;
}

// Words for a painter who thinks in pixels.
class Painter {
public:
    explicit Painter(Canvas& p_objCanvas) : m_objCanvas(p_objCanvas) {}

    void distance(int p_nMillimetres) { m_nDistance = distanceIndex(p_nMillimetres); }
    void atSubject() { m_nDistance = kSubjectDistance; }
    void box(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom, const Material& p_stMaterial) {
        m_objCanvas.rectangle(plane(p_nLeft), plane(p_nTop), plane(p_nRight), plane(p_nBottom), p_stMaterial,
                              m_nDistance);
    }
    void disc(int p_nX, int p_nY, int p_nRadiusX, int p_nRadiusY, const Material& p_stMaterial) {
        m_objCanvas.ellipse({plane(p_nX), plane(p_nY)}, plane(p_nRadiusX), plane(p_nRadiusY), p_stMaterial,
                            m_nDistance);
    }
    void shape(std::vector<Point> p_vecCorners, const Material& p_stMaterial) {
        for (Point& stCorner : p_vecCorners) {
            stCorner = {plane(stCorner.x), plane(stCorner.y)};
        }
        m_objCanvas.polygon(p_vecCorners, p_stMaterial, m_nDistance);
    }
    std::uint8_t distance() const { return m_nDistance; }
    Canvas& canvas() { return m_objCanvas; }

private:
    Canvas& m_objCanvas;
    std::uint8_t m_nDistance = kSkyDistance;
};

// Smooth chance over the plane, 0 to 255; a cell is so many units wide and high.
int cloudiness(int p_nX, int p_nY, int p_nCellX, int p_nCellY, std::uint32_t p_nSeed) {
    const auto corner = [&](int p_nColumn, int p_nRow) {
        const auto nColumn = static_cast<std::uint32_t>(p_nColumn);
        const auto nRow = static_cast<std::uint32_t>(p_nRow);
        return static_cast<int>(scramble(nColumn * 0x9e3779b9U + nRow * 0x85ebca6bU + p_nSeed) >> 24);
    };
    const int nX = p_nX + plane(4 * kAround);  // from 0
    const int nY = p_nY + plane(4 * kAround);
    const int nColumn = nX / p_nCellX;
    const int nRow = nY / p_nCellY;
    const int nRight = nX % p_nCellX * 256 / p_nCellX;
    const int nDown = nY % p_nCellY * 256 / p_nCellY;
    const int nUpper = corner(nColumn, nRow) * (256 - nRight) + corner(nColumn + 1, nRow) * nRight;
    const int nLower = corner(nColumn, nRow + 1) * (256 - nRight) + corner(nColumn + 1, nRow + 1) * nRight;
    return (nUpper * (256 - nDown) + nLower * nDown) >> 16;
}

void paintSky(Canvas& p_objCanvas) {
    p_objCanvas.each(plane(kLeft), plane(kTop), plane(kRight), plane(kHorizon + 4),
                     [](Surface& p_stSurface, int p_nX, int p_nY) {
                         const int nDown = std::clamp(p_nY / kPlaneUnit, 0, kHorizon);  // 0 at the top of the picture
                         const int nCloud = (cloudiness(p_nX, p_nY, plane(120), plane(34), 1) * 2 +
                                             cloudiness(p_nX, p_nY, plane(40), plane(14), 2)) /
                                            3;
                         const int nWhite = std::clamp((nCloud - 120) * 5, 0, 256);
                         const auto blend = [nWhite](int p_nClear, int p_nCloud) {
                             return static_cast<std::uint16_t>((p_nClear * (256 - nWhite) + p_nCloud * nWhite) / 256);
                         };
                         p_stSurface.red = blend(2300 + nDown * 17, 6000);
                         p_stSurface.green = blend(3600 + nDown * 13, 6100);
                         p_stSurface.blue = blend(6100 + nDown * 5, 6500);
                         p_stSurface.infrared = blend(1500 + nDown * 12, 5200);
                         p_stSurface.distance = kSkyDistance;
                         p_stSurface.heat = static_cast<std::uint8_t>(10 + nDown / 5 + nWhite / 16);
                     });
}

void paintGround(Canvas& p_objCanvas) {
    p_objCanvas.each(
        plane(kLeft), plane(kHorizon), plane(kRight), plane(kBottom), [](Surface& p_stSurface, int p_nX, int p_nY) {
            const int nRow = p_nY / kPlaneUnit;
            const bool bRoad = nRow >= kRoad && nRow < kNearPavement;
            const auto nCell = static_cast<std::uint32_t>((p_nX >> 6) * 7919 + (p_nY >> 6));
            const int nGrain = static_cast<int>(scramble(nCell) >> 25) * (bRoad ? 2 : 3);  // 0 to 127, times
            const int nShade = bRoad ? 620 : 1450;
            p_stSurface.red = static_cast<std::uint16_t>(nShade + nGrain);
            p_stSurface.green = static_cast<std::uint16_t>(nShade + nGrain);
            p_stSurface.blue = static_cast<std::uint16_t>(nShade + 30 + nGrain);
            p_stSurface.infrared = static_cast<std::uint16_t>(nShade + 100 + nGrain);
            p_stSurface.emission = 0;
            p_stSurface.distance =
                distanceIndex(1900 * kMetre * kPlaneUnit / std::max(p_nY - plane(kHorizon), kPlaneUnit));
            p_stSurface.heat = static_cast<std::uint8_t>(kHeatOfAir + (bRoad ? 12 : 6));
        });
    Painter objPainter(p_objCanvas);
    const Material stKerb = {170, 170, 165, 170, 3};
    objPainter.distance(26 * kMetre);
    objPainter.box(kLeft, kRoad - 3, kRight, kRoad, stKerb);
    objPainter.distance(10 * kMetre);
    objPainter.box(kLeft, kNearPavement, kRight, kNearPavement + 6, stKerb);
    for (int nX = kLeft; nX < kRight; nX += 64) {
        objPainter.box(nX, 292, nX + 36, 297, {205, 205, 200, 200, 5});
    }
}

struct House {
    int left, top, right;
    int windowsAcross, windowsDown, firstWindow;
    Material wall;
    int millimetres;
};

void paintWindow(Painter& p_objPainter, int p_nX, int p_nY, int p_nWide, int p_nHigh, bool p_bLit) {
    const Material stFrame = {225, 222, 215, 200, 3};
    const Material stGlass = {38, 48, 62, 30, 5};
    const Material stLit = {120, 100, 70, 90, 8, 60, kWarmLight};
    p_objPainter.box(p_nX - 2, p_nY - 2, p_nX + p_nWide + 2, p_nY + p_nHigh + 3, stFrame);
    p_objPainter.box(p_nX, p_nY, p_nX + p_nWide, p_nY + p_nHigh, p_bLit ? stLit : stGlass);
    if (!p_bLit) {  // a piece of sky in the glass
        p_objPainter.shape({{p_nX, p_nY}, {p_nX + p_nWide / 2, p_nY}, {p_nX, p_nY + p_nHigh / 2}},
                           {90, 110, 135, 60, 2});
    }
    p_objPainter.box(p_nX + p_nWide / 2 - 1, p_nY, p_nX + p_nWide / 2, p_nY + p_nHigh, stFrame);
}

void paintHouse(Painter& p_objPainter, const House& p_stHouse, std::uint32_t p_nSeed) {
    p_objPainter.distance(p_stHouse.millimetres);
    p_objPainter.box(p_stHouse.left, p_stHouse.top, p_stHouse.right, kKerb, p_stHouse.wall);
    Material stCourse = p_stHouse.wall;
    stCourse.red = stCourse.red * 7 / 8;
    stCourse.green = stCourse.green * 7 / 8;
    stCourse.blue = stCourse.blue * 7 / 8;
    for (int nY = p_stHouse.top + 14; nY < kKerb; nY += 30) {
        p_objPainter.box(p_stHouse.left, nY, p_stHouse.right, nY + 1, stCourse);
    }
    p_objPainter.box(p_stHouse.left, kKerb - 8, p_stHouse.right, kKerb, {70, 68, 66, 80, 4});
    const int nPitch = (p_stHouse.right - p_stHouse.left) / p_stHouse.windowsAcross;
    for (int i = 0; i < p_stHouse.windowsAcross * p_stHouse.windowsDown; ++i) {
        const int nX = p_stHouse.left + i % p_stHouse.windowsAcross * nPitch + nPitch / 2 - 8;
        const int nY = p_stHouse.firstWindow + i / p_stHouse.windowsAcross * 30;
        paintWindow(p_objPainter, nX, nY, 15, 19, 0 == scramble(p_nSeed + static_cast<std::uint32_t>(i)) % 4);
    }
}

// A gable roof with its eaves.
void paintRoof(Painter& p_objPainter, int p_nLeft, int p_nRight, int p_nEaves, int p_nHeight,
               const Material& p_stTiles) {
    const int nInset = (p_nRight - p_nLeft) / 6;
    p_objPainter.shape({{p_nLeft - 6, p_nEaves},
                        {p_nLeft + nInset, p_nEaves - p_nHeight},
                        {p_nRight - nInset, p_nEaves - p_nHeight},
                        {p_nRight + 6, p_nEaves}},
                       p_stTiles);
    p_objPainter.box(p_nLeft - 6, p_nEaves - 2, p_nRight + 6, p_nEaves + 1, {60, 50, 45, 60, 3});
}

void paintFarStreet(Painter& p_objPainter) {
    p_objPainter.distance(400 * kMetre);
    for (int nX = 240; nX < 420; nX += 12) {
        const int nHeight = 8 + static_cast<int>(scramble(static_cast<std::uint32_t>(nX)) % 14);
        p_objPainter.disc(nX, kHorizon, 13, nHeight, {42, 62, 40, 150, 0});
    }
    p_objPainter.distance(150 * kMetre);
    const Material arrWalls[] = {{150, 120, 100, 150, 3}, {170, 165, 150, 170, 3}, {120, 75, 60, 120, 3}};
    for (int i = 0; i < 6; ++i) {
        const int nX = 256 + i * 22;
        const int nTop = 118 + static_cast<int>(scramble(static_cast<std::uint32_t>(i) + 77) % 10);
        p_objPainter.box(nX, nTop, nX + 20, kKerb - 26, arrWalls[i % 3]);
        p_objPainter.shape({{nX - 1, nTop}, {nX + 10, nTop - 9}, {nX + 21, nTop}}, {95, 48, 38, 90, 3});
        for (int j = 0; j < 6; ++j) {
            p_objPainter.box(nX + 3 + j % 3 * 6, nTop + 4 + j / 3 * 9, nX + 6 + j % 3 * 6, nTop + 9 + j / 3 * 9,
                             {35, 42, 52, 30, 4, 0 == (i + j) % 5 ? 40 : 0});
        }
    }
    p_objPainter.distance(60 * kMetre);
    p_objPainter.box(244, kKerb - 26, 402, kKerb, {96, 110, 70, 190, 1});  // hedge and lawn
    p_objPainter.box(244, kKerb - 28, 402, kKerb - 22, {50, 78, 38, 200, 1});
}

void paintTree(Painter& p_objPainter) {
    p_objPainter.distance(28 * kMetre);
    p_objPainter.box(407, 130, 414, kKerb, {66, 46, 32, 90, 2});
    for (int i = 0; i < 26; ++i) {
        const std::uint32_t nChance = scramble(static_cast<std::uint32_t>(i) + 500);
        const int nX = 410 + static_cast<int>(nChance % 49) - 24;
        const int nY = 112 + static_cast<int>(nChance / 64 % 45) - 22;
        const int nLight = static_cast<int>(nChance / 8192 % 20);
        p_objPainter.disc(nX, nY, 10 + i % 4, 8 + i % 3, {30 + nLight, 66 + 2 * nLight, 22 + nLight, 190 + nLight, 1});
    }
}

void paintGarage(Painter& p_objPainter) {
    p_objPainter.box(kGaragePlace.left - 4, kGaragePlace.top - 5, kGaragePlace.right + 4, kKerb,
                     {150, 140, 128, 150, 3});
    p_objPainter.box(kGaragePlace.left, kGaragePlace.top, kGaragePlace.right, kKerb, {3, 3, 3, 4, 2});
    // What is inside gets hardly any light.
    for (int i = 0; i < 5; ++i) {
        p_objPainter.box(36 + i * 8, 158, 40 + i * 8, 198, {14, 13, 12, 14, 2});
    }
    p_objPainter.disc(86, 164, 5, 6, {12, 9, 8, 13, 15});
    p_objPainter.box(79, 170, 93, 200, {11, 4, 4, 12, 14});
}

void paintHouses(Painter& p_objPainter) {
    const House arrHouses[] = {
        {-160, 34, -24, 4, 5, 48, {122, 130, 142, 140, 3}, 26 * kMetre},
        {-24, 62, 128, 4, 2, 76, {176, 92, 66, 170, 4}, 25 * kMetre},
        {128, 40, 246, 3, 4, 54, {214, 196, 150, 210, 4}, 27 * kMetre},
        {446, 52, 596, 4, 2, 66, {168, 182, 190, 180, 3}, 26 * kMetre},
        {596, 26, 800, 6, 5, 40, {150, 74, 58, 150, 4}, 25 * kMetre},
    };
    std::uint32_t nSeed = 100;
    for (const House& stHouse : arrHouses) {
        paintHouse(p_objPainter, stHouse, nSeed);
        nSeed += 100;
    }
    p_objPainter.distance(25 * kMetre);
    paintRoof(p_objPainter, -24, 128, 62, 34, {112, 46, 34, 110, 6});
    paintRoof(p_objPainter, 128, 246, 40, 26, {64, 66, 74, 70, 6});
    paintRoof(p_objPainter, 446, 596, 52, 36, {100, 52, 40, 100, 6});
    paintGarage(p_objPainter);
    // A door and a shop window.
    p_objPainter.box(176, 158, 200, kKerb, {40, 74, 62, 90, 4});
    p_objPainter.disc(196, 184, 2, 2, {200, 170, 80, 180, 4});
    p_objPainter.box(546, 146, 590, 196, {225, 222, 215, 200, 3});
    p_objPainter.box(549, 150, 587, 193, {110, 95, 70, 90, 7, 90, kWarmLight});
    p_objPainter.box(540, 138, 594, 147, {150, 30, 34, 120, 4});
    // A plain piece of wall between the storeys, for whoever measures.
    p_objPainter.box(kWallPlace.left - 4, kWallPlace.top - 4, kWallPlace.right + 4, kWallPlace.bottom + 4,
                     {140, 140, 140, 140, 4});
}

void paintPerson(Painter& p_objPainter) {
    p_objPainter.distance(24 * kMetre);
    p_objPainter.box(611, 184, 616, 214, {30, 36, 62, 60, 9});
    p_objPainter.box(618, 184, 623, 214, {30, 36, 62, 60, 9});
    p_objPainter.box(608, 160, 626, 186, {186, 60, 44, 170, 12});
    p_objPainter.disc(617, 153, 6, 7, {190, 140, 116, 190, 16});
}

void paintParkedCar(Painter& p_objPainter) {
    const Material stBody = {34, 62, 124, 110, 7};
    const Material stTyre = {18, 18, 18, 20, 5};
    p_objPainter.box(284, 206, 298, 220, stTyre);
    p_objPainter.box(342, 206, 356, 220, stTyre);
    p_objPainter.shape({{290, 168}, {300, 144}, {340, 144}, {350, 168}}, stBody);
    p_objPainter.shape({{296, 166}, {304, 148}, {336, 148}, {344, 166}}, {30, 38, 48, 26, 6});
    p_objPainter.shape({{278, 172}, {288, 166}, {352, 166}, {362, 172}}, stBody);
    p_objPainter.box(278, 171, 362, 206, stBody);
    p_objPainter.box(278, 204, 362, 212, {52, 54, 58, 60, 6});
    p_objPainter.box(281, 176, 295, 186, {170, 26, 24, 120, 6, 10, kRedLight});
    p_objPainter.box(345, 176, 359, 186, {170, 26, 24, 120, 6, 10, kRedLight});
    p_objPainter.box(310, 209, 330, 212, {20, 20, 20, 20, 30});
}

// Dots are a third of a pixel, so it takes the zoom to read it.
void paintPlate(Painter& p_objPainter) {
    Canvas& objCanvas = p_objPainter.canvas();
    constexpr int kCell = 24;
    constexpr int kWide = (7 * 6 + 3) * kCell;
    constexpr int kHigh = 11 * kCell;
    constexpr int kX = plane(320) - kWide / 2;
    constexpr int kY = plane(180) - kHigh / 2;
    objCanvas.rectangle(kX - kCell, kY - kCell, kX + kWide + kCell, kY + kHigh + kCell, {20, 20, 20, 20, 6},
                        p_objPainter.distance());
    objCanvas.rectangle(kX, kY, kX + kWide, kY + kHigh, {235, 235, 225, 240, 6}, p_objPainter.distance());
    objCanvas.text({kX + 2 * kCell, kY + 2 * kCell}, kCell, "CAM", {12, 12, 16, 14, 6}, p_objPainter.distance());
    objCanvas.text({kX + 22 * kCell, kY + 2 * kCell}, kCell, "6401", {12, 12, 16, 14, 6}, p_objPainter.distance());
}

void paintStarAndChart(Painter& p_objPainter) {
    const Material stStand = {60, 60, 62, 70, 2};
    p_objPainter.box(229, 206, 231, 226, stStand);
    p_objPainter.box(404, 204, 408, 226, stStand);
    p_objPainter.disc(230, 182, 26, 26, stStand);
    p_objPainter.canvas().star({plane(230), plane(182)}, plane(24), p_objPainter.distance());
    const Material arrPatches[24] = {
        {44, 22, 16, 60, 2},   {138, 78, 60, 140, 2}, {30, 50, 88, 60, 2},     {28, 38, 14, 120, 2},
        {60, 56, 110, 80, 2},  {34, 130, 104, 90, 2}, {174, 52, 8, 170, 2},    {18, 28, 98, 50, 2},
        {140, 24, 32, 130, 2}, {30, 12, 38, 50, 2},   {88, 128, 12, 130, 2},   {196, 92, 6, 180, 2},
        {8, 12, 74, 40, 2},    {16, 76, 18, 90, 2},   {110, 8, 10, 110, 2},    {212, 148, 4, 200, 2},
        {126, 24, 76, 120, 2}, {4, 60, 92, 50, 2},    {230, 230, 228, 230, 2}, {150, 150, 150, 150, 2},
        {92, 92, 92, 92, 2},   {50, 50, 50, 50, 2},   {22, 22, 22, 22, 2},     {8, 8, 8, 8, 2}};
    p_objPainter.box(kChartPlace.left - 3, kChartPlace.top - 3, kChartPlace.right + 3, kChartPlace.bottom + 3,
                     {20, 20, 20, 20, 2});
    for (int i = 0; i < 24; ++i) {
        const int nX = kChartPlace.left + i % 6 * 10;
        const int nY = kChartPlace.top + i / 6 * 10;
        p_objPainter.box(nX, nY, nX + 10, nY + 10, arrPatches[i]);
    }
}

constexpr int kLampX = 522;
constexpr int kLampY = 66;

void paintLamp(Painter& p_objPainter) {
    const Material stPost = {52, 56, 54, 60, 2};
    p_objPainter.distance(22 * kMetre);
    p_objPainter.box(538, 56, 543, 214, stPost);
    p_objPainter.box(536, 196, 545, 216, stPost);
    p_objPainter.box(512, 53, 543, 58, stPost);
    p_objPainter.box(508, 57, 536, 62, stPost);
    p_objPainter.disc(kLampX, kLampY - 2, 11, 7, {230, 220, 190, 200, 45, 64000, kWarmLight});
}

// The lamp's light: a glow around it and a pool on the ground below.
void lightByLamp(Canvas& p_objCanvas) {
    p_objCanvas.each(plane(kLeft), plane(kTop), plane(kRight), plane(kBottom),
                     [](Surface& p_stSurface, int p_nX, int p_nY) {
                         if (kSkyDistance == p_stSurface.distance) {
                             return;
                         }
                         const long long nAcross = p_nX / kPlaneUnit - kLampX;
                         const long long nDown = p_nY / kPlaneUnit - 180;
                         const long long nPool = nAcross * nAcross / 5 + nDown * nDown * 2;
                         p_stSurface.lamp = static_cast<std::uint8_t>(255 * 900 / (900 + nPool));
                     });
}

}  // namespace

void paintStreet(Canvas& p_objCanvas) {
    Painter objPainter(p_objCanvas);
    paintSky(p_objCanvas);
    paintGround(p_objCanvas);
    paintFarStreet(objPainter);
    paintHouses(objPainter);
    paintTree(objPainter);
    paintPerson(objPainter);
    paintLamp(objPainter);
    objPainter.atSubject();
    paintParkedCar(objPainter);
    paintPlate(objPainter);
    paintStarAndChart(objPainter);
    lightByLamp(p_objCanvas);
}

int carLeft(long long p_nMilliseconds) {
    constexpr long long kRound = 12000;                         // milliseconds
    constexpr long long kWay = plane(640 + 2 * kAround + 160);  // from beyond one end of the street to beyond the other
    const long long nShare = ((p_nMilliseconds % kRound) + kRound) % kRound;
    return static_cast<int>(kWay * nShare / kRound) + plane(kLeft) - kCarLength;
}

std::uint8_t carDistance() {
    return distanceIndex(12 * kMetre);
}

void paintCar(Canvas& p_objCanvas, int p_nLeft) {
    const std::uint8_t nDistance = carDistance();
    const auto box = [&](int p_nX, int p_nY, int p_nRight, int p_nBottom, const Material& p_stMaterial) {
        p_objCanvas.rectangle(p_nLeft + plane(p_nX), plane(p_nY), p_nLeft + plane(p_nRight), plane(p_nBottom),
                              p_stMaterial, nDistance);
    };
    const auto shape = [&](std::vector<Point> p_vecCorners, const Material& p_stMaterial) {
        for (Point& stCorner : p_vecCorners) {
            stCorner = {p_nLeft + plane(stCorner.x), plane(stCorner.y)};
        }
        p_objCanvas.polygon(p_vecCorners, p_stMaterial, nDistance);
    };
    const auto wheel = [&](int p_nX, int p_nRadius, const Material& p_stMaterial) {
        p_objCanvas.ellipse({p_nLeft + plane(p_nX), plane(274)}, plane(p_nRadius), plane(p_nRadius), p_stMaterial,
                            nDistance);
    };
    const Material stPaint = {190, 22, 26, 150, 9};
    const Material stGlass = {40, 52, 66, 30, 6};
    box(6, 280, 146, 287, {14, 14, 15, 16, 8});  // its shadow on the road
    shape({{34, 250}, {50, 226}, {98, 226}, {118, 250}}, stPaint);
    shape({{40, 249}, {53, 230}, {72, 230}, {72, 249}}, stGlass);
    shape({{76, 249}, {76, 230}, {96, 230}, {111, 249}}, stGlass);
    box(4, 250, 128, 274, stPaint);
    shape({{118, 250}, {140, 254}, {146, 260}, {118, 260}}, stPaint);
    box(128, 257, 146, 274, {190, 22, 26, 150, 30});  // warm bonnet
    box(4, 262, 146, 264, {110, 14, 16, 100, 9});
    box(138, 257, 147, 264, {235, 235, 220, 220, 20, 24000, kWhiteLight});
    box(3, 254, 9, 262, {150, 10, 10, 110, 9, 400, kRedLight});
    wheel(32, 13, {16, 16, 17, 18, 16});
    wheel(32, 6, {150, 152, 156, 150, 20});
    wheel(114, 13, {16, 16, 17, 18, 16});
    wheel(114, 6, {150, 152, 156, 150, 20});
}

}  // namespace simcam::picture

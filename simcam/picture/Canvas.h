// What the camera sees before any light falls on it: for each pixel the surface, its distance and its warmth.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace simcam::picture {

// Distances are an index: 16 steps for each doubling from 0.25 m. The last index is the scene's subject, wherever it is.
constexpr int kDistances = 256;
constexpr int kStepsPerDoubling = 16;
constexpr std::uint8_t kSubjectDistance = 255;
constexpr std::uint8_t kSkyDistance = 254;
std::uint8_t distanceIndex(int p_nMillimetres);  // never kSubjectDistance

// The light of things that shine.
enum Tint : std::uint8_t { kWarmLight, kWhiteLight, kRedLight };

// Reflectances in 1/4096; the sky is brighter than white paper.
struct Surface {
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
    std::uint16_t infrared = 0;
    std::uint16_t emission = 0;      // 1/16 lux
    std::uint8_t tint = kWarmLight;  // of the emission
    std::uint8_t distance = kSkyDistance;
    std::uint8_t lamp = 0;  // share of the street lamp's light that arrives, 255 all
    std::uint8_t heat = 0;  // half degrees above 40 degrees below the air
};

constexpr int kHeatOfAir = 80;

// A surface in the painter's words: reflectances 0 to 255, warmth in degrees above the air.
struct Material {
    int red = 0;
    int green = 0;
    int blue = 0;
    int infrared = 0;
    int degrees = 0;
    int emission = 0;
    Tint tint = kWarmLight;
};

// From the street's plane to pixels. The plane is measured in 1/64 of a pixel of a picture of 640 x 360 at wide angle.
constexpr int kPlaneUnit = 64;
struct View {
    int width = 0;  // of the picture, pixels
    int height = 0;
    int magnification = 1000;  // 1/1000
    int left = 0;              // of the canvas, in pixels of the picture
    int top = 0;

    // 1/256 pixels of the canvas.
    int x(int p_nPlane) const;
    int y(int p_nPlane) const;
    // The plane of a canvas pixel's middle.
    int planeX(int p_nPixel) const;
    int planeY(int p_nPixel) const;

private:
    int forward(int p_nOffset) const;
    int back(int p_nOffset) const;
};

struct Point {
    int x;
    int y;
};

// A rectangle of surfaces that is painted from the back to the front. Edges are smooth. Coordinates are those of the plane.
class Canvas {
public:
    void resize(int p_nWidth, int p_nHeight);
    void setView(const View& p_stView) { m_stView = p_stView; }
    const View& view() const { return m_stView; }
    int width() const { return m_nWidth; }
    int height() const { return m_nHeight; }
    Surface* row(int p_nY) { return &m_vecSurfaces[index(0, p_nY)]; }
    const Surface* row(int p_nY) const { return &m_vecSurfaces[index(0, p_nY)]; }

    void rectangle(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom, const Material& p_stMaterial,
                   std::uint8_t p_nDistance);
    void ellipse(Point p_stCentre, int p_nRadiusX, int p_nRadiusY, const Material& p_stMaterial,
                 std::uint8_t p_nDistance);
    // Convex, clockwise on the screen.
    void polygon(const std::vector<Point>& p_vecCorners, const Material& p_stMaterial, std::uint8_t p_nDistance);
    // Black spokes, 36 of them, on a white disc.
    void star(Point p_stCentre, int p_nRadius, std::uint8_t p_nDistance);
    // Capital letters C, A, M and digits; a cell is the size of one dot, a glyph 5 x 7 of them and one apart.
    void text(Point p_stTopLeft, int p_nCell, const char* p_szText, const Material& p_stMaterial,
              std::uint8_t p_nDistance);
    // Surfaces as a function of the place: void(Surface&, x, y), with x and y on the plane. The function may change some
    // fields and leave others.
    template <typename Function>
    void each(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom, Function&& p_fnSurface);

private:
    struct Box {  // pixels; right and bottom are outside
        int left;
        int top;
        int right;
        int bottom;
    };
    Box box(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom) const;
    // Coverage by 16 samples a pixel: bool(x, y) in 1/256 pixels.
    template <typename Inside>
    void sampled(const Box& p_stBox, const Material& p_stMaterial, std::uint8_t p_nDistance, Inside&& p_fnInside);
    std::size_t index(int p_nX, int p_nY) const {
        return static_cast<std::size_t>(p_nY) * static_cast<std::size_t>(m_nWidth) + static_cast<std::size_t>(p_nX);
    }

    View m_stView;
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<Surface> m_vecSurfaces;
};

template <typename Function>
void Canvas::each(int p_nLeft, int p_nTop, int p_nRight, int p_nBottom, Function&& p_fnSurface) {
    const Box stBox = box(p_nLeft, p_nTop, p_nRight, p_nBottom);
    for (int y = stBox.top; y < stBox.bottom; ++y) {
        const int nPlaneY = m_stView.planeY(y);
        if (nPlaneY < p_nTop || nPlaneY >= p_nBottom) {
            continue;
        }
        for (int x = stBox.left; x < stBox.right; ++x) {
            const int nPlaneX = m_stView.planeX(x);
            if (nPlaneX >= p_nLeft && nPlaneX < p_nRight) {
                p_fnSurface(m_vecSurfaces[index(x, y)], nPlaneX, nPlaneY);
            }
        }
    }
}

}  // namespace simcam::picture

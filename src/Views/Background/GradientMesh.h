#pragma once

#include "Views/Background/GradientScene.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tamsy {

/// An adaptive triangle mesh of a background with a colour per vertex: large triangles where the
/// colours are nearly linear, small ones at the tips and feet of blobs and along the sides. It
/// covers the area without gaps, overlaps or T-junctions; the interpolated colours differ from the
/// scene's by at most 2/255. Reuses its memory. One thread at a time.
class GradientMesh {
  public:
    using Index = std::uint32_t;

    void build(const GradientScene& scene);

    [[nodiscard]] std::span<const GradientVertex> vertices() const { return vertices_; }
    /// Three per triangle.
    [[nodiscard]] std::span<const Index> indices() const { return indices_; }

  private:
    /// A square of the grid. Its unit, as of all integer positions here, is the smallest cell.
    struct Cell {
        int x = 0;
        int y = 0;
        int size = 0;
        bool hasMiddle = false;        ///< has a vertex in its middle
        bool isSplitDownwards = false; ///< which diagonal it has if it is only two triangles
    };
    /// One direction: fine rows along both sides, and the cells between them.
    struct Axis {
        std::vector<float> nearRows; ///< in points, ascending from 0, before the first cell
        std::vector<float> farRows;  ///< in points, ascending to the area's length
        float start = 0;             ///< in points, of the first cell
        float step = 0;              ///< in points, of the smallest cell
        int count = 0;               ///< of smallest cells

        [[nodiscard]] float at(float position) const { return start + position * step; }
        [[nodiscard]] float end() const { return at(static_cast<float>(count)); }
    };

    void placeAxes(const GradientScene& scene);
    void split(const GradientScene& scene);
    float measure(const GradientScene& scene, Cell& cell) const;
    [[nodiscard]] std::uint8_t& sizeAt(int x, int y);
    Index corner(int doubledX, int doubledY);
    void outline(const Cell& cell);
    void triangulate(const Cell& cell);
    void addSides();
    void addStrip(std::span<const float> xs, std::span<const float> ys);
    void addTriangle(Index a, Index b, Index c) { indices_.insert(indices_.end(), {a, b, c}); }

    Axis x_;
    Axis y_;
    std::vector<Cell> unsplit_;
    std::vector<Cell> cells_;
    std::vector<std::uint8_t> sizes_; // for each smallest cell, the size of the cell that covers it
    std::vector<Index>
        corners_; // vertex numbers from 1 by doubled position, which middles have too
    std::vector<Index> outline_; // of the current cell
    std::vector<GradientVertex> vertices_;
    std::vector<Index> indices_;
};

} // namespace tamsy

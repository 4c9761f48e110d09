#pragma once

#include "Views/Background/GradientScene.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tamsy {

/// A background as few triangles, between whose corners colours run evenly: large ones where it is
/// nearly flat, small ones at the tips and feet of blobs and along the sides. They cover the area
/// without gap or overlap and meet at whole edges; between the corners they are off the scene's own
/// colours by at most 2/255. Keeps its memory from one build to the next. Any one thread.
class GradientMesh {
  public:
    using Index = std::uint32_t;

    void build(const GradientScene& scene);

    [[nodiscard]] std::span<const GradientVertex> vertices() const { return vertices_; }
    /// Three for each triangle.
    [[nodiscard]] std::span<const Index> indices() const { return indices_; }

  private:
    /// A rectangle of the grid. In finest cells, as all positions below that are whole numbers.
    struct Cell {
        int x = 0;
        int y = 0;
        int size = 0;
        bool hasMiddle = false;        ///< as a corner
        bool isSplitDownwards = false; ///< from its first corner, where it is two triangles
    };
    /// One direction: fine rows along both sides, between them the cells.
    struct Axis {
        std::vector<float> nearRows; ///< points, rising from 0, before the first cell
        std::vector<float> farRows;  ///< points, rising to the area's length, after the last cell
        float start = 0;             ///< of the first cell, in points
        float step = 0;              ///< of a finest cell, in points
        int count = 0;               ///< of finest cells

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
    std::vector<std::uint8_t> sizes_; // of the cell over each finest one
    std::vector<Index> corners_; // by doubled position, so that middles have one; 0 for none yet
    std::vector<Index> outline_; // of the cell at work
    std::vector<GradientVertex> vertices_;
    std::vector<Index> indices_;
};

} // namespace tamsy
